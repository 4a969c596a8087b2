// The calls of this host that plain files are made of, as few as `uni::fileio` needs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace uni {

/// The host's descriptor or handle.
using host_file = intptr_t;
constexpr host_file no_host_file = -1;

enum class file_use {
  read,      ///< evidence: nothing but reading is asked for
  replace,   ///< writing, from an empty file on; a read-only one is replaced where that is allowed
  make_new,  ///< writing, if nothing has the name yet
  append,    ///< writing behind what an existing file holds
};

/// Opens the file at `path` (UTF-8, separators at its end ignored); `no_host_file` if it does not
/// open or is a folder. Read are plain files and whole disks or volumes, and no disk or volume is
/// ever opened for writing.
host_file open_host_file(const std::string& path, file_use use);

/// False: the system says that something written did not arrive.
bool close_host_file(host_file file);

/// The streams of the process; `no_host_file` where it has none.
host_file host_standard_output();
host_file host_standard_error();

/// Size in bytes; 0 if it has none.
uint64_t host_file_length(host_file file);

/// Reads once, up to `size` bytes at `offset`, and sets `got` to the count that came, 0 at the end.
/// False: the system reported an error.
bool read_host_file(host_file file, void* buffer, size_t size, uint64_t offset, size_t& got);

/// Moves to the end, where the next bytes are written.
void seek_host_file_end(host_file file);

/// Writes once, up to `size` bytes, and sets `put` to the count that went out. False: the system
/// reported an error.
bool write_host_file(host_file file, const uint8_t* bytes, size_t size, size_t& put);

/// Makes a file `size` bytes long: a longer one is cut, a shorter one gets a hole where the host
/// has holes.
bool extend_host_file(host_file file, uint64_t size);

}  // namespace uni
