#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

#include "base/filetime.h"
#include "sources/host/host_path.h"
#include "sources/host/lv_portable_dir.h"

namespace lvportdir {

namespace {

std::string name_of(const std::string& path) { return ovrik::without_trailing_separators(path); }

struct folder_closer {
  void operator()(DIR* folder) const { closedir(folder); }
};

struct memory_freer {
  void operator()(char* memory) const { std::free(memory); }
};

/// True if the entry is a folder; a link counts as what it leads to.
bool is_folder(const std::string& path, const dirent& entry) {
  if (entry.d_type == DT_DIR) return true;
  if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) return false;
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

uint64_t filetime_of(const timespec& time) {
  const int64_t seconds = time.tv_sec + static_cast<int64_t>(ovrik::unix_epoch_seconds);
  if (seconds <= 0) return 0;
  return static_cast<uint64_t>(seconds) * ovrik::ticks_per_second +
         static_cast<uint64_t>(time.tv_nsec / 100);
}

/// The path without links in it, with a separator at its end; empty if it does not exist.
std::string real_folder(const std::string& path) {
  const std::unique_ptr<char, memory_freer> real(realpath(path.c_str(), nullptr));
  if (real == nullptr) return {};
  std::string folder = real.get();
  if (!folder.ends_with('/')) folder += '/';
  return folder;
}

}  // namespace

void list_directory(std::vector<directory_entry>& entries, const std::string& folder) {
  entries.clear();
  const std::unique_ptr<DIR, folder_closer> listing(opendir(folder.c_str()));
  if (listing == nullptr) return;
  const std::string prefix = folder.ends_with('/') ? folder : folder + '/';
  while (const dirent* entry = readdir(listing.get())) {
    const std::string name = entry->d_name;
    if (name == "." || name == "..") continue;
    const std::string path = prefix + name;
    entries.push_back({path, is_folder(path, *entry)});
  }
  std::sort(entries.begin(), entries.end(),
            [](const directory_entry& left, const directory_entry& right) {
              return left.path < right.path;
            });
}

bool file_status(const std::string& path, file_times& times) {
  struct stat status {};
  if (stat(name_of(path).c_str(), &status) != 0) return false;
  times.written = filetime_of(status.st_mtim);
  times.created = times.written;
  return true;
}

bool is_folder_link(const std::string& folder, link_target& target, bool& closes_cycle) {
  struct stat link {};
  struct stat status {};
  if (lstat(folder.c_str(), &link) != 0 || !S_ISLNK(link.st_mode) ||
      stat(folder.c_str(), &status) != 0) {
    return false;
  }
  target = {status.st_dev, status.st_ino};
  const std::string parent = real_folder(folder.substr(0, folder.rfind('/') + 1) + ".");
  closes_cycle = parent.starts_with(real_folder(folder));
  return true;
}

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

bool make_folders(const std::string& path) {
  constexpr mode_t new_folder_mode = 0777;
  const std::string name = name_of(path);
  for (size_t end = name.find('/', 1);; end = name.find('/', end + 1)) {
    mkdir(name.substr(0, end).c_str(), new_folder_mode);
    if (end == std::string::npos) break;
  }
  struct stat status {};
  return stat(name.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

void remove_plain_file(const std::string& path) {
  struct stat status {};
  const std::string name = name_of(path);
  if (lstat(name.c_str(), &status) == 0 && S_ISREG(status.st_mode)) unlink(name.c_str());
}

std::string strip_long_prefix(const std::string& path) { return path; }

}  // namespace lvportdir
