// What transaction logs make of a hive: which of them count, and what is left when they are broken.

#include "hive/hive_logs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "base/marvin32.h"
#include "support/hive_log_builder.h"
#include "support/outside.h"
#include "support/temp_dir.h"

namespace ovrik {
namespace {

using namespace test_support;

TEST(marvin32, gives_the_published_hashes) {
  const std::pair<bytes, uint64_t> vectors[] = {
      {{}, 0x30ED35C100CD3C7D},
      {{0xAF}, 0x48E73FC77D75DDC1},
      {{0xE7, 0x0F}, 0xB5F6E1FC485DBFF8},
      {{0x37, 0xF4, 0x95}, 0xF0B07C789B8CF7E8},
      {{0x86, 0x42, 0xDC, 0x59}, 0x7008F2E87E9CF556},
      {{0x15, 0x3F, 0xB7, 0x98, 0x26}, 0xE6C08C6DA2AFA997},
      {{0xAB, 0x42, 0x7E, 0xA8, 0xD1, 0x0F, 0xC7}, 0xE11847E4F0678C41}};
  for (const auto& [input, hash] : vectors) {
    EXPECT_EQ(marvin32(byte_view(input), 0x004FB61A001BDBCC), hash) << input.size();
  }
}

constexpr const char* standing_names[] = {"applied", "clean", "empty", "damaged",
                                          "foreign", "stale", "gap",   "superseded"};
constexpr const char* end_names[] = {"",     "end",  "number", "header",    "size",
                                     "page", "hash", "cut",    "unreadable"};

/// A dirty hive of eight sectors behind its base block, and its logs. The first log writes "aa" and
/// then "bb" over the last "a", the second one "c" and "dd" over that.
struct scene {
  base_block_form form = {.sequence1 = 11, .sequence2 = 10};
  bytes hive = composed_dirty_hive(form);
  std::vector<bytes> logs = {
      concat({composed_base_block({}), composed_log_entry(10, {{0, 1024, 'a'}}),
              composed_log_entry(11, {{512, 1024, 'b'}})}),
      concat({composed_base_block({.sequence1 = 12, .sequence2 = 12}),
              composed_log_entry(12, {{2048, 512, 'c'}}),
              composed_log_entry(13, {{2048, 1024, 'd'}})})};
  uint64_t bad_from = UINT64_MAX;  ///< where no log can be read any more

  static constexpr size_t first = 512, second = 512 + 1536, second_of_log_2 = 512 + 1024;

  void rebase(const base_block_form& other) { hive = composed_dirty_hive(form = other); }

  /// Overwrites a field of an entry of a log and makes the hashes right again.
  void set(size_t log, size_t entry, size_t field, uint32_t value) {
    put_u32(logs[log], entry + field, value);
    seal_log_entry(logs[log], entry);
  }

  hive_replay replay() const {
    std::vector<hive_log_source> sources;
    for (const bytes& log : logs) {
      sources.push_back(log_source_of(byte_view(log)));
      sources.back().read_at = [&log, this](uint8_t* buffer, size_t& size, uint64_t offset) {
        const byte_view readable = byte_view(log).clip(0, bad_from).clip(offset, size);
        std::copy_n(readable.data(), readable.size(), buffer);
        size = readable.size();
      };
    }
    return replay_hive_logs(byte_view(hive).clip(0, 0x1020), hive.size(), sources);
  }

  /// The hive as it reads with its logs, in blocks of this size.
  bytes read(const hive_replay& result, size_t block) const {
    bytes image = hive;
    image.resize(result.size);
    for (size_t at = 0; at < image.size(); at += block) {
      result.apply(at, image.data() + at, std::min(block, image.size() - at));
    }
    return image;
  }
};

/// The first byte of each sector of the bins; that of the first bin header is a dot.
std::string sectors_of(const bytes& image) {
  std::string text;
  for (size_t at = 0x1000; at < image.size(); at += 512) text += static_cast<char>(image[at]);
  std::replace(text.begin(), text.end(), 'h', '.');
  std::replace(text.begin(), text.end(), '\0', '0');
  return text;
}

/// "standing end entries" of each log, and whose base block counts.
std::string told(const hive_replay& result) {
  std::string text;
  for (const log_report& log : result.logs) {
    if (!text.empty()) text += ", ";
    text += standing_names[static_cast<size_t>(log.standing)];
    const std::string end = end_names[static_cast<size_t>(log.end)];
    if (!end.empty()) text += " " + end;
    if (log.entries_applied != 0) text += " " + std::to_string(log.entries_applied);
    if (log.entries_stale != 0) text += " of " + std::to_string(log.entries_stale) + " more";
  }
  if (result.base_from) text += ", base of " + std::to_string(*result.base_from);
  return text;
}

struct log_case {
  const char* name;
  std::function<void(scene&)> change;
  const char* sectors;
  const char* told;
};

void expect_all(const std::vector<log_case>& cases) {
  for (const log_case& row : cases) {
    SCOPED_TRACE(row.name);
    scene built;
    row.change(built);
    const hive_replay result = built.replay();
    EXPECT_EQ(told(result), row.told);
    EXPECT_EQ(sectors_of(built.read(result, 1 << 20)), row.sectors);
    for (const size_t block : {100u, 512u, 777u}) {
      EXPECT_EQ(built.read(result, block), built.read(result, 1 << 20)) << block;
    }
  }
}

/// Numbers for the hive, the first and the second entry of both logs.
void number(scene& built, uint32_t hive, uint32_t first, uint32_t second) {
  built.rebase({.sequence1 = hive + 1, .sequence2 = hive});
  built.set(0, scene::first, 0x0C, first);
  built.set(0, scene::second, 0x0C, first + 1);
  built.set(1, scene::first, 0x0C, second);
  built.set(1, scene::second_of_log_2, 0x0C, second + 1);
}

TEST(hive_logs, count_in_the_order_of_their_numbers) {
  const char* both = "applied end 2, applied end 2";
  expect_all({
      {"both", [](scene&) {}, "abb.dd..", both},
      {"other order", [](scene& s) { std::swap(s.logs[0], s.logs[1]); }, "abb.dd..", both},
      {"far ahead", [](scene& s) { number(s, 10, 500, 502); }, "abb.dd..", both},
      {"wrapping", [](scene& s) { number(s, 0xFFFFFFF0, 0xFFFFFFFF, 1); }, "abb.dd..", both},
      {"wrapping between", [](scene& s) { number(s, 5, 0xFFFFFFFE, 0); }, "........",
       "stale end of 2 more, stale end of 2 more"},
      {"clean", [](scene& s) { s.rebase({}); }, "........", "clean, clean"},
      {"gap", [](scene& s) { number(s, 10, 10, 13); }, "abb.....", "applied end 2, gap end"},
      {"overlap", [](scene& s) { number(s, 10, 10, 11); }, "abb.....", "applied end 2, gap end"},
      {"equal", [](scene& s) { number(s, 10, 10, 10); }, "abb.....", "applied end 2, gap end"},
      {"one stale", [](scene& s) { number(s, 12, 10, 12); }, "....dd..",
       "stale end of 2 more, applied end 2"},
      {"both stale", [](scene& s) { number(s, 14, 10, 12); }, "........",
       "stale end of 2 more, stale end of 2 more"},
      {"stale in part", [](scene& s) { number(s, 11, 10, 12); }, ".bb.dd..",
       "applied end 1 of 1 more, applied end 2"},
      {"older entry behind",
       [](scene& s) {
         append(s.logs[1], composed_log_entry(9, {{0, 512, 'x'}}));
       },
       "abb.dd..", "applied end 2, applied number 2"},
      {"three",
       [](scene& s) {
         s.logs.insert(s.logs.begin(),
                       concat({composed_base_block({}), composed_log_entry(14, {{0, 512, 'e'}})}));
       },
       "ebb.dd..", "applied end 1, applied end 2, applied end 2"},
  });
}

TEST(hive_logs, end_where_they_are_broken) {
  const auto set_in_second = [](size_t field, uint32_t value) {
    return [=](scene& s) { s.set(0, scene::second, field, value); };
  };
  const auto flip = [](size_t log, size_t at) {
    return [=](scene& s) { s.logs[log].at(at) ^= 1; };
  };
  constexpr size_t first = scene::first, second = scene::second;
  expect_all({
      {"hash of header", flip(0, second + 0x20), "aa......", "applied header 1, gap end"},
      {"header", flip(0, second + 0x0C), "aa......", "applied header 1, gap end"},
      {"hash of pages", flip(0, second + 0x29), "aa......", "applied hash 1, gap end"},
      {"page", flip(0, second + 1000), "aa......", "applied hash 1, gap end"},
      {"padding", flip(0, second + 1535), "aa......", "applied hash 1, gap end"},
      {"first entry", flip(0, first + 1000), "........", "damaged hash, gap end"},
      {"first entry of the second", flip(1, first + 500), "abb.....",
       "applied end 2, damaged hash"},
      {"signature", flip(0, second), "aa......", "applied end 1, gap end"},
      {"number", set_in_second(0x0C, 12), "aa......", "applied number 1, gap end"},
      {"size 0", set_in_second(4, 0), "aa......", "applied size 1, gap end"},
      {"size of a header", set_in_second(4, 40), "aa......", "applied size 1, gap end"},
      {"size not aligned", set_in_second(4, 1540), "aa......", "applied size 1, gap end"},
      {"size too small", set_in_second(4, 1024), "aa......", "applied size 1, gap end"},
      {"size of 4 GiB", set_in_second(4, 0xFFFFFE00), "aa......", "applied cut 1, gap end"},
      {"bins not aligned", set_in_second(0x10, 0x1200), "aa......", "applied size 1, gap end"},
      {"no bins", set_in_second(0x10, 0), "aa......", "applied page 1, gap end"},
      {"most pages", set_in_second(0x14, 0xFFFFFFFF), "aa......", "applied size 1, gap end"},
      {"no pages", set_in_second(0x14, 0), "aa..dd..", "applied end 2, applied end 2"},
      {"page behind the bins", set_in_second(0x28, 0xE00), "aa......", "applied page 1, gap end"},
      {"page at 4 GiB", set_in_second(0x28, 0xFFFFFE00), "aa......", "applied page 1, gap end"},
      {"page not aligned", set_in_second(0x28, 0x180), "aa......", "applied page 1, gap end"},
      {"page of nothing", set_in_second(0x2C, 0), "aa......", "applied page 1, gap end"},
      {"page of the whole bins",
       [](scene& s) {
         s.set(0, scene::second, 0x28, 0);
         s.set(0, scene::second, 0x2C, 0x1000);
       },
       "aa......", "applied size 1, gap end"},
      {"base block of a log", flip(0, 0x30), "....dd..", "damaged, applied end 2"},
      {"no byte of one", [](scene& s) { s.logs[0].clear(); }, "....dd..", "empty, applied end 2"},
      {"one of zeros", [](scene& s) { s.logs[1].assign(4096, 0); }, "abb.....",
       "applied end 2, empty"},
      {"nothing behind a base block", [](scene& s) { s.logs[1].resize(512); }, "abb.....",
       "applied end 2, empty end"},
      {"another name",
       [](scene& s) { put(s.logs[1], 0, composed_base_block({.name = u"C:\\SOFTWARE"})); },
       "abb.....", "applied end 2, foreign end"},
      {"the name in another folder",
       [](scene& s) { put(s.logs[1], 0, composed_base_block({.name = u"system"})); }, "abb.dd..",
       "applied end 2, applied end 2"},
      {"no name", [](scene& s) { put(s.logs[1], 0, composed_base_block({.name = u""})); },
       "abb.dd..", "applied end 2, applied end 2"},
      {"another resource manager",
       [](scene& s) { put(s.logs[0], 0, composed_base_block({.rm_id = 8})); }, "....dd..",
       "foreign end, applied end 2"},
      {"nothing can be read", [](scene& s) { s.bad_from = 0; }, "........",
       "damaged unreadable, damaged unreadable"},
      {"only base blocks can be read", [](scene& s) { s.bad_from = 512; }, "........",
       "damaged unreadable, damaged unreadable"},
      {"unreadable in an entry", [](scene& s) { s.bad_from = 2048 + 512; }, "aa......",
       "applied unreadable 1, gap unreadable"},
      {"unreadable between entries", [](scene& s) { s.bad_from = 2048; }, "aa......",
       "applied unreadable 1, gap unreadable"},
  });
}

TEST(hive_logs, make_a_hive_longer_by_what_they_hold) {
  const auto add = [](const std::vector<log_page_form>& pages, uint32_t bins_bytes) {
    return [=](scene& s) { append(s.logs[1], composed_log_entry(14, pages, bins_bytes)); };
  };
  const char* told = "applied end 2, applied end 3";
  expect_all({
      {"a bin more", add({{0x1000, 1024, 'e'}}, 0x2000), "abb.dd..ee", told},
      {"in two pages", add({{0x1200, 512, 'f'}, {0x1000, 512, 'e'}}, 0x2000), "abb.dd..ef", told},
      {"over the end", add({{0xE00, 1024, 'e'}}, 0x2000), "abb.dd.ee", told},
      {"behind a hole", add({{0xFFFFEE00, 512, 'e'}}, 0xFFFFF000), "abb.dd..", told},
      {"a bin less", add({{0, 512, 'e'}}, 0x1000), "ebb.dd..", told},
      {"hive cut", [](scene& s) { s.hive.resize(0x1000 + 512); }, "abb",
       "applied end 2, applied end 2"},
      {"hive of a base block", [](scene& s) { s.hive.resize(0x1000); }, "abb",
       "applied end 2, applied end 2"},
  });
}

TEST(hive_logs, stand_in_for_a_broken_base_block) {
  const auto broken = [](const std::function<void(scene&)>& change) {
    return [=](scene& s) {
      s.hive[0x24] ^= 1;
      change(s);
    };
  };
  const auto renumber = [](uint32_t first, uint32_t second) {
    return [=](scene& s) {
      number(s, 10, first, second);
      s.hive[0x24] ^= 1;
    };
  };
  expect_all({
      {"both", broken([](scene&) {}), "abb.dd..", "applied end 2, applied end 2, base of 1"},
      {"equal numbers",
       [](scene& s) {
         s.rebase({});
         s.hive[0x24] ^= 1;
       },
       "abb.dd..", "applied end 2, applied end 2, base of 1"},
      {"newer first", renumber(20, 12), "abb.....", "applied end 2, stale end, base of 0"},
      {"older first", renumber(10, 20), "....dd..", "stale end, applied end 2, base of 1"},
      {"no entries", broken([](scene& s) {
         for (bytes& log : s.logs) log.resize(512);
       }),
       "........", "empty end, empty end, base of 1"},
      {"no log", broken([](scene& s) { s.logs.clear(); }), "........", ""},
      {"broken as well", broken([](scene& s) { s.logs.resize(1), s.logs[0][5] ^= 1; }), "........",
       "damaged"},
  });
  scene built;
  std::fill(built.hive.begin(), built.hive.begin() + 512, 0);
  const bytes image = built.read(built.replay(), 1000);
  EXPECT_EQ(bytes(image.begin(), image.begin() + 512),
            composed_base_block({.sequence1 = 12, .sequence2 = 12}));
}

TEST(hive_logs, of_the_old_kind_count_whole_or_not_at_all) {
  const auto old = [](const base_block_form& form, const std::function<void(scene&)>& change) {
    return [=](scene& s) {
      s.logs = {concat({composed_base_block(form),
                        composed_dirty_vector({{512, 1024, 'a'}, {3584, 512, 'b'}})})};
      change(s);
    };
  };
  const auto nothing = [](scene&) {};
  expect_all({
      {"second number", old({}, nothing), ".aa....b", "applied end 1"},
      {"first number", old({.sequence1 = 11, .sequence2 = 11}, nothing), ".aa....b",
       "applied end 1"},
      {"older", old({.sequence1 = 9, .sequence2 = 9}, nothing), "........", "stale end of 1 more"},
      {"newer", old({.sequence1 = 12, .sequence2 = 12}, nothing), "........", "gap end"},
      {"not complete", old({.sequence1 = 11}, nothing), "........", "damaged number"},
      {"another time", old({.time_stamp = 1}, nothing), "........", "foreign end"},
      {"another name", old({.name = u"SAM"}, nothing), "........", "foreign end"},
      {"bins not aligned", old({.bins_bytes = 0x1200}, nothing), "........", "damaged size"},
      {"bins of 4 GiB", old({.bins_bytes = 0xFFFFF000}, nothing), "........", "damaged cut"},
      {"no bins", old({.bins_bytes = 0}, nothing), "........", "applied end 1"},
      {"cut", old({}, [](scene& s) { s.logs[0].pop_back(); }), "........", "damaged cut"},
      {"cut in the vector", old({}, [](scene& s) { s.logs[0].resize(517); }), "........",
       "damaged cut"},
      {"unreadable", old({}, [](scene& s) { s.bad_from = 2048; }), "........",
       "damaged unreadable"},
      {"broken base block", old({}, [](scene& s) { s.hive[9] ^= 1; }), ".aa....b",
       "applied end 1, base of 0"},
      {"no first bin",
       old({},
           [](scene& s) {
             s.hive[9] ^= 1;
             put(s.hive, 0x1000, as_bytes("?"));
           }),
       "?.......", "foreign end"},
      {"two", old({}, [](scene& s) { s.logs.push_back(s.logs[0]); }), ".aa....b",
       "superseded end, applied end 1"},
      {"beside entries", old({}, [](scene& s) { s.logs.push_back(scene().logs[0]); }), "abb.....",
       "superseded end, applied end 2"},
  });
}

TEST(hive_logs, that_are_cut_give_the_entries_that_are_whole) {
  const scene whole;
  for (size_t size = 0; size <= whole.logs[0].size(); size += 512) {
    scene built;
    built.logs[0].resize(size);
    const bool lacks_first = size < scene::second, lacks_all = size <= scene::first;
    const bool lacks_second = size < whole.logs[0].size();
    const char* expected = lacks_all      ? "....dd.."
                           : lacks_first  ? "........"
                           : lacks_second ? "aa......"
                                          : "abb.dd..";
    EXPECT_EQ(sectors_of(built.read(built.replay(), 4096)), expected) << size;
  }
}

TEST(hive_patch, keeps_what_was_put_last) {
  hive_patch patch;
  bytes expected(200, '.');
  std::vector<bytes> parts;
  uint32_t random = 1;
  for (int i = 0; i < 300; ++i) {
    random = random * 1664525 + 1013904223;
    const size_t at = random >> 8 & 127, size = random >> 20 & 63;
    parts.emplace_back(size, static_cast<uint8_t>(i));
    patch.put(at, byte_view(parts.back()));
    put(expected, at, parts.back());
  }
  bytes image(200, '.');
  patch.apply(0, image.data(), image.size());
  EXPECT_EQ(image, expected);
}

TEST(real_logs, make_a_dirty_hive_whole) {
  const temp_dir folder;
  std::vector<uni::fileio> logs(2);
  uni::fileio hive;
  for (const char* name : {"SYSTEM", "SYSTEM.LOG1", "SYSTEM.LOG2"}) {
    if (!fetch_real("logs/" + std::string(name) + ".xz", folder.path(name))) {
      GTEST_SKIP() << "no real logs";
    }
  }
  ASSERT_TRUE(logs[0].open_read(folder.path("SYSTEM.LOG1")));
  ASSERT_TRUE(logs[1].open_read(folder.path("SYSTEM.LOG2")));
  bytes image = read_file(folder.path("SYSTEM"));
  const hive_replay result = replay_hive_logs(byte_view(image), image.size(),
                                              {log_source_of(logs[0]), log_source_of(logs[1])});
  EXPECT_EQ(told(result), "applied end 4, applied end 20");
  EXPECT_EQ(result.logs[0].pages_applied + result.logs[1].pages_applied, 315u);
  EXPECT_EQ(result.logs[1].first_sequence, 0x83Fu);
  ASSERT_EQ(result.size, image.size());
  result.apply(0, image.data(), image.size());
  write_file(folder.path("bins"), bytes(image.begin() + 0x1000, image.end()));
  EXPECT_EQ(run_program("sha256sum", {folder.path("bins")}).out.substr(0, 64),
            "18df453410086f0eee8ed7161a9e8f63b2977225aab5d30e5894eda30e0d882d");
}

}  // namespace
}  // namespace ovrik
