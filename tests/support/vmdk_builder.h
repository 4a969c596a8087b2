// Composes small sparse VMDK files byte by byte: grains of 8 sectors, tables of 4 entries.

#pragma once

#include <map>
#include <string>

#include "support/bytes.h"

namespace test_support {

struct vmdk_builder {
  static constexpr size_t sector = 512;

  std::string descriptor;          ///< the text as it stands
  uint64_t grain_sectors = 8;      ///< of one grain
  uint64_t grains = 16;            ///< of the virtual disk
  std::map<uint64_t, bytes> data;  ///< the grains that are stored; cut or filled up to a grain
  std::vector<uint64_t> zeroed;    ///< grains that are zeros by their table entry

  /// Header, descriptor in sector 1, directory in sector 3, tables from sector 4 on, grains behind
  /// the 32 sectors of overhead.
  bytes file() const;
};

/// A descriptor with these two lines and, unless it is empty, the hint in quotes.
std::string vmdk_descriptor_text(const std::string& cid, const std::string& parent_cid,
                                 const std::string& hint = "");

}  // namespace test_support
