#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "sources/host/host_file.h"
#include "sources/host/host_path.h"

namespace uni {

namespace {

constexpr mode_t new_file_mode = 0666;

/// The system call's result, taken again for as long as a signal interrupts it.
template <typename system_call>
auto retried(system_call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

int open_file(const std::string& path, int flags) {
  return retried([&] { return ::open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY, new_file_mode); });
}

// The flags of `open`, in the order of `file_use`. Evidence is a plain file or a whole disk:
// opening it never waits for a peer, and never makes a terminal the one of this process.
constexpr int flags_of_use[] = {O_RDONLY | O_NONBLOCK | O_NOATIME, O_WRONLY | O_CREAT | O_TRUNC,
                                O_WRONLY | O_CREAT | O_EXCL, O_WRONLY};

bool may_be_opened(const std::string& name, file_use use) {
  struct stat status {};
  const bool found = stat(name.c_str(), &status) == 0;
  const bool is_disk = found && S_ISBLK(status.st_mode);
  return use == file_use::read ? is_disk || (found && S_ISREG(status.st_mode)) : !is_disk;
}

/// Opens a file that is no folder; -1 if that fails.
int open_descriptor(const std::string& name, int flags) {
  int file = open_file(name, flags);
  if (file < 0 && errno == EPERM && (flags & O_NOATIME) != 0) {
    file = open_file(name, flags & ~O_NOATIME);  // only the owner may keep the access time
  }
  struct stat status {};
  if (file >= 0 && (fstat(file, &status) != 0 || S_ISDIR(status.st_mode))) {
    ::close(file);
    return -1;
  }
  return file;
}

int descriptor_of(intptr_t file) { return static_cast<int>(file); }

}  // namespace

host_file open_host_file(const std::string& path, file_use use) {
  const std::string name = ovrik::without_trailing_separators(path);
  if (name.empty() || !may_be_opened(name, use)) return no_host_file;
  return open_descriptor(name, flags_of_use[static_cast<size_t>(use)]);
}

bool close_host_file(host_file file) { return ::close(descriptor_of(file)) == 0; }

host_file host_standard_output() { return STDOUT_FILENO; }
host_file host_standard_error() { return STDERR_FILENO; }

uint64_t host_file_length(host_file file) {
  const off_t end = lseek(descriptor_of(file), 0, SEEK_END);
  return end > 0 ? static_cast<uint64_t>(end) : 0;
}

bool read_host_file(host_file file, void* buffer, size_t size, uint64_t offset, size_t& got) {
  const ssize_t count =
      retried([&] { return pread(descriptor_of(file), buffer, size, static_cast<off_t>(offset)); });
  got = count > 0 ? static_cast<size_t>(count) : 0;
  return count >= 0;
}

void seek_host_file_end(host_file file) { lseek(descriptor_of(file), 0, SEEK_END); }

bool write_host_file(host_file file, const uint8_t* bytes, size_t size, size_t& put) {
  const ssize_t count = retried([&] { return ::write(descriptor_of(file), bytes, size); });
  put = count > 0 ? static_cast<size_t>(count) : 0;
  return count > 0;
}

bool extend_host_file(host_file file, uint64_t size) {
  return retried([&] { return ftruncate(descriptor_of(file), static_cast<off_t>(size)); }) == 0;
}

}  // namespace uni
