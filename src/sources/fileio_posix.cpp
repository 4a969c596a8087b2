#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "sources/fileio.h"
#include "sources/host_path.h"

namespace uni {

namespace {

constexpr mode_t new_file_mode = 0666;
constexpr size_t largest_piece = 0x10000000;  // the most that one system call is asked for

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

/// Opens a file that is no folder; -1 if that fails.
int open_descriptor(const std::string& path, int flags) {
  const std::string name = ovrik::without_trailing_separators(path);
  if (name.empty()) return -1;
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

fileio::~fileio() { close(); }

bool fileio::open_read(const std::string& path) {
  // The mere opening of a device can do something; evidence is a plain file or a whole disk.
  struct stat status {};
  const std::string name = ovrik::without_trailing_separators(path);
  close();
  if (stat(name.c_str(), &status) != 0 || !(S_ISREG(status.st_mode) || S_ISBLK(status.st_mode))) {
    return false;
  }
  m_file = open_descriptor(path, O_RDONLY | O_NONBLOCK | O_NOATIME);
  m_owned = true;
  return is_open();
}

bool fileio::open_write(const std::string& path) {
  close();
  m_file = open_descriptor(path, O_WRONLY | O_CREAT | O_TRUNC);
  m_owned = true;
  return is_open();
}

bool fileio::open_new(const std::string& path) {
  close();
  m_file = open_descriptor(path, O_WRONLY | O_CREAT | O_EXCL);
  m_owned = true;
  return is_open();
}

bool fileio::open_append(const std::string& path) {
  close();
  m_file = open_descriptor(path, O_WRONLY);
  m_owned = true;
  return is_open();
}

void fileio::attach_standard_output() {
  close();
  m_file = STDOUT_FILENO;
  m_owned = false;
}

void fileio::attach_standard_error() {
  close();
  m_file = STDERR_FILENO;
  m_owned = false;
}

uint64_t fileio::length() const {
  if (!is_open()) return 0;
  const off_t end = lseek(descriptor_of(m_file), 0, SEEK_END);
  return end > 0 ? static_cast<uint64_t>(end) : 0;
}

bool fileio::read_at(void* buffer, size_t& size, uint64_t offset) const {
  const size_t wanted = size;
  size = 0;
  const uint64_t end = length();
  if (offset >= end) return false;
  const size_t total = static_cast<size_t>(std::min<uint64_t>(wanted, end - offset));
  while (size < total) {
    const ssize_t got = retried([&] {
      return pread(descriptor_of(m_file), static_cast<uint8_t*>(buffer) + size,
                   std::min(total - size, largest_piece), static_cast<off_t>(offset + size));
    });
    if (got < 0) return false;
    if (got == 0) break;
    size += static_cast<size_t>(got);
  }
  return true;
}

bool fileio::append(const void* bytes, size_t size) {
  if (!is_open()) return false;
  // A pipe or a terminal has no end to go to; everything written goes there anyway.
  if (m_owned) lseek(descriptor_of(m_file), 0, SEEK_END);
  size_t written = 0;
  while (written < size) {
    const ssize_t put = retried([&] {
      return ::write(descriptor_of(m_file), static_cast<const uint8_t*>(bytes) + written,
                     size - written);
    });
    if (put < 0) return false;
    written += static_cast<size_t>(put);
  }
  return true;
}

bool fileio::extend(uint64_t size) {
  return is_open() &&
         retried([&] { return ftruncate(descriptor_of(m_file), static_cast<off_t>(size)); }) == 0;
}

bool fileio::close() {
  const bool closed = !is_open() || !m_owned || ::close(descriptor_of(m_file)) == 0;
  m_file = no_file;
  return closed;
}

}  // namespace uni
