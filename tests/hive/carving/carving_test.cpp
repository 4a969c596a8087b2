// Cache pages found in raw files and put together again: composed hives and memory images, whole,
// with pages missing and with lists that lie.

#include "support/carving.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "hive/carving/chunk_reassembly.h"
#include "hive/carving/chunk_scanner.h"
#include "hive/carving/chunk_stats.h"
#include "support/cache_builder.h"
#include "support/system_hive.h"
#include "support/temp_dir.h"

namespace ovrik {
namespace {

using namespace test_support;

/// What came out of a source, with the words of the carver in short.
class carving : public carve_listener {
 public:
  explicit carving(const bytes& content) {
    const temp_dir folder;
    write_file(folder.path("source"), content);
    scanned_source source;
    opened = open_scanned_source(source, folder.path("source"));
    if (!opened || !scan_pages(source, *this)) return;
    found = true;
    in_place = are_bins_in_place(source);
    const carved_cache carved = reassemble(source, *this);
    for (const carved_chunk& chunk : carved.primary) primary.push_back(content_of(source, chunk));
    for (const carved_chunk& chunk : carved.other) other.push_back(content_of(source, chunk));
    if (!carved.primary.empty()) chunk_bytes = carved.primary[0].size;
    runs = carved.runs;
    std::ostringstream text;
    write_chunk_stats(text, source, carved);
    stats = text.str();
  }

  void scanned(uint64_t count, uint64_t source_bytes) override {
    EXPECT_LE(count, source_bytes);
    looked_at = count;
  }
  void layout_recognised(uint64_t, shim_layout layout) override { recognised = layout; }
  void scan_stopped(uint64_t offset) override { said += "stopped " + std::to_string(offset); }
  void db_cell_reached(size_t index, const db_cell& cell) override {
    said += "#" + std::to_string(index) + ":" + std::to_string(cell.segment_count) + " ";
  }
  void segment_missing(uint32_t number, uint32_t, uint32_t) override {
    said += "-" + std::to_string(number) + " ";
  }

  bool opened = false, found = false, in_place = false;
  std::vector<bytes> primary, other;
  std::vector<page_run> runs;
  std::string said, stats;
  shim_layout recognised = shim_layout::none;
  uint64_t chunk_bytes = 0;  ///< of the first chunk
  uint64_t looked_at = 0;

 private:
  /// The first MiB of a chunk.
  static bytes content_of(const scanned_source& source, const carved_chunk& chunk) {
    bytes content(std::min<uint64_t>(chunk.size, 1 << 20));
    for (const chunk_piece& piece : chunk.pieces) {
      put(content, piece.at, piece_bytes(source, piece).copy());
    }
    return content;
  }
};

constexpr size_t segment_room = 16384;  ///< that a chunk by lists has for each segment

/// A hive with a cache of layout 7 in three segments, whose bins stand one behind the other.
struct three_segments {
  three_segments() {
    hive_builder built = system_hive_with(value);
    hive = built.bytes();
    db_at = built.data_at(cache_key_path(1), "AppCompatCache");
    const size_t list_at = get_u32(hive, db_at + 8) + page_bytes;
    for (size_t i = 0; i < 3; ++i) {
      bins.push_back(get_u32(hive, list_at + 4 + 4 * i) + page_bytes - 0x20);
    }
  }

  bytes without_page(size_t at) const {
    bytes damaged = hive;
    put(damaged, at, bytes(page_bytes));
    return damaged;
  }

  /// The bytes of the value from `begin` to `end`.
  bytes part(size_t begin, size_t end) const {
    return {value.begin() + static_cast<std::ptrdiff_t>(begin),
            value.begin() + static_cast<std::ptrdiff_t>(end)};
  }

  const bytes value = cache_of_segments(7, 3);
  bytes hive;
  size_t db_at = 0;
  std::vector<size_t> bins;
};

TEST(carving, brings_back_every_array_layout) {
  for (int layout = 1; layout <= 7; ++layout) {
    SCOPED_TRACE(layout);
    const bytes value = cache_of_segments(layout, 3);
    const size_t segments = layout == 1 ? 4 : 3;
    const carving hive(system_hive_with(value).bytes());
    EXPECT_EQ(layout, static_cast<int>(hive.recognised));
    EXPECT_EQ("#0:" + std::to_string(segments) + " ", hive.said);
    ASSERT_EQ(1U, hive.primary.size());
    EXPECT_TRUE(padded(value, segments * segment_room) == hive.primary[0]);
    EXPECT_TRUE(hive.other.empty());
    // The headers of layouts 2 to 5 are not what a chunk is taken to begin with.
    const carving raw(strewn(value));
    EXPECT_TRUE(raw.found && raw.primary.empty());
    ASSERT_EQ(layout >= 2 && layout <= 5 ? 0U : 1U, raw.other.size());
    if (!raw.other.empty()) {
      EXPECT_TRUE(padded(raw.other[0], value.size()) == padded(value, raw.other[0].size()));
    }
  }
}

TEST(carving, other_layouts_have_no_pages) {
  for (const int layout : {9, 10, 12, 13, 14}) {
    cache_builder cache(layout);
    for (int i = 0; i < 500; ++i) cache.entry(u"C:\\Windows\\System32\\some program.exe", 1);
    const carving raw(strewn(cache.bytes()));
    EXPECT_TRUE(raw.opened && !raw.found) << layout;
  }
}

TEST(carving, a_prefix_moves_all_places_and_nothing_else) {
  const bytes value = cache_of_segments(7, 3);
  const carving first(strewn(value));
  const carving moved(concat({bytes(7 * page_bytes, 0xFF), strewn(value)}));
  ASSERT_EQ(1U, first.other.size());
  EXPECT_TRUE(first.other == moved.other);
  page_run expected = first.runs.at(0);
  for (uint64_t& offset : expected) offset += 7 * page_bytes;
  EXPECT_EQ(expected, moved.runs.at(0));
}

TEST(carving, missing_pages_of_a_hive_leave_what_the_rest_is) {
  const three_segments source;
  const size_t second = source.bins[1];
  const bytes segments[] = {source.part(0, segment_bytes),
                            source.part(segment_bytes, 2 * segment_bytes),
                            source.part(2 * segment_bytes, 3 * segment_bytes)};
  const size_t first_tail = segment_bytes + 4060;
  struct {
    const char* name;
    size_t page;
    std::string said;
    bytes expected;
  } const rows[] = {
      {"the second bin", second, "#0:3 -2 ", concat({segments[0], segments[2]})},
      {"a tail page", second + page_bytes, "#0:3 ",
       concat({segments[0], source.part(segment_bytes, first_tail), bytes(page_bytes),
               source.part(first_tail + page_bytes, 2 * segment_bytes), segments[2]})},
      // A whole page is missing then, though the segment had only 4,092 bytes of it.
      {"the last tail page", second + 3 * page_bytes, "#0:3 ",
       concat({segments[0], source.part(segment_bytes, first_tail + 2 * page_bytes),
               bytes(page_bytes), segments[2]})},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const carving carved(source.without_page(row.page));
    EXPECT_EQ(row.said, carved.said);
    ASSERT_EQ(1U, carved.primary.size());
    EXPECT_TRUE(padded(row.expected, 3 * segment_room) == carved.primary[0]);
    EXPECT_TRUE(carved.other.empty());
  }
  // Nothing else tells the layout.
  EXPECT_FALSE(carving(source.without_page(source.bins[0])).found);
}

TEST(carving, missing_pages_of_a_raw_file_are_left_out) {
  const bytes value = cache_of_segments(7, 3);
  const bytes whole = strewn(value);
  const size_t start = 5 * page_bytes;
  const auto without = [&](size_t page) {
    bytes damaged = whole;
    put(damaged, start + page * page_bytes, bytes(page_bytes));
    return damaged;
  };
  const auto less = [&](size_t at, size_t length) {
    bytes rest = value;
    rest.erase(rest.begin() + static_cast<std::ptrdiff_t>(at),
               rest.begin() + static_cast<std::ptrdiff_t>(at + length));
    return rest;
  };
  struct {
    size_t page;
    bytes expected;
    std::vector<size_t> run;
  } const rows[] = {
      // The bins that follow another one are not noted.
      {12, value, {0, 1, 2, 3, 5, 6, 7, 9, 10, 11}},
      {4, less(segment_bytes, segment_bytes), {0, 1, 2, 3, 9, 10, 11}},
      {6, less(segment_bytes + 4060 + 4096, 4096), {0, 1, 2, 3, 5, 7, 9, 10, 11}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.page);
    const carving carved(without(row.page));
    ASSERT_EQ(1U, carved.other.size());
    EXPECT_TRUE(row.expected == carved.other[0]);
    page_run expected;
    for (const size_t page : row.run) expected.push_back(start + page * page_bytes);
    EXPECT_EQ(expected, carved.runs.at(0));
  }
  EXPECT_FALSE(carving(without(0)).found);
}

TEST(carving, the_first_header_takes_all_bins) {
  const bytes value = cache_of_segments(6, 3);
  const carving carved(concat({strewn(value), strewn(value)}));
  ASSERT_EQ(2U, carved.other.size());
  EXPECT_TRUE(concat({value, value}) == carved.other[0]);
  EXPECT_TRUE(bytes(value.begin(), value.begin() + 4060) == carved.other[1]);
}

TEST(carving, a_cut_source_ends_in_zeros) {
  const three_segments source;
  bytes cut = source.hive;
  cut.resize(source.bins[2] + 4000);
  const carving carved(cut);
  ASSERT_EQ(1U, carved.primary.size());
  EXPECT_TRUE(padded(source.part(0, 2 * segment_bytes + 4000 - 36), 3 * segment_room) ==
              carved.primary[0]);
  EXPECT_EQ(cut.size(), carved.looked_at);
}

TEST(carving, bins_of_a_hive_stand_where_they_say) {
  const three_segments source;
  EXPECT_TRUE(carving(source.hive).in_place);
  for (const uint32_t stated : {0U, 0x80000000U, get_u32(source.hive, source.bins[2] + 4) + 1}) {
    bytes moved = source.hive;
    put_u32(moved, source.bins[2] + 4, stated);
    EXPECT_FALSE(carving(moved).in_place) << stated;
    moved[0] = 'R';
    EXPECT_TRUE(carving(moved).in_place) << stated;
  }
}

TEST(carving, lying_sources_are_carved_for_what_they_hold) {
  const three_segments good;
  const auto changed = [&](size_t at, uint32_t value) {
    bytes hive = good.hive;
    put_u32(hive, at, value);
    return hive;
  };
  const size_t count_at = good.db_at + 4;  // with the signature in front of it
  const auto claims = [](uint32_t count) { return count << 16 | 0x6264; };
  const size_t end = good.hive.size();
  const auto list_offset = static_cast<uint32_t>(end - page_bytes);

  bytes huge_list = changed(count_at, claims(0xFFFF));  // the same three segments, then zeros
  put_u32(huge_list, good.db_at + 8, list_offset);
  append_u32(huge_list, 0x80000000);
  for (const size_t bin : good.bins) {
    append_u32(huge_list, static_cast<uint32_t>(bin - page_bytes + 0x20));
  }
  const bytes short_list = padded(huge_list, end + 4 * 0xFFFF);
  huge_list.resize(end + 4 * 0x10000);
  // Bins of nothing but a cell that claims a list.
  const auto bin_of_list = [&claims](uint32_t count, uint32_t offset) {
    bytes bin = as_bytes("hbin");
    bin.resize(0x20);
    for (const uint32_t field : {16U, claims(count), offset}) append_u32(bin, field);
    return padded(bin, page_bytes);
  };
  bytes many_lists = huge_list;
  for (int i = 0; i < 40; ++i) append(many_lists, bin_of_list(0xFFFF, list_offset));
  bytes behind_lies = changed(count_at, claims(0xFFFF));  // of a list of zeros, as three more do
  put_u32(behind_lies, good.db_at + 8, list_offset);
  append_u32(behind_lies, 0x80000000);
  behind_lies.resize(end + 4 * 0x10000);
  for (int i = 0; i < 3; ++i) append(behind_lies, bin_of_list(0xFFFF, list_offset));
  append(behind_lies, bin_of_list(3, get_u32(good.hive, good.db_at + 8)));
  bytes hbins(64 * page_bytes);
  for (size_t at = 0; at < hbins.size(); at += page_bytes) put(hbins, at, as_bytes("hbin"));
  bytes no_end = good.hive;
  for (const size_t bin : good.bins) put_u32(no_end, bin + 0x20, 0x80000000);
  bytes no_tail = good.hive;
  for (const size_t bin : good.bins) put_u32(no_tail, bin + 0x20, 8);

  struct {
    const char* name;
    bytes content;
    std::string said;  ///< its start
    size_t primary, other, segments;
  } const rows[] = {
      {"4,095 bytes", bytes(4095), "", 0, 0, 0},
      {"zeros", bytes(50000), "", 0, 0, 0},
      {"ones", bytes(50000, 0xFF), "", 0, 0, 0},
      {"bins everywhere", hbins, "", 0, 0, 0},
      {"a list that is its own cell",
       changed(good.db_at + 8, static_cast<uint32_t>(good.db_at) - uint32_t{page_bytes}),
       "#0:3 -1 -2 -3 ", 0, 1, 0},
      {"a list outside", changed(good.db_at + 8, 0xFFFFF000), "#0:3 ", 0, 1, 0},
      {"more than the list's cell holds", changed(count_at, claims(7)), "#0:7 ", 0, 1, 0},
      {"no segments", changed(count_at, claims(0)), "#0:0 ", 0, 1, 0},
      {"a list that the source cuts", short_list, "#0:65535 ", 0, 1, 0},
      {"65,535 segments", huge_list, "#0:65535 -4 -5 ", 1, 0, 65535},
      {"cells of the same list", many_lists, "#0:65535 -4 -5 ", 1, 0, 65535},
      {"a sound list behind lies", behind_lies, "#0:65535 -1 -2 ", 1, 0, 3},
      {"segments without end", no_end, "#0:3 ", 1, 0, 3},
      {"segments of no size", no_tail, "#0:3 ", 1, 0, 3},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const carving carved(row.content);
    EXPECT_EQ(row.said, carved.said.substr(0, row.said.size()));
    EXPECT_LE(std::count(carved.said.begin(), carved.said.end(), '-'),
              0xFFFF + static_cast<std::ptrdiff_t>(row.content.size() / page_bytes));
    ASSERT_EQ(row.primary, carved.primary.size());
    EXPECT_EQ(row.other, carved.other.size());
    if (row.primary != 0) {
      EXPECT_EQ(row.segments * segment_room, carved.chunk_bytes);
    }
    if (row.other != 0) {
      EXPECT_TRUE(good.value == carved.other[0]);
    }
  }
  EXPECT_TRUE(carving(behind_lies).primary.at(0) == padded(good.value, 3 * segment_room));
  EXPECT_FALSE(carving(bytes(4095)).opened);
  EXPECT_TRUE(carving(bytes(4096)).opened);
}

/// An entry of layout 7.
bytes entry_of_seven(uint32_t path_offset) {
  bytes entry;
  append_u16(entry, 20);
  append_u16(entry, 22);
  append_u32(entry, 0);
  append_u64(entry, path_offset);
  append_u64(entry, filetime(2014, 3, 5));
  return padded(entry, 48);
}

TEST(carving, the_list_of_pages_is_written_line_by_line) {
  bytes source = as_bytes("hbin");
  source.resize(0x20);
  append_u32(source, 16352);  // a free cell
  append_u32(source, 0xBADC0FEE);
  source.resize(0x24 + 128);
  append(source, concat({entry_of_seven(0x5FE8), entry_of_seven(0x100), entry_of_seven(0x1000)}));
  source.resize(0x190);
  append_utf16(source, u"\\??\\C:\\a");
  source.resize(0x1F3C);
  append_utf16(source, u"\\??\\C:\\b.exe");
  source.resize(0x2004);
  for (int i = 0; i < 5; ++i) append(source, entry_of_seven(0x3FD7));
  source.resize(0x3000);
  EXPECT_EQ(
      "-----------------------------------------------\n"
      "run:  1 : 00000000[0] 00001000[1] 00002000[2] \n"
      "-----------------------------------------------\n"
      "  0 : Offset/size: 0x00000000 : 0x1000 : free  : FP : cksum 0xf6531237\n"
      "Num abs offsets: 3 : 000100[00|0100] 001000[01|0024] 005fe8[06|0034] \n"
      "Num rel offsets: 1 : 0190 \n"
      "-----------------------------------------------\n"
      "  1 : Offset/size: 0x00001000 : 0x1000 : alloc : FP : cksum 0xdab003e2\n"
      "Num abs offsets: 0 : \n"
      "Num rel offsets: 1 : 0f3c \n"
      "-----------------------------------------------\n"
      "  2 : Offset/size: 0x00002000 : 0x1000 : alloc : ok : cksum 0x7e4b149c\n"
      "Num abs offsets: 1 : 003fd7[03|0ffb] \n"
      "Num rel offsets: 0 : \n",
      carving(source).stats);
}

}  // namespace
}  // namespace ovrik
