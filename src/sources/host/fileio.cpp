#include "sources/host/fileio.h"

#include <algorithm>

namespace uni {

namespace {

constexpr size_t largest_piece = 0x10000000;  // the most that one system call is asked for

}  // namespace

bool fileio::open(const std::string& path, file_use use) {
  close();
  m_file = open_host_file(path, use);
  m_owned = true;
  return is_open();
}

void fileio::attach(host_file stream) {
  close();
  m_file = stream;
  m_owned = false;
}

bool fileio::read_at(void* buffer, size_t& size, uint64_t offset) const {
  const size_t wanted = size;
  size = 0;
  const uint64_t end = length();
  if (offset >= end) return false;
  const size_t total = static_cast<size_t>(std::min<uint64_t>(wanted, end - offset));
  while (size < total) {
    size_t got = 0;
    const size_t piece = std::min(total - size, largest_piece);
    if (!read_host_file(m_file, static_cast<uint8_t*>(buffer) + size, piece, offset + size, got)) {
      return false;
    }
    if (got == 0) break;  // the file has become shorter
    size += got;
  }
  return size != 0 || wanted == 0;
}

bool fileio::read_vector(std::vector<uint8_t>& bytes, uint64_t size, uint64_t offset) const {
  const uint64_t end = length();
  size_t count = static_cast<size_t>(std::min(size, end - std::min(offset, end)));
  bytes.resize(count);
  const bool read = read_at(bytes.data(), count, offset);
  bytes.resize(count);
  return read;
}

bool fileio::append(const void* bytes, size_t size) {
  if (!is_open()) return false;
  // A pipe or a terminal has no end to go to; everything written goes there anyway.
  if (m_owned) seek_host_file_end(m_file);
  const auto* next = static_cast<const uint8_t*>(bytes);
  while (size != 0) {
    size_t put = 0;
    if (!write_host_file(m_file, next, std::min(size, largest_piece), put)) return false;
    next += put;
    size -= put;
  }
  return true;
}

bool fileio::close() {
  const bool closed = !is_open() || !m_owned || close_host_file(m_file);
  m_file = no_host_file;
  return closed;
}

bool file_opens(const std::string& path) {
  fileio file;
  return file.open_read(path);
}

bool read_whole(std::vector<uint8_t>& bytes, const std::string& path, size_t max_bytes) {
  bytes.clear();
  fileio file;
  return file.open_read(path) && file.read_vector(bytes, max_bytes, 0) && !bytes.empty();
}

}  // namespace uni
