#include "driver/results_file.h"

#include <chrono>
#include <thread>

#include "driver/host/console.h"
#include "sources/host/lv_portable_dir.h"

namespace ovrik {

bool probe_results_file(const std::string& path) {
  if (lvportdir::is_pipe(path)) return true;
  uni::fileio file;
  if (!file.open_write(path)) {
    print_message("prob opening file %s for output, aborting\n", path.c_str());
    return false;
  }
  file.close();
  lvportdir::remove_plain_file(path);
  return true;
}

results_stream::results_stream() {
  m_file.attach_standard_output();
  m_stream = std::make_unique<uni::fileio_output>(m_file);
}

bool results_stream::open(const std::string& path) {
  m_stream.reset();
  m_name = path;
  // The trial has removed the file, whose name stays taken while a scanner looks at it.
  constexpr std::chrono::milliseconds pause(50);
  bool opened = m_file.open_write(path);
  for (int left = 10; left > 0 && !opened; --left) {
    std::this_thread::sleep_for(pause);
    opened = m_file.open_write(path);
  }
  m_stream = std::make_unique<uni::fileio_output>(m_file);
  return opened;
}

bool results_stream::finish() {
  m_stream->flush();
  const bool written = m_stream->good();
  const bool closed = m_file.close();
  if (written && closed) return true;
  print_message("prob writing results file: %s\n", m_name.c_str());
  return false;
}

}  // namespace ovrik
