#include "support/vmdk_builder.h"

namespace test_support {

namespace {

constexpr uint32_t entries_per_table = 4;
constexpr size_t overhead_sectors = 32;
constexpr size_t directory_at = 3 * vmdk_builder::sector;
constexpr size_t first_table_sector = 4;

}  // namespace

bytes vmdk_builder::file() const {
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
  const auto entry_at = [](uint64_t grain) {
    const size_t table = static_cast<size_t>(grain / entries_per_table);
    return (first_table_sector + table) * sector + 4 * (grain % entries_per_table);
  };
  for (uint64_t grain = 0; grain < grains; grain += entries_per_table) {
    const auto table = static_cast<uint32_t>(grain / entries_per_table);
    put_u32(file, directory_at + 4 * table, first_table_sector + table);
  }
  for (const uint64_t grain : zeroed) put_u32(file, entry_at(grain), 1);
  for (const auto& [grain, content] : data) {
    put_u32(file, entry_at(grain), static_cast<uint32_t>(file.size() / sector));
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
