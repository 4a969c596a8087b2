#include "support/vmdk_builder.h"

namespace test_support {

bytes vmdk_builder::file() const {
  constexpr uint64_t entries_per_table = 4;
  constexpr uint64_t overhead_sectors = 32;
  bytes file(overhead_sectors * sector);
  put(file, 0, as_bytes("KDMV"));
  put_u64(file, 12, grains * grain_sectors);
  put_u64(file, 20, grain_sectors);
  put_u64(file, 28, 1);
  put_u64(file, 36, 2);
  put_u32(file, 44, entries_per_table);
  put_u64(file, 56, 3);
  put_u64(file, 64, overhead_sectors);
  put(file, sector, as_bytes(descriptor));
  for (uint64_t table = 0; table < grains / entries_per_table; ++table) {
    put_u32(file, 3 * sector + 4 * table, static_cast<uint32_t>(4 + table));
  }
  const auto set_entry = [&file](uint64_t grain, uint64_t value) {
    const uint64_t table_at = (4 + grain / entries_per_table) * sector;
    put_u32(file, table_at + 4 * (grain % entries_per_table), static_cast<uint32_t>(value));
  };
  for (const uint64_t grain : zeroed) set_entry(grain, 1);
  for (const auto& [grain, content] : data) {
    set_entry(grain, file.size() / sector);
    bytes whole = content;
    whole.resize(grain_sectors * sector);
    append(file, whole);
  }
  return file;
}

std::string vmdk_descriptor_text(const std::string& cid, const std::string& parent_cid,
                                 const std::string& hint) {
  const std::string text = "# Disk DescriptorFile\nversion=1\nCID=" + cid +
                           "\nparentCID=" + parent_cid + "\ncreateType=\"monolithicSparse\"\n";
  return hint.empty() ? text : text + "parentFileNameHint=\"" + hint + "\"\n";
}

}  // namespace test_support
