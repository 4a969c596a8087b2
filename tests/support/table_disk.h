// Composes disks with partition tables byte by byte.

#pragma once

#include <utility>
#include <vector>

#include "support/bytes.h"

namespace test_support {

/// A disk of `sectors` sectors of `unit` bytes, on which tables and volumes are placed.
struct table_disk {
  explicit table_disk(size_t sectors, size_t sector_bytes = 512)
      : content(sectors * sector_bytes), unit(sector_bytes) {}

  /// A slot of the boot record in `sector`.
  table_disk& slot(size_t sector, size_t index, uint8_t type, uint32_t first, uint32_t count) {
    const size_t at = sector * unit + 446 + 16 * index;
    content[at + 4] = type;
    put_u32(content, at + 8, first);
    put_u32(content, at + 12, count);
    put_u16(content, sector * unit + 510, 0xAA55);
    return *this;
  }

  /// The name of a file system and, unless `count` is 0, the size of its volume.
  table_disk& ntfs(size_t sector, uint64_t count = 8) {
    put(content, sector * unit + 3, as_bytes("NTFS    "));
    if (count == 0) return *this;
    put_u16(content, sector * unit + 11, static_cast<uint16_t>(unit));
    put_u64(content, sector * unit + 40, count);
    return *this;
  }

  /// A header and the entries, each with its first and last sector.
  table_disk& gpt(const std::vector<std::pair<uint64_t, uint64_t>>& entries,
                  uint64_t entries_at = 2) {
    slot(0, 0, 0xEE, 1, 0xFFFFFFFF);
    return gpt_copy(1, entries, entries_at);
  }

  /// The second copy of one, with its header in the last sector.
  table_disk& backup_gpt(const std::vector<std::pair<uint64_t, uint64_t>>& entries,
                         uint64_t entries_at) {
    const uint64_t last = content.size() / unit - 1;
    put(content, last * unit, as_bytes("EFI PART"));
    return gpt_copy(last, entries, entries_at);
  }

  bytes content;
  size_t unit;

 private:
  table_disk& gpt_copy(uint64_t sector, const std::vector<std::pair<uint64_t, uint64_t>>& entries,
                       uint64_t entries_at) {
    const size_t header = sector * unit;
    put_u64(content, header + 24, sector);
    put_u64(content, header + 72, entries_at);
    put_u32(content, header + 80, static_cast<uint32_t>(entries.size()));
    put_u32(content, header + 84, 128);
    for (size_t i = 0; i < entries.size(); ++i) {
      const size_t at = entries_at * unit + 128 * i;
      content[at] = 1;
      put_u64(content, at + 32, entries[i].first);
      put_u64(content, at + 40, entries[i].second);
    }
    return *this;
  }
};

}  // namespace test_support
