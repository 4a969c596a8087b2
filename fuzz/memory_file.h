// A file in memory under a name in the file system, for readers that open files.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "base/byte_view.h"

class memory_file {
 public:
  explicit memory_file(ovrik::byte_view content) : m_file(memfd_create("fuzz", MFD_CLOEXEC)) {
    if (m_file < 0) std::abort();
    const ssize_t written = write(m_file, content.data(), content.size());
    if (written != static_cast<ssize_t>(content.size())) std::abort();
  }
  ~memory_file() { close(m_file); }
  memory_file(const memory_file&) = delete;
  memory_file& operator=(const memory_file&) = delete;

  std::string path() const { return "/proc/self/fd/" + std::to_string(m_file); }

 private:
  int m_file;
};
