// The recogniser and the walk, over every layout.

#include "shim/shim_parse.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "shim/shim_detect.h"
#include "support/cache_builder.h"

namespace {

using namespace ovrik;
using namespace test_support;

constexpr int all_layouts[] = {1, 2, 3, 4, 5, 6, 7, 9, 10, 12, 13, 14};
constexpr int array_numbers[] = {2, 3, 4, 5, 6, 7};

/// Entries with the paths "000..", "111.." and so on, all of one length.
cache_builder numbered(int layout, int count) {
  cache_builder cache(layout);
  for (int i = 0; i < count; ++i) {
    cache.entry({.path = std::u16string(16, static_cast<char16_t>(u'0' + i)), .data = {1, 2, 3}});
  }
  return cache;
}

/// The bytes of four of them; layout 1 without most of its unused slots.
bytes four_entries(int layout) {
  bytes block = numbered(layout, 4).bytes();
  if (layout == 1) block.resize(numbered(1, 4).entry_at(5));
  return block;
}

/// An entry as the tests look at it: with its path in UTF-8.
struct walked_entry : shim_cache_entry {
  std::string text;
};

/// The rows in the order of the walk; none if `cache` is no cache.
std::vector<walked_entry> walk(const bytes& cache, bool raw = false, uint32_t slack = 0) {
  shim_cache_results results;
  parse_shim_cache(results, byte_view(cache), slack, raw);
  std::vector<walked_entry> entries;
  for (const shim_step& step : results.steps()) {
    const shim_cache_entry entry = results.entry_at(step);
    entries.push_back({entry, path_raw(entry)});
  }
  return entries;
}

/// Number of each row and first character of its path.
std::string walked(const bytes& cache) {
  std::string text;
  for (const walked_entry& row : walk(cache)) {
    text += std::to_string(row.entry_number) + row.text.substr(0, 1) + ' ';
  }
  return text;
}

int detected(const bytes& cache) {
  detected_shim found;
  return detect_shim_layout(byte_view(cache), found) ? static_cast<int>(found.layout) : 0;
}

TEST(shim_parse, fields_of_every_layout) {
  // Size, modified, update, flags1, flags2, data.
  const std::pair<int, std::string> rows[] = {{1, "smu"},  {2, "sm"},   {3, "sm"},   {4, "m12"},
                                              {5, "m12"},  {6, "m12d"}, {7, "m12d"}, {9, ""},
                                              {10, "m12"}, {12, "2"},   {13, "m"},   {14, "m"}};
  const cache_entry wanted{.path = u"\\??\\C:\\\u00C4.EXE", .data = {7, 8, 9}};
  for (const auto& [layout, fields] : rows) {
    SCOPED_TRACE(layout);
    const auto in = [&present = fields](char field, uint64_t value) {
      return present.find(field) == std::string::npos ? 0 : value;
    };
    cache_builder cache(layout);
    cache.entry({.path = u"C:\\b.exe"}).entry(wanted).entry({.path = u"C:\\b.EXE"});
    const bytes block = cache.bytes();
    const bool chain = layout >= 9;
    using numbers = std::vector<uint64_t>;
    const std::vector<walked_entry> results = walk(block);
    ASSERT_EQ(results.size(), 3U);
    const walked_entry& entry = results[1];
    EXPECT_TRUE(entry.valid);
    EXPECT_EQ(static_cast<int>(entry.layout), layout);
    EXPECT_EQ(entry.text, "\\??\\C:\\\xC3\x84.EXE");
    EXPECT_EQ(path_key(entry), "c:\\\xC3\x84.exe");
    EXPECT_EQ(entry.order, layout == 1 ? 1 : -1);
    EXPECT_EQ((numbers{entry.entry_number, entry.entry_offset, entry.signature, entry.entry_tag}),
              (numbers{1, cache.entry_at(1), chain ? 0x73743031U : 0, chain ? wanted.tag : 0}));
    EXPECT_EQ((numbers{entry.file_size, entry.modified_time, entry.update_time, entry.flags1,
                       entry.flags2, entry.data_size}),
              (numbers{in('s', wanted.file_size), in('m', wanted.modified), in('u', wanted.update),
                       in('1', wanted.flags1), in('2', wanted.flags2), in('d', 3)}));
    EXPECT_EQ(byte_view(block).u8_at(entry.data_offset), in('d', 7) | (in('d', 1) ? 0 : block[0]));
    const std::vector<walked_entry> raw = walk(block, true);
    EXPECT_EQ(raw.size() == 96, layout == 1);  // with the unused slots
    EXPECT_EQ(raw.at(1).entry_offset, entry.entry_offset);
    const auto slack = static_cast<uint32_t>(block.size() - entry.entry_offset);
    const std::pair<uint32_t, std::string> slacks[] = {
        {0, "000"}, {slack - 1, "001"}, {slack, "011"}, {0xFFFFFFFF, "111"}};
    for (const auto& [length, marks] : slacks) {
      std::string text;
      for (const auto& one : walk(block, false, length)) text += one.in_slack ? '1' : '0';
      EXPECT_EQ(text, marks);
    }
  }
}

TEST(shim_parse, both_sides_of_each_validity_limit) {
  struct row {
    int layout;
    size_t at;  ///< in the second of three entries
    uint64_t value;
    bool valid;
  };
  std::vector<row> rows = {
      {1, 544, 0, false},          {1, 544, 1, true},         {2, 16, 1024, false},
      {2, 16, 1025, true},         {2, 16, 0xFFFFFFFF, true}, {2, 16, 0x100000000, false},
      {3, 24, 1023, false},        {3, 24, 1024, true},       {3, 24, 0xFFFFFFFF, true},
      {3, 24, 0x100000000, false}, {4, 16, 14, true},         {4, 16, 15, false},
      {5, 24, 14, true},           {5, 24, 15, false},        {6, 16, 0xFFFF, true},
      {7, 24, 0xFFFF, true}};
  for (const int layout : array_numbers) {
    const cache_builder cache = numbered(layout, 3);
    const uint64_t head = get_u64(cache.bytes(), cache.entry_at(1));
    const bool wide = layout % 2 == 1;  // the word at +4 must be 0, else it is the path offset
    rows.push_back({layout, 0, head - 1, false});
    rows.push_back({layout, 0, head + 0x10000, false});
    rows.push_back({layout, 0, wide ? head | 1ULL << 32 : head & 0xFFFFFFFF, false});
    if (wide) rows.push_back({layout, 8, 0, false});
  }
  for (const row& row : rows) {
    const cache_builder cache = numbered(row.layout, 3);
    bytes block = cache.bytes();
    put_u64(block, cache.entry_at(1) + row.at, row.value);
    EXPECT_EQ(walked(block), row.valid ? "00 11 22 " : "00 22 ")
        << row.layout << " at " << row.at << ": " << row.value;
  }
}

TEST(shim_parse, recognises_by_the_first_bytes_and_the_first_entry) {
  for (const int layout : {10, 13, 14}) {
    SCOPED_TRACE(layout);
    bytes block = numbered(layout, 2).bytes();
    const auto header = static_cast<uint32_t>(numbered(layout, 2).entry_at(0));
    put_u32(block, 0, 0);  // the place of the first signature then tells the header's length
    EXPECT_EQ(detected(block), layout);
    put(block, 20, as_bytes("ts"));  // only 128 and 48 are tried before a search
    EXPECT_EQ(detected(block), layout == 14 ? 0 : layout);
    for (const uint32_t length : {1U, 64U, 512U, 0x80000000U, 0xFFFFFFFFU}) {
      put_u32(block, 0, length);
      EXPECT_EQ(detected(block), 0) << length;
    }
    put_u32(block, 0, header);
    block.resize(header + 12 + 32 + 1);  // the path's length and 12 must be below what is there
    EXPECT_EQ(detected(block), layout);
    block.pop_back();
    EXPECT_EQ(detected(block), 0);
  }
  for (const int layout : {9, 12}) {
    bytes block = numbered(layout, 1).bytes();
    put_u32(block, 8, 33);
    EXPECT_EQ(detected(block), layout);
    put_u32(block, 8, 32);  // no more than the path's length
    EXPECT_EQ(detected(block), 0) << layout;
    put_u32(block, 8, 33);
    block[3] = 'S';
    EXPECT_EQ(detected(block), 0) << layout;
  }
  for (const int layout : array_numbers) {  // the first entry has to be there, but not its path
    bytes block = numbered(layout, 1).bytes();
    block.resize(numbered(layout, 1).entry_at(1));
    EXPECT_EQ(detected(block), layout);
    block.pop_back();
    EXPECT_EQ(detected(block), 0) << layout;
  }
  const bytes magic = {0xEF, 0xBE, 0xAD, 0xDE};
  EXPECT_EQ(detected(magic), 1);
  const bytes sound = numbered(13, 1).bytes();
  shim_cache_results results;
  EXPECT_TRUE(parse_shim_cache(results, byte_view(sound), 0, false));
  EXPECT_FALSE(parse_shim_cache(results, byte_view(magic), 0, false));
  EXPECT_TRUE(results.empty());
}

TEST(shim_parse, xp_order_and_paths_at_their_limits) {
  std::vector<int32_t> orders;
  const bytes xp =
      numbered(1, 4).order({2, 0, 2, 0, 3}).entry({.path = std::u16string(300, 'x')}).bytes();
  for (const auto& row : walk(xp)) orders.push_back(row.order);
  EXPECT_EQ(orders, (std::vector<int32_t>{1, -1, 0, 4, -1}));  // the first mention counts
  EXPECT_EQ(walk(xp)[4].text, std::string(260, 'x'));
  bytes counted = xp;
  put_u32(counted, 8, 2);
  EXPECT_EQ(walked(counted), "00 11 ");

  cache_builder cache(4);
  bytes block = cache.entry({.path = u"A\\??\\B\\??\\C"}).entry({.path = u"gone"}).bytes();
  EXPECT_EQ(path_key(walk(block).front()), "ab\\??\\c");
  const size_t second = cache.entry_at(1);
  put_u32(block, second, 0x01020100);
  put_u32(block, second + 4, static_cast<uint32_t>(block.size()));
  EXPECT_EQ(walk(block).at(1).text, "");  // at the buffer's end, and kept
  put_u32(block, second + 4, static_cast<uint32_t>(block.size() - 7));
  EXPECT_EQ(walk(bytes(block.begin(), block.end() - 2)).at(1).text, "\xE5\xB0\x80\xE4\x8C\x80");
}

TEST(shim_parse, array_ends_at_the_strings) {
  for (const int layout : array_numbers) {
    SCOPED_TRACE(layout);
    cache_builder cache(layout);
    for (const char16_t c : {u'0', u'1'}) cache.entry({.path = std::u16string(100, c)});
    cache.stated_count = 100;
    bytes block = cache.bytes();
    const size_t size = cache.entry_at(1) - cache.entry_at(0);
    // The lowest path decides; that of the first entry lies behind it.
    const bytes first = byte_view(block).clip(cache.entry_at(0), size).copy();
    for (const size_t slot : {2U, 3U}) put(block, cache.entry_at(slot), first);
    EXPECT_EQ(walk(block).size(), 3U);  // the step at the first string itself is still made
    cache.stated_count = 0;
    EXPECT_EQ(walk(cache.bytes(), true).empty(), layout == 7);  // no step length known
    // Raw mode goes on behind the count, to the same place.
    for (int slot = 2; slot < 4; ++slot) cache.entry({.path = u""});
    cache.stated_count = 2;
    const bytes slots = cache.bytes();
    EXPECT_EQ(walk(slots).size(), 2U);
    const auto raw = walk(slots, true);
    ASSERT_EQ(raw.size(), 5U);
    for (const auto& row : raw) {
      EXPECT_EQ(row.valid, row.entry_number < 2);
      EXPECT_EQ(row.text.empty(), !row.valid);
      EXPECT_EQ(static_cast<int>(row.layout), layout);
      EXPECT_EQ(row.entry_offset, cache.entry_at(row.entry_number));
    }
  }
}

TEST(shim_parse, overlapping_paths_are_not_copied_without_end) {
  cache_builder cache(2);
  for (int i = 0; i < 1100; ++i) cache.entry({.path = u""});
  bytes block = cache.bytes();
  const uint64_t text_at = block.size();
  block.resize(block.size() + 0xFFFC, 'A');
  for (size_t i = 0; i < 1100; ++i) put_u64(block, cache.entry_at(i), text_at << 32 | 0xFFFEFFFC);
  EXPECT_LT(walk(block).size(), 1100U);
}

TEST(shim_parse, chain_resynchronises_at_the_next_signature) {
  for (const int layout : {9, 10, 12, 13, 14}) {
    SCOPED_TRACE(layout);
    const cache_builder cache = numbered(layout, 6);
    const size_t third = cache.entry_at(2);
    bytes block = cache.bytes();
    block[third] ^= 1;
    EXPECT_EQ(walked(block), "00 11 23 34 45 ");
    EXPECT_EQ(walk(block)[2].entry_offset, third);
    // Layouts 13 and 14 go on by the length at the place where the signature was missed.
    put_u32(block, third + 8, static_cast<uint32_t>(2 * (cache.entry_at(3) - third) - 12));
    EXPECT_EQ(walked(block), layout >= 13 ? "00 11 23 35 " : "00 11 23 34 45 ");
    block[third] ^= 1;
    put_u32(block, third + 8, 0);  // the search finds the same bad entry again
    EXPECT_EQ(walked(block), "00 11 ");
    block = cache.bytes();
    block.pop_back();
    const bool dropped = layout >= 13;  // an entry one byte short
    EXPECT_EQ(walked(block), dropped ? "00 11 22 33 44 " : "00 11 22 33 44 55 ");
    EXPECT_EQ(walk(block).back().modified_time, dropped ? cache_entry().modified : 0);
  }
}

TEST(shim_parse, second_form_of_layout_10) {
  const cache_entry wanted = {.path = u"second", .flags1 = 9, .second_form = true};
  cache_builder cache(10);
  cache.entry({.path = u"first"}).entry(wanted).entry({.path = u"third"});
  for (const size_t gap : {0U, 37U}) {
    bytes block = cache.bytes();
    block.insert(block.begin() + static_cast<ptrdiff_t>(cache.entry_at(1)), gap, 0xAA);
    EXPECT_EQ(walked(block), "0f 1s 2t ");
    const walked_entry row = walk(block).at(1);
    EXPECT_EQ(row.text, "second");
    EXPECT_EQ(row.flags1, wanted.flags1);
    EXPECT_EQ(row.flags2, wanted.flags2);
    EXPECT_EQ(row.modified_time, wanted.modified);
    EXPECT_EQ(row.entry_offset, cache.entry_at(1));
  }
}

TEST(shim_parse, never_gains_rows_when_cut) {
  for (const int layout : all_layouts) {
    for (const bool raw : {false, true}) {
      size_t rows_before = layout == 1 || raw ? 8 : 4;
      for (bytes block = four_entries(layout); !block.empty(); block.pop_back()) {
        const size_t rows = walk(bytes(block), raw).size();  // a copy has no room behind it
        ASSERT_LE(rows, rows_before) << layout << " cut to " << block.size();
        rows_before = rows;
      }
    }
  }
}

TEST(shim_parse, no_damaged_number_misleads_the_walk) {
  for (const int layout : all_layouts) {
    const bytes block = four_entries(layout);
    const auto size = static_cast<uint32_t>(block.size());
    const size_t entry = numbered(layout, 4).entry_at(1), next = numbered(layout, 4).entry_at(2);
    for (size_t at = 4; at + 4 <= next; at = at == 4 ? 8 : std::max(at + 2, entry)) {
      for (const uint32_t value : {0U, 1U, 0xFFFFU, size - 1, size, size + 1, 0x7FFFFFFFU,
                                   0x80000000U, 0xFFFFFFF0U, 0xFFFFFFFFU}) {
        for (const size_t width : {2U, 4U}) {
          bytes bad = block;
          put_number(bad, at, width, value);
          const std::string rows = walked(bad);
          const bool first_stays = at < entry || rows.starts_with("00 ");
          ASSERT_TRUE(rows.size() <= 12 && first_stays && walk(bad, true).size() <= size / 12)
              << layout << " at " << at << ": " << value << " gives " << rows;
        }
      }
    }
  }
}

}  // namespace
