#include <dirent.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>

#include "sources/host/file_places.h"
#include "sources/host/fileio.h"
#include "sources/host/host_path.h"
#include "sources/host/lv_portable_dir.h"

namespace lvportdir {

namespace {

struct memory_freer {
  void operator()(char* memory) const { std::free(memory); }
};

/// The path without links in it; empty if it does not exist.
std::string real_path(const std::string& path) {
  const std::unique_ptr<char, memory_freer> real(realpath(path.c_str(), nullptr));
  return real == nullptr ? std::string() : real.get();
}

bool find_file(const std::string& path, struct stat& status) {
  return stat(ovrik::without_trailing_separators(path).c_str(), &status) == 0;
}

/// True if the path leads to the plain file that is open as `stream`.
bool is_stream(const std::string& path, int stream) {
  struct stat file {};
  struct stat opened {};
  return find_file(path, file) && fstat(stream, &opened) == 0 && S_ISREG(opened.st_mode) &&
         file.st_dev == opened.st_dev && file.st_ino == opened.st_ino;
}

/// Appends what lies behind the device that the system tells of in `folder` (Linux,
/// /sys/dev/block). Devices stand on one another in few levels.
void append_backing_files(std::vector<std::string>& files, const std::string& folder, int levels) {
  for (const char* device : {"/loop/backing_file", "/../loop/backing_file"}) {
    std::vector<uint8_t> name;
    constexpr size_t longest_name = 4096;
    uni::fileio file;
    size_t size = longest_name;
    name.resize(size);
    if (!file.open_read(folder + device) || !file.read_at(name.data(), size, 0)) continue;
    std::string path(name.begin(), name.begin() + static_cast<std::ptrdiff_t>(size));
    while (path.ends_with('\n')) path.pop_back();
    files.push_back(std::move(path));
  }
  std::vector<directory_entry> below;
  if (levels > 0) list_directory(below, folder + "/slaves");
  for (const directory_entry& entry : below) append_backing_files(files, entry.path, levels - 1);
}

}  // namespace

bool lies_below(const std::string& path, const std::string& folder) {
  std::string real = real_path(folder);
  if (real.empty()) return false;
  if (!real.ends_with('/')) real += '/';
  return real_path(ovrik::without_trailing_separators(path)).starts_with(real);
}

bool is_standard_input(const std::string& path) { return is_stream(path, STDIN_FILENO); }
bool is_standard_output(const std::string& path) { return is_stream(path, STDOUT_FILENO); }

bool is_plain_file(const std::string& path) {
  struct stat status {};
  return find_file(path, status) && S_ISREG(status.st_mode);
}

std::vector<std::string> backing_files(const std::string& path) {
  constexpr int most_levels = 8;
  std::vector<std::string> files;
  struct stat status {};
  if (!find_file(path, status) || !S_ISBLK(status.st_mode)) return files;
  append_backing_files(files,
                       "/sys/dev/block/" + std::to_string(major(status.st_rdev)) + ':' +
                           std::to_string(minor(status.st_rdev)),
                       most_levels);
  return files;
}

}  // namespace lvportdir
