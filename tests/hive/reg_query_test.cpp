// Queries by path, the control sets that a path may name, and what both make of a damaged hive.

#include "hive/reg_query.h"

#include "hive/control_sets.h"
#include "opened_hive.h"

namespace ovrik {
namespace {

using namespace test_support;

hive_value text_value(std::string name, std::string_view text) {
  return {.name = std::move(name), .data = as_bytes(text)};
}

TEST(query_values, takes_a_path_as_a_key_or_else_as_a_value) {
  hive_builder built;
  built.root.at("Select").values = {text_value("Current", {"\2\0\0\0", 4})};
  hive_key& set = built.root.at("ControlSet002");
  set.last_write = 0x0123456789ABCDEF;
  set.values = {text_value("v", "two"), text_value("Both", "value"), text_value("V", "TWO"),
                text_value("Empty", "hidden")};
  set.at("both").values = {text_value("w", "key")};
  set.at("Empty");
  set.at("Torn").values = {text_value("t", "lost")};
  bytes image = built.bytes();
  put_u32(image, built.key_at("ControlSet002\\Torn") + 0x18, 1);  // its subkeys cannot be listed
  const std::pair<const char*, const char*> rows[] = {{"controlset002\\V", "two TWO "},
                                                      {"ControlSet002", "two value TWO hidden "},
                                                      {"ControlSet002\\Both", "key "},
                                                      {"ControlSet002\\both\\W", "key "},
                                                      {"ControlSet002\\Empty", ""},
                                                      {"ControlSet002\\none", ""},
                                                      {"ControlSet002\\none\\v", ""},
                                                      {"ControlSet002\\v\\v", ""},
                                                      {"none", ""},
                                                      {"ControlSet002\\Torn\\t", ""},
                                                      {"CURRENTcontrolset\\v", "two TWO "}};
  for (const auto& [path, texts] : rows) EXPECT_EQ(queried(image, path), texts) << path;
  const std::vector<hit> hits = query(opened_hive(image).hive, "ControlSet002\\v");
  EXPECT_EQ(hits.at(0).last_write_time, 0x0123456789ABCDEFu);
}

struct sets_case {
  const char* subkeys;
  std::string current;
  const char *resolved, *listed;  ///< names with a blank behind each; "" is a failure
  const char* value = "Current";
};
const sets_case sets_cases[] = {
    {"ControlSet3 ControlSet4 ControlSet001 Select", "\1", "ControlSet001 ",
     "ControlSet001 ControlSet3 ControlSet4 "},
    {"ControlSet002 Select ControlSet001", "\3", "", "ControlSet002 ControlSet001 "},
    {"ControlSet001 Select", "not resident", "", "ControlSet001 "},
    {"ControlSet012 ControlSet0012 Select", "\14", "ControlSet0012 ",
     "ControlSet0012 ControlSet012 "},
    {"ControlSet012 Select", "\14", "", "ControlSet012 "},
    {"CONTROLSET002 SELECT CONTROLSET001", "\1", "CONTROLSET001 ", "CONTROLSET001 CONTROLSET002 "},
    {"Clone ControlSet controlset7 Select", "\7", "", "controlset7 "},
    {"ControlSet001 Select", "\1", "", "", "current"},
    {"ControlSet001", "\1", "", ""},
    {"ControlSet Select", "\1", "", ""},
};

TEST(control_sets, are_listed_with_the_current_one_first) {
  for (const sets_case& row : sets_cases) {
    hive_builder built;
    built.root.sorted = false;
    std::istringstream subkeys(row.subkeys);
    for (std::string name; subkeys >> name;) {
      built.root.at(name).values = {text_value(name, name + " ")};
      if (name.front() != 'S') continue;
      built.root.at(name).values = {text_value(row.value, row.current)};
      if (row.current.size() < 4) built.root.at(name).values[0].data.resize(4);
    }
    const opened_hive opened(built.bytes());
    reg_key key;
    read_allowance allowance(opened.hive.size());
    EXPECT_EQ(resolve_current_control_set(opened.hive, allowance, key), *row.resolved != 0);
    EXPECT_EQ(key.name.text() + (*row.resolved != 0 ? " " : ""), row.resolved);
    std::vector<reg_key> keys;
    EXPECT_EQ(list_control_sets(opened.hive, allowance, keys), *row.listed != 0);
    std::string text;
    for (const reg_key& listed : keys) text += listed.name.text() + " ";
    EXPECT_EQ(text, row.listed);
  }
}

/// Control set 1 with a cache of that size, and the current set 2 with one of 40,000 bytes.
hive_builder two_caches(size_t first_size) {
  return system_hive(
      {{.number = 1, .cache = bytes(first_size, 'x')}, {.number = 2, .cache = bytes(40000, 'y')}},
      2);
}
const std::string first_key = cache_key_path(1), second_key = cache_key_path(2);

TEST(damaged_hive, gives_no_more_when_cut) {
  const bytes image = two_caches(6000).bytes();
  size_t hits_before = 99;
  for (size_t size = image.size(); size >= 0x2000; size -= 0x1000) {
    const opened_hive opened(byte_view(image).clip(0, size).copy());
    const std::vector<hit> first = query(opened.hive, first_key + "\\AppCompatCache");
    for (const hit& it : first) EXPECT_EQ(it.data, bytes(6000, 'x')) << size;
    const auto second = query(opened.hive, second_key + "\\AppCompatCache");
    for (const hit& it : second) EXPECT_EQ(it.data.size() == 40000, size == image.size());
    EXPECT_LE(first.size() + second.size(), hits_before) << size;
    hits_before = first.size() + second.size();
  }
}

TEST(damaged_hive, spares_the_control_set_that_is_sound) {
  for (const size_t first_size : {size_t{3}, size_t{6000}, size_t{40000}}) {
    hive_builder built = two_caches(first_size);
    const bytes image = built.bytes();
    const size_t key = built.key_at(first_key), vk = built.value_at(first_key, "AppCompatCache");
    const size_t lists[] = {built.list_at("ControlSet001\\Control"),
                            built.value_list_at(first_key)};
    const size_t data = first_size == 3 ? vk : built.data_at(first_key, "AppCompatCache");
    const size_t segments = first_size == 40000 ? get_u32(image, data + 8) + 0x1000 : data;
    const auto end = static_cast<uint32_t>(image.size() - 0x1000);
    for (const size_t cell : {key, lists[0], lists[1], vk, data, segments}) {
      const size_t fields = std::min<size_t>(0u - get_u32(image, cell), 0x50) / 4;
      for (size_t i = 0; i < 7 * fields; ++i) {
        const size_t at = cell + i / 7 * 4;
        const uint32_t numbers[] = {0, 1, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, end, end + 1};
        if (at == key + 0x30 && numbers[i % 7] == 0) continue;  // a live check's
        bytes damaged = image;
        put_u32(damaged, at, numbers[i % 7]);
        const opened_hive opened(damaged);
        for (const hit& it : query(opened.hive, first_key)) {
          EXPECT_LE(it.data.size(), image.size());
        }
        const auto sound = query(opened.hive, second_key + "\\AppCompatCache");
        ASSERT_TRUE(sound.size() == 1 && sound[0].data == bytes(40000, 'y'))
            << at - cell << " of " << cell << " is " << numbers[i % 7];
      }
    }
  }
}

/// Appends a cell that ends with `number` over and over; the offset of the cell.
uint32_t append_cell(bytes& image, const bytes& head, uint32_t count, uint32_t number) {
  const auto at = static_cast<uint32_t>(image.size());
  append_u32(image, 0u - 4 * count - 8);
  append(image, head);
  for (uint32_t i = 0; i < count; ++i) append_u32(image, number);
  return at - 0x1000;
}

TEST(damaged_hive, ends_values_that_share_their_data) {
  hive_builder built = two_caches(16344);
  bytes image = built.bytes();
  put_u32(image, built.key_at(first_key) + 0x28, 0xFFFFFFFF);
  const size_t vk = built.value_at(first_key, "AppCompatCache");
  put_u32(image, built.key_at(first_key) + 0x2C,
          append_cell(image, {}, 20000, static_cast<uint32_t>(vk - 0x1000)));
  const size_t db = built.data_at(second_key, "AppCompatCache");
  const uint32_t segment = get_u32(image, get_u32(image, db + 8) + 0x1004);
  put_u16(image, db + 6, 0xFFFF);
  put_u32(image, db + 8, append_cell(image, {}, 0xFFFF, segment));
  size_t total = 0;
  for (const hit& it : query(opened_hive(image).hive, first_key)) total += it.data.size();
  EXPECT_LE(total, image.size() + 16344);
  EXPECT_GE(total, 16344u);
  const hit big = query(opened_hive(image).hive, second_key).at(0);
  EXPECT_EQ(big.data, bytes(40000, 'y'));
  EXPECT_LE(big.slack.size(), image.size());
}

/// Visits the subkeys of a key and tells how many visits there were.
size_t visits(const reg_hive& hive, size_t key, read_allowance& allowance) {
  size_t count = 0;
  EXPECT_TRUE(enum_subkeys(hive, static_cast<uint32_t>(key), allowance,
                           [&count](const reg_key&) { ++count; }));
  return count;
}

TEST(damaged_hive, costs_no_more_than_a_hive_of_its_size) {
  for (const uint32_t copies : {1000u, 60000u}) {
    hive_builder built = two_caches(6000);
    built.root.form = list_form::li;
    const bytes image = built.bytes();
    const size_t root = built.key_at(""), select = built.key_at("Select");
    const size_t first = built.key_at("ControlSet001");
    const auto offset = [](size_t cell) { return static_cast<uint32_t>(cell - 0x1000); };
    const auto with_list = [&](std::string_view form, size_t cell, bool as_sublists) {
      bytes odd = image;
      bytes head = as_bytes(form);
      append_u16(head, static_cast<uint16_t>(copies));
      const uint32_t list = append_cell(odd, head, copies, offset(cell));
      put_u32(odd, root + 0x20, list);
      put_u32(odd, root + 0x18, copies);
      if (as_sublists) put_u32(odd, list + 0x1008, get_u32(image, root + 0x20));
      return odd;
    };
    const std::pair<const char*, bytes> hives[] = {
        {"one key over and over", with_list("li", first, false)},
        {"one list over and over", with_list("ri", get_u32(image, root + 0x20) + 0x1000, true)},
        {"what is no key over and over", with_list("lf", 0x1000 + 0x20, false)},
        {"the root over and over", with_list("li", root, false)},
        {"a list of the root's lists", with_list("ri", image.size(), true)},
        {"keys without a name", with_list("lf", select + 1, false)}};
    for (const auto& [name, odd] : hives) {
      const opened_hive opened(odd);
      read_allowance allowance(odd.size());
      size_t count = 0;
      for (int round = 0; round < 100; ++round) count += visits(opened.hive, root, allowance);
      EXPECT_LE(count, odd.size() / 20) << name;
      read_allowance other(odd.size());
      EXPECT_LE(visits(opened.hive, root, other), copies / 50 + odd.size() / 1000) << name;
    }
  }
}

TEST(control_sets, count_once_and_by_their_own_keys) {
  hive_builder built = two_caches(6000);
  built.root.sorted = false;
  built.root.form = list_form::li;
  built.root.at("ControlSet003").values = {text_value("v", "three")};
  bytes image = built.bytes();
  const size_t list = built.list_at("");
  const size_t third = built.key_at("ControlSet003");
  put_u32(image, third + 0x50 + 9, get_u32(as_bytes("t001"), 0));  // the name of another key
  append_u32(image, 0);
  const auto again = static_cast<uint32_t>(image.size() - 0x1000);
  append_u32(image, 0u - 64);
  append(image, "li");
  append_u16(image, 7);
  for (size_t i = 0; i < 4; ++i) append_u32(image, get_u32(image, list + 8 + 4 * i));
  for (int i = 0; i < 3; ++i) append_u32(image, static_cast<uint32_t>(third - 0x1000));
  const size_t root = built.key_at("");
  put_u32(image, root + 0x18, 7);
  put_u32(image, root + 0x20, again);
  const opened_hive opened(image);
  read_allowance allowance(image.size());
  std::vector<reg_key> keys;
  ASSERT_TRUE(list_control_sets(opened.hive, allowance, keys));
  std::string names;
  for (const reg_key& key : keys) names += key.name.text() + " ";
  EXPECT_EQ(names, "ControlSet002 ControlSet001 ControlSet001 ");
  EXPECT_EQ(keys.back().nk_offset, third);
}

TEST(read_allowance, is_enough_for_a_sound_hive_and_ends_what_overlaps) {
  hive_builder built = two_caches(200000);
  for (int i = 0; i < 3000; ++i) built.root.at("k" + std::to_string(i));
  const bytes image = built.bytes();
  const opened_hive opened(image);
  read_allowance allowance(image.size());
  for (const std::string& key : {first_key, second_key}) {
    EXPECT_EQ(query(opened.hive, key + "\\AppCompatCache", allowance).size(), 1u);
  }
  EXPECT_FALSE(allowance.exceeded());
  size_t rounds = 0;
  while (!query(opened.hive, first_key, allowance).empty()) ++rounds;
  EXPECT_EQ(rounds, 2U);  // the hive is little longer than three values: the fourth is the last
  EXPECT_TRUE(allowance.exceeded());
}

}  // namespace
}  // namespace ovrik
