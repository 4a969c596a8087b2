// Writes the inputs that the fuzzers start from, a folder for each of them. The same bytes come out
// at every run.

#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "support/cache_builder.h"
#include "support/carving.h"
#include "support/hive_log_builder.h"
#include "support/ntfs_builder.h"
#include "support/system_hive.h"
#include "support/table_disk.h"
#include "support/vmdk_builder.h"

namespace {

using namespace test_support;

/// "abc" and a copy of 4093 bytes from three back, then a raw chunk that the unit cuts short.
const bytes packed_unit = {0x05, 0xB0, 0x08, 'a', 'b', 'c', 0xFA, 0x2F, 0xFF, 0x3F, 'x', 'y'};

const bytes directory_name = resident_attribute(0x30, file_name(11, u"config"));
const bytes hive_name = resident_attribute(0x30, file_name(12, u"SYSTEM"));

bytes data_piece(const bytes& runs, const attribute_form& form) {
  return non_resident_attribute(0x80, runs, form);
}

/// A volume whose last directory has its index in another record, and whose hive is in pieces.
bytes volume_with_lists() {
  ntfs_builder built(96);
  const bytes index_list = resident_attribute(0x20, list_entry(0xA0, 20, 1, 2));
  built.record(12, {directory_name, index_list, index_attribute({})});
  const attribute_form whole_index = {.id = 2, .name = u"$I30", .size = 4096};
  built.record(20, {non_resident_attribute(0xA0, {0x11, 4, 60}, whole_index)}, 1, 1, 12);
  built.cluster(60, index_block({13, 14}));
  const bytes pieces = concat({list_entry(0x80, 13, 1, 1), list_entry(0x80, 21, 1, 3)});
  built.record(13, {resident_attribute(0x20, pieces), hive_name,
                    data_piece({0x11, 1, 70}, {.id = 1, .size = 2000})});
  built.record(21, {data_piece({0x11, 1, 71}, {.id = 3, .first_vcn = 1})}, 1, 1, 13);
  return built.volume;
}

bytes volume_with_packed_hive() {
  ntfs_builder built(96);
  const attribute_form packed = {.flags = 1, .size = 9000, .compression_unit = 4};
  built.record(13, {hive_name, data_piece({0x11, 1, 70, 0x01, 15}, packed)});
  built.cluster(70, packed_unit);
  return built.volume;
}

/// A primary partition and, behind an extended one, two logical ones.
bytes disk_with_chain() {
  table_disk disk(16);
  disk.slot(0, 0, 7, 1, 2).slot(0, 1, 5, 4, 2).slot(4, 0, 7, 1, 2).slot(4, 1, 5, 4, 2);
  return disk.slot(8, 0, 0xC, 1, 2).ntfs(1, 0).ntfs(5, 0).content;
}

bytes disk_with_gpt() {
  return table_disk(16).gpt({{8, 8}, {9, 9}}).slot(0, 0, 0xEE, 1, 2).ntfs(8, 0).content;
}

/// The length of a base, the base, and a snapshot of it.
bytes disk_chain() {
  const vmdk_builder base{.descriptor = vmdk_descriptor_text("00000001", "ffffffff"),
                          .data = {{1, bytes(100, 'a')}, {5, bytes(100, 'b')}}};
  const vmdk_builder child{.descriptor = vmdk_descriptor_text("00000002", "00000001", "base"),
                           .data = {{5, bytes(100, 'c')}},
                           .zeroed = {1}};
  bytes length;
  append_u32(length, static_cast<uint32_t>(base.file().size()));
  return concat({length, base.file(), child.file()});
}

/// A dirty hive and its logs, with their sizes in sectors in front.
bytes hive_with_logs(const std::vector<bytes>& logs) {
  const bytes hive = composed_dirty_hive({.sequence1 = 11});
  bytes input = {1, static_cast<uint8_t>(hive.size() / 512)};
  for (const bytes& log : logs) input.push_back(static_cast<uint8_t>(log.size() / 512));
  append(input, hive);
  for (const bytes& log : logs) append(input, log);
  return input;
}

bytes hive_with_log_entries() {
  return hive_with_logs(
      {concat({composed_base_block({}), composed_log_entry(10, {{0, 1024, 'a'}}),
               composed_log_entry(11, {{512, 512, 'b'}, {0x1000, 512, 'c'}}, 0x2000)}),
       concat({composed_base_block({.sequence1 = 12, .sequence2 = 12}),
               composed_log_entry(12, {{2048, 512, 'd'}})})});
}

bytes hive_with_dirty_vector() {
  return hive_with_logs({concat({composed_base_block({}),
                                 composed_dirty_vector({{512, 1024, 'a'}, {3584, 512, 'b'}})}),
                         {}});
}

bytes small_cache(int layout) {
  cache_builder cache(layout);
  cache.entry({.path = u"\\??\\C:\\a.exe", .modified = filetime(2014, 3, 5), .data = {1, 2, 3, 4}});
  cache.entry({.path = u"C:\\b|,.exe", .modified = filetime(2015, 4, 6)});
  return cache.bytes();
}

void write_seeds(const std::filesystem::path& folder) {
  const auto add = [&folder](const std::string& target, const std::string& name, bytes input) {
    while (!input.empty() && input.back() == 0) input.pop_back();
    std::filesystem::create_directories(folder / target);
    write_file(folder / target / name, input);
  };
  for (const auto& [name, volume] :
       {std::pair{"lists", volume_with_lists()}, std::pair{"packed", volume_with_packed_hive()}}) {
    add("ntfs", name, volume);
    const auto records = static_cast<std::ptrdiff_t>(ntfs_builder::record_at(10));
    add("ntfs_record", name, bytes(volume.begin() + records, volume.end()));
  }
  add("index_block", "root", index_root({3, 4, 5}));
  add("index_block", "blocks", concat({index_block({3, 4}), index_block({5})}));
  add("run_list", "runs",
      {0, 0, 0, 0, 0, 0, 0, 0, 0x21, 2, 0, 1, 0x11, 3, 0xF0, 0x01, 9, 0x11, 1, 0x20});
  add("lznt1", "unit", concat({{0, 0x30, 0, 0}, packed_unit}));
  add("partitions", "chain", disk_with_chain());
  add("partitions", "gpt", disk_with_gpt());
  add("vmdk", "chain", disk_chain());
  const control_set set = {.cache = small_cache(13), .last_write = filetime(2023, 3, 4)};
  add("hive", "system", system_hive({set}, 1).bytes());
  add("hive_logs", "entries", hive_with_log_entries());
  add("hive_logs", "dirty_vector", hive_with_dirty_vector());
  add("carve", "hive_of_two_segments", system_hive_with(cache_of_segments(7, 2)).bytes());
  add("carve", "raw_of_windows_xp", segment_bins(cache_of_segments(1, 1)));
  add("options", "list",
      as_bytes(
          "ovrik\n-pipe_binary\n-filter\n*.bin|\\config\n-filter_sig\n7265|4\n-cmd_start_time\n"
          "30-Jan-2 3:04 "
          "PM\n-cmd_stop_time\n2031/1/1\n-alias\na|b\n-csvgen\n-timeformat\nhh:mm:ss"));
  add("options", "disks", as_bytes("ovrik\n-vmdk\na|b;\"c\"\n-vmdk\nd\n-offset\n0x10\n-multiline"));
  for (const int layout : {1, 2, 3, 4, 5, 6, 7, 9, 10, 12, 13, 14}) {
    add("shim", "layout-" + std::to_string(layout), small_cache(layout));
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: make_seeds FOLDER\n";
    return 1;
  }
  write_seeds(argv[1]);
}
