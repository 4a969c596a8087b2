// Reads a source so that what cannot be read of it costs no more than itself.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "sources/host/byte_source.h"
#include "sources/host/read_faults.h"

namespace ovrik {

/// A source under the name that a run gives it. What is asked for comes in one read. Where that
/// fails, the rest is tried again in blocks of 4,096 bytes, and a block that fails in sectors of
/// 512; reads grow again behind it. What then does not come is zeros.
///
/// A disk that fails everywhere must not keep a run for days: behind 64 blocks in a row that failed
/// none is tried by sectors, and behind 1,024 one block is tried in 256 KiB, which are lost with
/// it, until one comes.
class source_reader {
 public:
  /// The size counts that `source` has now: what is missing later, because a file became shorter,
  /// cannot be read.
  source_reader(std::unique_ptr<byte_source> source, std::string name)
      : m_source(std::move(source)), m_name(std::move(name)), m_size(m_source->size()) {}

  /// Size in bytes.
  uint64_t size() const { return m_size; }

  /// Reads up to `size` bytes at `offset` into `buffer` and sets `size` to how many of them the
  /// source has, 0 at or behind its end. What of them cannot be read is zeros and goes to `faults`.
  /// False: all of them.
  bool read(uint8_t* buffer, size_t& size, uint64_t offset, read_faults& faults);

  /// Reads up to `size` bytes at `offset` into `bytes`, which gets no longer than what the source
  /// has there. False: it has nothing there, or none of it can be read.
  bool read_vector(std::vector<uint8_t>& bytes, uint64_t size, uint64_t offset,
                   read_faults& faults);

 private:
  struct reading;

  bool read_some(reading& asked, size_t wanted);
  void read_block(reading& asked);
  void lose(reading& asked, size_t bytes);

  std::unique_ptr<byte_source> m_source;
  std::string m_name;
  uint64_t m_size;
  size_t m_blocks_failed = 0;  ///< in a row
};

/// Reads the first `max_bytes` bytes of a file, or all of a shorter one. False: it does not open,
/// is empty or gives no byte.
bool read_whole_file(std::vector<uint8_t>& bytes, const std::string& path, size_t max_bytes,
                     read_faults& faults);

}  // namespace ovrik
