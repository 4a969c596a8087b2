// Subkey lists of every form, whole and damaged, and the live checks on the way.

#include "hive/reg_key.h"

#include "hive/reg_value.h"
#include "opened_hive.h"

namespace ovrik {
namespace {

using namespace test_support;

/// A root with the subkeys a to f; in the ri forms abc and def are sublists. Damage goes to b,
/// which has a subkey, to the root or to the lists.
struct six_keys {
  explicit six_keys(list_form form) : is_ri(form >= list_form::ri_of_lh) {
    for (const char* path : {"a", "b\\below", "c", "d", "e", "f"}) built.root.at(path);
    built.root.form = form;
    image = built.bytes();
    root = built.key_at("");
    b = built.key_at("b");
    b_list = built.list_at("b");
    list = built.list_at("");
    first_list = is_ri ? get_u32(image, list + 8) + 0x1000 : list;
    b_entry = first_list + 8 + (form == list_form::li || form == list_form::ri_of_li ? 4 : 8);
  }

  hive_builder built;
  bytes image;
  bool is_ri;
  size_t root, b, b_list, list, first_list, b_entry;
};

std::string listed(const six_keys& tree) {
  const opened_hive opened(tree.image);
  read_allowance allowance(opened.hive.size());
  std::string names;
  const bool listed = enum_subkeys(opened.hive, static_cast<uint32_t>(tree.root), allowance,
                                   [&names](const reg_key& key) { names += key.name.text(); });
  return listed ? names : "false";
}

struct list_damage {
  const char* name;
  size_t six_keys::*cell;
  size_t at;
  uint16_t number;
  const char *in_lf, *in_li, *in_ri;
};
constexpr auto root = &six_keys::root, b = &six_keys::b, list = &six_keys::list;
constexpr auto b_list = &six_keys::b_list, first_list = &six_keys::first_list;
constexpr auto b_entry = &six_keys::b_entry;
constexpr uint16_t far = nowhere >> 16, no_form = 0x7878, ri = 0x6972;
const list_damage list_damages[] = {
    {"free cell", b, 2, 0, "abcdef", "abcdef", "abcdef"},
    {"root no key", root, 4, no_form, "abcdef", "abcdef", "abcdef"},
    {"root without subkeys", root, 0x18, 0, "", "", ""},
    {"list unreadable", root, 0x22, far, "false", "false", "false"},
    {"key counts more", root, 0x18, 7, "false", "false", "abcdef"},
    {"list counts less", first_list, 6, 2, "false", "false", "abdef"},
    {"list of no form", list, 4, no_form, "", "", "false"},
    {"no key", b, 4, no_form, "acdef", "a", "adef"},
    {"no last write", b, 0x0E, 0, "acdef", "a", "adef"},
    {"no parent", b, 0x14, 0, "acdef", "a", "adef"},
    {"no name", b, 0x4C, 0, "acdef", "a", "adef"},
    {"entry 0", b_entry, 0, 0, "acdef", "a", "adef"},
    {"entry unreadable", b_entry, 2, far, "acdef", "a", "adef"},
    {"child list unreadable", b, 0x22, far, "abcdef", "a", "adef"},
    {"child list of no form", b_list, 4, no_form, "abcdef", "a", "adef"},
    {"child list an ri", b_list, 4, ri, "abcdef", "abcdef", "abcdef"},
    {"security unreadable", b, 0x32, far, "a", "a", "adef"},
    {"security no sk", b, 0x30, 4, "a", "a", "adef"},
    {"no sublist", list, 6, 0, "false", "false", ""},
    {"sublist unreadable", list, 10, far, nullptr, nullptr, "def"},
    {"sublist of no form", first_list, 4, no_form, nullptr, nullptr, "def"},
    {"sublist an ri", first_list, 4, ri, nullptr, nullptr, "def"}};
const struct {
  list_form form;
  const char* list_damage::*left;
  const char* line;  ///< of the live check
} forms[] = {{list_form::lh, &list_damage::in_lf, "3045"},
             {list_form::lf, &list_damage::in_lf, "3045"},
             {list_form::li, &list_damage::in_li, "3101"},
             {list_form::ri_of_lh, &list_damage::in_ri, "2921"},
             {list_form::ri_of_lf, &list_damage::in_ri, "2921"},
             {list_form::ri_of_li, &list_damage::in_ri, "2977"}};

TEST(enum_subkeys, keeps_what_the_form_of_the_list_lets_survive) {
  for (const auto& [form, left, line] : forms) {
    const six_keys whole(form);
    EXPECT_EQ(listed(whole), "abcdef");
    for (const list_damage& row : list_damages) {
      if (row.*left == nullptr) continue;
      six_keys tree = whole;
      put_u16(tree.image, tree.*row.cell + row.at, row.number);
      EXPECT_EQ(listed(tree), row.*left) << row.name << ", check " << line;
    }
    six_keys cut = whole;
    cut.image.resize(cut.b_entry);
    EXPECT_EQ(listed(cut), "a");
    six_keys own_sublist = whole;
    put_u32(own_sublist.image, whole.list + 8, static_cast<uint32_t>(whole.list - 0x1000));
    EXPECT_TRUE(!whole.is_ri || listed(own_sublist) == "def");
  }
}

TEST(live_check_death, ends_the_program_with_its_text) {
  for (const auto& [form, left, line] : forms) {
    six_keys tree(form);
    put_u32(tree.image, tree.b + 0x30, 0);
    EXPECT_DEATH(listed(tree), std::string("pSK != 0.*reg_clas.*") + line);
  }
  const opened_hive opened(hive_builder().bytes());
  reg_key key;
  reg_value value;
  read_allowance allowance(opened.hive.size());
  const std::string_view names[] = {"a"};
  const std::string no_key = "pKeyName && nk_parent_offset.*reg_clas.*";
  EXPECT_DEATH(find_subkey(opened.hive, 0, "a", allowance, key), no_key + "1896");
  EXPECT_DEATH(has_subkeys(opened.hive, 0, names, allowance), no_key + "1965");
  EXPECT_DEATH(find_value(opened.hive, 0, "a", allowance, value),
               "pValueName && nk_offset.*reg_clas.*2022");
}

}  // namespace
}  // namespace ovrik
