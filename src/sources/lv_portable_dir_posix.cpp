#include <sys/stat.h>
#include <unistd.h>

#include "sources/host_path.h"
#include "sources/lv_portable_dir.h"

namespace lvportdir {

namespace {

std::string name_of(const std::string& path) { return ovrik::without_trailing_separators(path); }

}  // namespace

bool same_file(const std::string& left, const std::string& right) {
  struct stat left_status {};
  struct stat right_status {};
  return stat(name_of(left).c_str(), &left_status) == 0 &&
         stat(name_of(right).c_str(), &right_status) == 0 &&
         left_status.st_dev == right_status.st_dev && left_status.st_ino == right_status.st_ino;
}

bool is_pipe(const std::string& path) {
  struct stat status {};
  return stat(name_of(path).c_str(), &status) == 0 && S_ISFIFO(status.st_mode);
}

void remove_plain_file(const std::string& path) {
  struct stat status {};
  const std::string name = name_of(path);
  if (lstat(name.c_str(), &status) == 0 && S_ISREG(status.st_mode)) unlink(name.c_str());
}

}  // namespace lvportdir
