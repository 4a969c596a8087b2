// Plain file access: a file read at offsets, or a file written at its end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "sources/host/host_file.h"

namespace uni {

/// A file or, for results, a standard stream. Evidence is only ever opened through `open_read`,
/// which asks the system for nothing but reading. Used by one thread at a time; closes itself.
class fileio {
 public:
  fileio() = default;
  ~fileio() { close(); }
  fileio(const fileio&) = delete;
  fileio& operator=(const fileio&) = delete;

  /// Opens an existing file for reading; trailing separators of `path` (UTF-8) are ignored. Never
  /// waits for a peer, as a pipe without a writer would make it. False: an empty path, a folder, a
  /// pipe or a device that is no disk, or a file that the system does not let us read; the object
  /// is then closed.
  bool open_read(const std::string& path) { return open(path, file_use::read); }

  /// Opens `path` for writing, creating or truncating it; a read-only file is replaced where the
  /// system allows that. False: an empty path, a folder, or what the system does not let us write.
  bool open_write(const std::string& path) { return open(path, file_use::replace); }

  /// Makes a file at `path` and opens it for writing. False: something has this name already, be it
  /// a link that leads nowhere, or the system does not let us write.
  bool open_new(const std::string& path) { return open(path, file_use::make_new); }

  /// Opens an existing file for writing behind what it holds. False as for `open_write`.
  bool open_append(const std::string& path) { return open(path, file_use::append); }

  /// Makes this object a standard stream of the process, which is never closed.
  void attach_standard_output() { attach(host_standard_output()); }
  void attach_standard_error() { attach(host_standard_error()); }

  bool is_open() const { return m_file != no_host_file; }

  /// True if this object has opened the file, which is no standard stream then.
  bool is_own() const { return is_open() && m_owned; }

  /// Size of the file in bytes; 0 if it has none (a pipe) or the object is closed.
  uint64_t length() const { return is_open() ? host_file_length(m_file) : 0; }

  /// Reads up to `size` bytes at `offset` into `buffer` and sets `size` to the count that came,
  /// which is short at the file's end. False: the object is closed or `offset` lies at or past the
  /// end, both with `size` 0, or the system reported an error behind the first `size` bytes.
  bool read_at(void* buffer, size_t& size, uint64_t offset) const;

  /// Reads up to `size` bytes at `offset` into `bytes`, which gets no longer than what the file
  /// has there. False: as for `read_at`; `bytes` then holds what came.
  bool read_vector(std::vector<uint8_t>& bytes, uint64_t size, uint64_t offset) const;

  /// Writes all bytes at the file's end. False: not all of them went out.
  bool append(const void* bytes, size_t size);

  /// Makes a file that is shorter `size` bytes long; what is added reads as zeros and takes no room
  /// where the host can leave it out. False: the system does not do it.
  bool extend(uint64_t size) { return is_open() && extend_host_file(m_file, size); }

  /// Cuts a file that this object has opened behind its first `size` bytes; one that is shorter
  /// stays as it is. False: the system does not do it, as for a pipe, or it is a standard stream.
  bool cut(uint64_t size) {
    return is_own() && (length() <= size || extend_host_file(m_file, size));
  }

  /// Closes the file. False: the system says that something written did not arrive.
  bool close();

 private:
  bool open(const std::string& path, file_use use);
  void attach(host_file stream);

  host_file m_file = no_host_file;
  bool m_owned = false;
};

/// True if the file at `path` opens for reading. False also if it is locked.
bool file_opens(const std::string& path);

/// Reads the first `max_bytes` bytes of a file, or all of a shorter one. False: it does not open,
/// is empty or gives no byte.
bool read_whole(std::vector<uint8_t>& bytes, const std::string& path, size_t max_bytes);

}  // namespace uni
