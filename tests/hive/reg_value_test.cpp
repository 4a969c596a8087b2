// Value lists, names and data in all their places.

#include "hive/reg_value.h"

#include "opened_hive.h"

namespace ovrik {
namespace {

using namespace test_support;
using namespace std::string_literals;

TEST(reg_value, takes_the_encoding_of_a_name_from_the_name) {
  const std::pair<std::string, std::string> names[] = {
      {"A", "A"},
      {"A\0"s, "A"},
      {"A\0B"s, "A"},
      {"A\0B\0"s, "AB"},
      {"A\0B\0\0\0"s, "AB"},
      {"A\0\0\0B\0C\0"s, "AA\0\0\0B\0C\0"s},
      {"\xE4\0\x16\4"s, "\xC3\xA4\xD0\x96"},
      {"\x16\4\xE4\0"s, "\x16\4\xE4\0"s},
      {"\xE4\xF6", "\xE4\xF6"},
      {"", ""},
      {std::string(4095, 'x'), std::string(4095, 'x')},
      {std::string(4096, 'x'), ""}};
  hive_builder built;
  for (const auto& name : names) built.root.values.push_back({.name = name.first});
  const opened_hive opened(built.bytes());
  std::vector<reg_value> values;
  read_allowance allowance(opened.hive.size());
  ASSERT_TRUE(enum_values(opened.hive, static_cast<uint32_t>(built.key_at("")), allowance,
                          [&values](const reg_value& value) {
                            values.push_back(value);
                            return true;
                          }));
  ASSERT_EQ(values.size(), std::size(names));
  for (size_t i = 0; i < values.size(); ++i) {
    EXPECT_EQ(values[i].name(), names[i].second) << i;
    for (const auto& name : names) {
      EXPECT_EQ(values[i].is_named(name.second), name.second == names[i].second) << i;
    }
  }
}

/// A key k with the values "first", "it" and "last", and the places of "it".
struct three_values {
  explicit three_values(const bytes& it, data_form form = data_form::by_size) {
    built.root.at("k").values = {{.name = "first", .data = {'1'}},
                                 {.name = "it", .data = it, .form = form},
                                 {.name = "last", .data = {'3'}}};
    image = built.bytes();
    key = built.key_at("k");
    list = built.value_list_at("k");
    vk = built.value_at("k", "it");
    data = built.data_at("k", "it");
  }

  hive_builder built;
  bytes image;
  size_t key, list, vk, data;
};

struct value_damage {
  const char* name;
  size_t size;
  size_t three_values::*cell;
  size_t at;
  uint32_t number;
  const char* texts;
  data_form form = data_form::by_size;
};
constexpr auto key = &three_values::key, list = &three_values::list, vk = &three_values::vk;
constexpr auto data = &three_values::data;
const value_damage value_damages[] = {
    {"no list", 4, key, 0x2C, 0, ""},
    {"list unreadable", 4, key, 0x2C, nowhere, ""},
    {"no values", 4, key, 0x28, 0, ""},
    {"one value", 4, key, 0x28, 1, "1 "},
    {"entry unreadable", 4, list, 8, nowhere, "1 3 "},
    {"entry before the hive", 4, list, 8, 0xFFFFE800, "1 3 "},
    {"no vk", 4, vk, 4, 0, "1 3 "},
    {"vk of 4096 bytes", 4, vk, 0, 0u - 4096, "1 xxxx 3 "},
    {"vk of 4097 bytes", 4, vk, 0, 0u - 4097, "1 3 "},
    {"free vk", 4, vk, 0, 0x20, "1 xxxx 3 "},
    {"resident, none", 4, vk, 8, 0x80000000, "1  3 "},
    {"resident, 1 byte", 4, vk, 8, 0x80000001, "1 x 3 "},
    {"resident, 5 bytes", 4, vk, 8, 0x80000005, "1  3 "},
    {"data unreadable", 5, vk, 12, nowhere, "1 3 "},
    {"no bytes", 5, vk, 8, 0, "1  3 "},
    {"top bits of the size", 5, vk, 8, 0x70000005, "1 xxxxx 3 "},
    {"16 MiB", 5, vk, 8, 0x1000000, "1  3 "},
    {"cell of no size", 5, data, 0, 0, "1 xxxxx 3 "},
    {"top bits of the cell", 5, data, 0, 0x10000010, "1 xxxxx 3 "},
    {"cell to the end", 5, data, 0, 0x2000, "1 3 "},
    {"used cell to the end", 5, data, 0, 0u - 0x2000, "1 3 "},
    {"db of 16351 bytes", 16351, data, 4, 0x16264, "1 16351 3 ", data_form::segments},
    {"db of 16352 bytes", 16352, data, 4, 0x16264, "1 16344 3 ", data_form::segments},
    {"no db", 16352, data, 4, 0x6265, "1 16352 3 ", data_form::one_cell},
    {"one segment", 40000, data, 4, 0x16264, "1 16344 3 "}};

TEST(reg_value, damage_costs_no_other_value) {
  for (const value_damage& row : value_damages) {
    three_values v(bytes(row.size, 'x'), row.form);
    put_u32(v.image, v.*row.cell + row.at, row.number);
    EXPECT_EQ(queried(v.image, "k"), row.texts) << row.name;
  }
}

TEST(reg_value, ends_with_the_hive_and_below_16_mib) {
  three_values v(bytes(0xFFFFFF, 'x'), data_form::one_cell);
  EXPECT_EQ(queried(v.image, "k"), "1 16777215 3 ");
  put_u32(v.image, v.data, static_cast<uint32_t>(v.image.size() - v.data));
  EXPECT_EQ(queried(v.image, "k"), "1 16777215 3 ");
  put_u32(v.image, v.data, static_cast<uint32_t>(v.image.size() - v.data + 1));
  EXPECT_EQ(queried(v.image, "k"), "1 3 ");
}

TEST(reg_value, gathers_segments_and_what_they_hold_behind_the_data) {
  bytes whole(3 * 16344);
  for (size_t i = 0; i < whole.size(); ++i) whole[i] = static_cast<uint8_t>(i * 31 + i / 251);
  const auto part = [&](size_t from, size_t to) {
    return byte_view(whole).clip(from, to - from).copy();
  };
  three_values v(whole);
  const size_t segments = get_u32(v.image, v.data + 8) + 0x1000 + 4;
  const auto expect = [&](const bytes& content, const bytes& slack) {
    const hit it = query(opened_hive(v.image).hive, "k").at(1);
    EXPECT_TRUE(it.data == content && it.slack == slack) << it.data.size();
  };
  expect(whole, {});
  put_u32(v.image, v.vk + 8, 20000);  // the third segment goes whole to the slack
  expect(part(0, 20000), part(20000, whole.size()));
  put_u32(v.image, segments, nowhere);  // the others close up
  expect(part(16344, 36344), part(36344, whole.size()));
  put_u32(v.image, get_u32(v.image, segments + 4) + 0x1000, 20008 - 16344);  // free and shorter
  bytes joined = part(16344, 20000);
  append(joined, part(2 * 16344, whole.size()));
  expect(joined, {});
}

}  // namespace
}  // namespace ovrik
