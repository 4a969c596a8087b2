// What a command line means: nothing of it is opened.
#include "driver/options/parse_options.h"

#include <gtest/gtest.h>

#include "base/text.h"

namespace {

using namespace ovrik;

parsed_options parse(const std::string& line) { return parse_options(split(line, ' ')); }

TEST(parse_options, one_road_is_taken) {
  struct {
    const char* line;
    run_road road;
    source_kind kind;
    const char* path;
  } const rows[] = {
      {"ovrik -quiet", run_road::none, source_kind::none, ""},
      {"ovrik -HIVE h", run_road::hive, source_kind::hive, "h"},
      {"ovrik -hive h -extract e", run_road::hive, source_kind::extract, "e"},
      {"ovrik -livesys -hive h", run_road::hive, source_kind::livesys, ""},
      {"ovrik -hive", run_road::none, source_kind::none, ""},
      {"ovrik -pipe -hive h", run_road::hive, source_kind::hive, "h"},
      {"ovrik -vmdk v -enumdir d", run_road::vmdk, source_kind::vmdk, ""},
      {"ovrik -enumdir d", run_road::list, source_kind::none, ""},
      {"ovrik -pipe", run_road::list, source_kind::none, ""},
      {"ovrik -memfile m -hive h", run_road::memfile, source_kind::hive, "h"},
      {"ovrik -memfile m -binary b", run_road::binary, source_kind::none, "m"},
      {"ovrik -binary b -extract e", run_road::binary, source_kind::extract, "e"},
      {"ovrik -pipe_binary -binary b -hive h", run_road::pipe_binary, source_kind::none, "b"},
  };
  for (const auto& row : rows) {
    const parsed_options parsed = parse(row.line);
    EXPECT_TRUE(parsed.valid) << row.line;
    EXPECT_EQ(parsed.options.road, row.road) << row.line;
    EXPECT_EQ(parsed.options.source.kind, row.kind) << row.line;
    EXPECT_EQ(parsed.options.source.path, row.path) << row.line;
  }
}

TEST(parse_options, the_form_that_is_read_last_counts) {
  struct {
    const char* line;
    row_form form;
    const char* separator;
    bool tight, escapes;
  } const rows[] = {
      {"ovrik -v", row_form::padded, " | ", false, false},
      {"ovrik -csv", row_form::csv, ",", true, true},
      {"ovrik -csv -pair_datetime", row_form::csv, ",", false, true},
      {"ovrik -bodyfile -csv", row_form::bodyfile, "|", true, true},
      {"ovrik -multiline -csvl2t", row_form::multiline, "", false, false},
      {"ovrik -multiline -csvgen", row_form::multiline, "", true, true},
      {"ovrik -xml -csv", row_form::xml, "", true, false},
      {"ovrik -csv_separator TAB -csvgen", row_form::csvgen, "\t", true, true},
  };
  for (const auto& row : rows) {
    const row_settings rows_of_line = parse(row.line).options.rows;
    EXPECT_EQ(rows_of_line.form, row.form) << row.line;
    EXPECT_EQ(rows_of_line.csv_separator, row.separator) << row.line;
    EXPECT_EQ(rows_of_line.tight_csv, row.tight) << row.line;
    EXPECT_EQ(escapes_line_ends(rows_of_line), row.escapes) << row.line;
  }
}

TEST(parse_options, a_refused_line_holds_what_stood_in_front) {
  const parsed_options refused = parse("ovrik -out r -sqlite s -diags d");
  EXPECT_FALSE(refused.valid);
  EXPECT_EQ(refused.words, "This option is not offered in this build\n");
  EXPECT_TRUE(refused.options.diagnostics.given);
  EXPECT_FALSE(refused.options.results.given);

  const parsed_options late = parse("ovrik -cmd_start_time x -out r -outfile s -image i");
  EXPECT_FALSE(late.valid);
  EXPECT_EQ(late.options.results.path, "r");
  EXPECT_EQ(late.options.unread, (argument_list{"ovrik", "-outfile", "s", "-image", "i"}));
}

TEST(parse_options, sources_take_their_offsets_and_sizes) {
  struct {
    const char* line;
    uint64_t offset;
    bool ignore_size;
    std::vector<std::string> files;
  } const rows[] = {
      {"ovrik -image i -ignore_image_size", 0, false, {}},
      {"ovrik -image i -offset 0x10 -ignore_image_size", 16, true, {}},
      {"ovrik -vmdk a|b;c -vmdk \"d\" -offset 7", 7, false, {"a", "b", "c", "d"}},
      {"ovrik -vmdk a -offset 7 -offset 9 -ignore_image_size", 9, true, {"a"}},
  };
  for (const auto& row : rows) {
    const source_options source = parse(row.line).options.source;
    EXPECT_EQ(source.volume_offset, row.offset) << row.line;
    EXPECT_EQ(source.ignore_image_size, row.ignore_size) << row.line;
    EXPECT_EQ(source.vmdk_files, row.files) << row.line;
  }
}

}  // namespace
