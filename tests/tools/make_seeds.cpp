// Writes the inputs that the fuzzers start from, a folder for each of them. The same bytes come out
// at every run.

#include <exception>
#include <filesystem>
#include <iostream>
#include <string>

#include "support/cache_builder.h"
#include "support/ntfs_builder.h"
#include "support/system_hive.h"
#include "support/vmdk_builder.h"

namespace {

using namespace test_support;

/// "abc" and a copy of 4093 bytes from three back, then a raw chunk that the unit cuts short.
const bytes packed_unit = {0x05, 0xB0, 0x08, 'a', 'b', 'c', 0xFA, 0x2F, 0xFF, 0x3F, 'x', 'y'};

const bytes directory_name = resident_attribute(0x30, file_name(11, u"config"));
const bytes hive_name = resident_attribute(0x30, file_name(12, u"SYSTEM"));
const attribute_form whole_index = {.id = 2, .name = u"$I30", .size = 4096};

bytes joined(bytes first, const bytes& second) {
  append(first, second);
  return first;
}

/// A volume whose last directory has its index in another record, and whose hive is in pieces.
ntfs_builder volume_with_lists() {
  ntfs_builder built(96);
  built.record(12, {directory_name, resident_attribute(0x20, list_entry(0xA0, 20, 1, 2)),
                    resident_attribute(0x90, index_root({}), {.name = u"$I30"})});
  built.record(20, {non_resident_attribute(0xA0, {0x11, 4, 60}, whole_index)}, 1, 1, 12);
  built.cluster(60, index_block({13, 14}));
  built.record(
      13, {resident_attribute(0x20, joined(list_entry(0x80, 13, 1, 1), list_entry(0x80, 21, 1, 3))),
           hive_name, non_resident_attribute(0x80, {0x11, 1, 70}, {.id = 1, .size = 2000})});
  built.record(21, {non_resident_attribute(0x80, {0x11, 1, 71}, {.id = 3, .first_vcn = 1})}, 1, 1,
               13);
  return built;
}

ntfs_builder volume_with_packed_hive() {
  ntfs_builder built(96);
  built.record(
      13, {hive_name, non_resident_attribute(0x80, {0x11, 1, 70, 0x01, 15},
                                             {.flags = 1, .size = 9000, .compression_unit = 4})});
  built.cluster(70, packed_unit);
  return built;
}

void put_slot(bytes& disk, size_t sector, size_t slot, uint8_t type, uint32_t first) {
  const size_t at = sector * 512 + 446 + slot * 16;
  disk.at(at + 4) = type;
  put_u32(disk, at + 8, first);
  put_u32(disk, at + 12, 2);
  put_u16(disk, sector * 512 + 510, 0xAA55);
}

/// A primary partition and, behind an extended one, two logical ones.
bytes disk_with_chain() {
  bytes disk(16 * 512);
  put_slot(disk, 0, 0, 7, 1);
  put_slot(disk, 0, 1, 5, 4);
  put_slot(disk, 4, 0, 7, 1);
  put_slot(disk, 4, 1, 5, 4);
  put_slot(disk, 8, 0, 0xC, 1);
  for (const size_t sector : {1U, 5U}) put(disk, sector * 512 + 3, as_bytes("NTFS    "));
  return disk;
}

bytes disk_with_gpt() {
  bytes disk(16 * 512);
  put_slot(disk, 0, 0, 0xEE, 1);
  put_u64(disk, 512 + 24, 1);
  put_u64(disk, 512 + 72, 2);
  put_u32(disk, 512 + 80, 2);
  put_u32(disk, 512 + 84, 128);
  for (const size_t entry : {0U, 1U}) {
    disk[1024 + entry * 128] = 1;
    put_u64(disk, 1024 + entry * 128 + 32, 8 + entry);
    put_u64(disk, 1024 + entry * 128 + 40, 8 + entry);
  }
  put(disk, 8 * 512 + 3, as_bytes("NTFS    "));
  return disk;
}

/// The length of a base, the base, and a snapshot of it.
bytes disk_chain() {
  const vmdk_builder base{.descriptor = vmdk_descriptor_text("00000001", "ffffffff"),
                          .data = {{1, bytes(100, 'a')}, {5, bytes(100, 'b')}}};
  vmdk_builder child{.descriptor = vmdk_descriptor_text("00000002", "00000001", "base"),
                     .data = {{5, bytes(100, 'c')}}};
  child.zeroed = {1};
  const bytes first = base.file();
  bytes chain;
  append_u32(chain, static_cast<uint32_t>(first.size()));
  append(chain, first);
  append(chain, child.file());
  return chain;
}

bytes small_cache(int layout) {
  cache_builder cache(layout);
  cache.slots(2);
  cache.entry({.path = u"\\??\\C:\\a.exe", .modified = filetime(2014, 3, 5), .data = {1, 2, 3, 4}});
  cache.entry({.path = u"C:\\b|,.exe", .modified = filetime(2015, 4, 6)});
  return cache.bytes();
}

class seed_folder {
 public:
  explicit seed_folder(std::filesystem::path root) : m_root(std::move(root)) {}

  void add(const std::string& target, const std::string& name, bytes input) const {
    while (!input.empty() && input.back() == 0) input.pop_back();
    std::filesystem::create_directories(m_root / target);
    write_file(m_root / target / name, input);
  }

 private:
  std::filesystem::path m_root;
};

void write_seeds(const seed_folder& seeds) {
  for (const auto& [name, built] :
       {std::pair{"lists", volume_with_lists()}, std::pair{"packed", volume_with_packed_hive()}}) {
    seeds.add("ntfs", name, built.volume);
    const auto records = static_cast<std::ptrdiff_t>(ntfs_builder::record_at(10));
    seeds.add("ntfs_record", name, bytes(built.volume.begin() + records, built.volume.end()));
  }
  const bytes root = joined(index_root({3, 4, 5}), bytes(1024));
  seeds.add("index_block", "root", root);
  seeds.add("index_block", "blocks", joined(index_block({3, 4}), index_block({5})));
  seeds.add("run_list", "runs",
            {0, 0, 0, 0, 0, 0, 0, 0, 0x21, 2, 0, 1, 0x11, 3, 0xF0, 0x01, 9, 0x11, 1, 0x20});
  seeds.add("lznt1", "unit", joined({0, 0x30, 0, 0}, packed_unit));
  seeds.add("partitions", "chain", disk_with_chain());
  seeds.add("partitions", "gpt", disk_with_gpt());
  seeds.add("vmdk", "chain", disk_chain());
  const bytes hive =
      system_hive({{.number = 1, .cache = small_cache(13), .last_write = filetime(2023, 3, 4)}}, 1)
          .bytes();
  seeds.add("hive", "system", hive);
  for (const int layout : {1, 2, 3, 4, 5, 6, 7, 9, 10, 12, 13, 14}) {
    seeds.add("shim", "layout-" + std::to_string(layout), small_cache(layout));
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: make_seeds FOLDER\n";
    return 1;
  }
  try {
    write_seeds(seed_folder(argv[1]));
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
  return 0;
}
