// What the output forms of the whole program do not show: each layout, slack, order, words.

#include "shim/shim_rows.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>

#include "shim/shim_columns.h"
#include "shim/shim_parse.h"
#include "support/cache_builder.h"

namespace {

using namespace ovrik;
using namespace test_support;

row_settings tight(row_form form = row_form::padded) {
  row_settings rows;
  rows.form = form;
  rows.tight_csv = true;
  rows.pad_columns = false;
  set_csv_separator(rows, ",");
  return rows;
}

std::string output(const bytes& cache, const row_settings& rows, const shim_settings& settings = {},
                   uint32_t slack = 0) {
  shim_cache_results results;
  parse_shim_cache(results, byte_view(cache), slack, settings.raw_mode);
  std::ostringstream out;
  row_writer writer(out, rows);
  writer.begin_section("heading");
  EXPECT_EQ(output_shim_cache(writer, {}, results, settings, byte_view(cache)), !results.empty());
  return out.str();
}

cache_entry sample(uint32_t flags1 = 2) {
  const uint64_t noon = filetime(2014, 3, 5, 12);
  return {.path = u"C:\\a.exe", .modified = noon, .update = noon, .flags1 = flags1};
}

TEST(shim_rows, each_layout_has_its_columns) {
  const std::string time = "2014-03-05,12:00:00.000,";
  const std::string size = "file mod,time-UTC,entry,file sz,Path/file\n" + time + "0,0x00012345,";
  const std::string head =
      "file mod,time-UTC,entry,flags1,flags2,meaning (experimental),Path/file\n";
  const std::string flags = head + time + "0,0x00000002,0x00000100,legacy-gui; exec,";
  const std::string plain = "file mod,time-UTC,entry,Path/file\n";
  const std::string xp = "file mod,time-UTC,xpupdate,time-UTC,entry,order,file sz,Path/file\n" +
                         time + time + "0,18446744073709551615,0x00012345,";
  const std::pair<int, std::string> rows[] = {{1, xp},
                                              {2, size},
                                              {3, size},
                                              {4, flags},
                                              {5, flags},
                                              {6, flags},
                                              {7, flags},
                                              {9, head + ",,0,0x00000000,0x00000000,legacy-gui,"},
                                              {10, flags},
                                              {12, plain + ",,0,"},
                                              {13, plain + time + "0,"},
                                              {14, plain + time + "0,"}};
  for (const auto& [layout, text] : rows) {
    const bytes cache = cache_builder(layout).entry(sample()).order({5}).bytes();
    EXPECT_EQ(output(cache, tight()), "heading\n" + text + "C:\\a.exe\n") << "layout " << layout;
  }
}

TEST(shim_rows, slack_entries_are_marked) {
  cache_builder cache(13);
  const bytes block = cache.entry(sample()).entry(sample()).bytes();
  const auto slack = static_cast<uint32_t>(block.size() - cache.entry_at(1));
  const shim_settings settings{.inc_slack = true};
  row_settings rows = tight();
  rows.host_name = "PC-1";
  const std::string time = "2014-03-05,12:00:00.000,";
  EXPECT_EQ(output(block, rows, settings, slack),
            "heading\nfile mod,time-UTC,entry,slack,hostname,Path/file\n" + time +
                "0,,PC-1,C:\\a.exe\n" + time + "1,*,PC-1,C:\\a.exe\n");
  EXPECT_EQ(output({}, rows, settings), "");  // no heading without rows
  EXPECT_NE(output(block, tight(row_form::l2t), settings, slack)
                .find(",Slack entry; , (lorvane),entry# 1\n"),
            std::string::npos);
}

TEST(shim_rows, order_is_by_number_text_or_by_name) {
  // Entries of zeros have no rows, and use their numbers up.
  constexpr uint32_t count = 100'012;
  const std::map<uint32_t, char16_t> named = {{7, 'b'},      {8, 'B'},      {10000, 'd'},
                                              {10001, 'e'},  {99999, 'c'},  {100000, 'a'},
                                              {100009, 'f'}, {100010, 'g'}, {100011, 'h'}};
  constexpr size_t header = 128;
  constexpr size_t entry_bytes = 32;
  bytes cache = cache_builder(6).entry({.path = u"first"}).bytes();
  const bytes entry = byte_view(cache).clip(header, entry_bytes).copy();
  const size_t texts = header + entry_bytes * count;
  cache.resize(texts + 20 * named.size());
  put_u32(cache, 4, count);
  put(cache, header, bytes(entry_bytes));
  size_t text_at = cache.size();
  for (const auto& [number, letter] : named) {
    const size_t at = header + entry_bytes * number;
    text_at -= 2;
    put(cache, at, entry);
    put_u32(cache, at, 0x00040002);
    put_u32(cache, at + 4, static_cast<uint32_t>(text_at));
    put_number(cache, text_at, 2, letter);
  }
  put(cache, header, entry);
  put_u32(cache, header, 0x00020000);  // the first one has no path, but a place for it
  put_u32(cache, header + 4, static_cast<uint32_t>(texts));
  const std::pair<bool, std::string> orders[] = {{false, "bBdafeghc"}, {true, "abBcdefgh"}};
  for (const auto& [by_name, expected] : orders) {
    row_settings rows = tight(row_form::bodyfile);
    std::string letters;
    const std::string text = output(cache, rows, {.sort_by_name = by_name});
    for (size_t at = text.find("; "); at != text.npos; at = text.find("; ", at + 1)) {
      if (text[at + 2] != '|') letters += text[at + 2];
    }
    EXPECT_EQ(letters, expected);
  }
}

TEST(shim_rows, words_of_flags_and_sizes) {
  std::string words;
  for (const uint32_t flags : {0U, 1U, 2U, 3U, 8U, 9U, 0xAU, 0xFFFFFFFFU, 0xFFFFFFF4U}) {
    words += shim_flags_meaning(flags) + '\n';
  }
  EXPECT_EQ(words,
            "legacy-gui\n\nlegacy-gui; exec\nexec\nlegacy-gui; admin\nadmin\n"
            "legacy-gui; exec; admin\nexec; admin\nlegacy-gui\n");
  // In a timeline; what has no time has no row there.
  const std::pair<int, std::string> notes[] = {{2, "File size:74565"},
                                               {10, "Flags1: 0x00000001; Flags2: 0x00000100"},
                                               {13, ""},
                                               {9, "no row"}};
  for (const auto& [layout, text] : notes) {
    row_settings rows = tight(row_form::l2t);
    rows.hex_numbers = false;
    const std::string row = output(cache_builder(layout).entry(sample(1)).bytes(), rows);
    const size_t place = row.find(",0," + text + ", (lorvane)");
    EXPECT_EQ(place == row.npos, layout == 9) << "layout " << layout << ": " << row;
  }
}

}  // namespace
