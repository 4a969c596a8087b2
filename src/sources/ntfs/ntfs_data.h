// The data of an NTFS file as bytes that are read at offsets.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <utility>
#include <vector>

#include "sources/host/byte_source.h"
#include "sources/host/memory_block.h"
#include "sources/ntfs/ntfs_runs.h"
#include "sources/ntfs/ntfs_volume.h"

namespace ovrik {

/// Bytes that lie side by side in a file and on its volume.
struct file_stretch {
  uint64_t offset = 0;  ///< in the file
  uint64_t length = 0;
  uint64_t place = 0;  ///< on the volume
};

/// Data that is in memory.
class held_data : public byte_source {
 public:
  explicit held_data(uni::memory_block&& bytes) : m_bytes(std::move(bytes)) {}

  uint64_t size() const override { return m_bytes.size(); }
  bool read_at(uint8_t* buffer, size_t& size, uint64_t offset) override;

 private:
  uni::memory_block m_bytes;
};

/// Data that lies in clusters as it is. Holes take no room; gaps between the pieces of the file
/// are zeros.
class plain_data : public byte_source {
 public:
  /// `extents` lie in the order of their VCNs; no more than `most` bytes of them count.
  plain_data(std::shared_ptr<ntfs_volume> volume, const cluster_extents& extents, uint64_t most);

  uint64_t size() const override { return m_size; }
  bool read_at(uint8_t* buffer, size_t& size, uint64_t offset) override;

 private:
  std::shared_ptr<ntfs_volume> m_volume;
  std::vector<file_stretch> m_stretches;  ///< by offset
  uint64_t m_size = 0;
};

/// Data in units of compression. A unit stands for as many bytes of the file as its clusters have,
/// however many come out of it: what is missing at its end is zeros. Some of the units that were
/// used last are kept.
class packed_data : public byte_source {
 public:
  static constexpr uint64_t clusters_per_unit = 16;

  /// `extents` lie in the order of their VCNs, and the file has `size` bytes, no more than they
  /// have.
  packed_data(std::shared_ptr<ntfs_volume> volume, cluster_extents extents, uint64_t size);

  uint64_t size() const override { return m_size; }
  bool read_at(uint8_t* buffer, size_t& size, uint64_t offset) override;

  /// What has to be read for a single byte.
  uint64_t unit_bytes() const { return m_unit_bytes; }

 private:
  /// How a unit is stored.
  struct stored_unit {
    std::vector<file_stretch> stretches;  ///< offsets count from the unit's start
    uint64_t length = 0;                  ///< of its clusters, in bytes, holes and gaps included
    bool has_hole = false;
  };

  /// A unit that was decompressed. What lies behind its bytes cannot be read.
  struct plain_unit {
    uint64_t number = 0;
    std::vector<uint8_t> bytes;
  };

  stored_unit find_unit(uint64_t number) const;
  bool is_raw(const stored_unit& unit);
  const plain_unit& decompressed(uint64_t number, const stored_unit& unit);
  std::vector<uint8_t> decompress(const stored_unit& unit, uint64_t wanted);

  std::shared_ptr<ntfs_volume> m_volume;
  cluster_extents m_extents;
  uint64_t m_size;
  uint64_t m_unit_bytes;
  std::list<plain_unit> m_kept;  ///< the one that was used last in front
};

/// Reads all of `data` into the empty `bytes`; what cannot be read is zeros. False: it has no bytes
/// or there is no memory.
bool read_whole_data(byte_source& data, uni::memory_block& bytes);

}  // namespace ovrik
