// What is made of the answers that Windows documents, and of calls that fail.
#include "driver/windows_facts.h"

#include <gtest/gtest.h>

#include <optional>

namespace {

using namespace ovrik;

struct told_token {
  std::optional<elevation> kind = {};  ///< nothing: the call fails
  bool has_linked = true;
  bool linked_is_administrator = true;
};

class told_access_token : public access_token {
 public:
  explicit told_access_token(const told_token& told) : m_told(told) {}

  bool get_elevation(elevation& kind) const override {
    if (m_told.kind) kind = *m_told.kind;
    return m_told.kind.has_value();
  }
  std::unique_ptr<access_token> linked() const override {
    if (!m_told.has_linked) return nullptr;
    return std::make_unique<told_access_token>(m_told);
  }
  bool has_administrators() const override { return m_told.linked_is_administrator; }

 private:
  told_token m_told;
};

/// A 64-bit Windows 10 that calls itself 8, as it does to a program that does not declare itself.
class told_windows : public windows_calls {
 public:
  uint32_t major = 6;
  uint32_t minor = 2;
  std::optional<module_version> kernel = module_version{10 << 16, 19045U << 16 | 3636};
  std::optional<system_edition> edition_told = system_edition{1, 0, 0};
  uint32_t processor = 8664;
  bool user_is_admin = false;
  std::optional<told_token> token = told_token{};
  std::optional<std::string> computer = "LAB1";
  std::optional<std::string> user = "ada";
  std::optional<std::string> program = "C:\\tools\\ovrik.exe";
  std::string drives = "A2 C3 N4 R5";  ///< letters and their types

  bool is_major_version_at_least(uint32_t wanted) const override { return major >= wanted; }
  bool is_minor_version_at_least(uint32_t wanted) const override { return minor >= wanted; }
  bool kernel_version(module_version& version) const override { return give(kernel, version); }
  bool edition(system_edition& found) const override { return give(edition_told, found); }
  uint32_t processor_type() const override { return processor; }
  bool is_user_an_admin() const override { return user_is_admin; }
  std::unique_ptr<access_token> process_token() const override {
    if (!token) return nullptr;
    return std::make_unique<told_access_token>(*token);
  }
  bool computer_name(std::string& name) const override { return give(computer, name); }
  bool user_name(std::string& name) const override { return give(user, name); }
  bool program_path(std::string& path) const override { return give(program, path); }
  bool system_folder(std::string& /*path*/) const override { return false; }
  uint32_t drive_type(char letter) const override {
    const size_t at = drives.find(letter);
    return at == std::string::npos ? 1 : static_cast<uint32_t>(drives[at + 1] - '0');
  }

 private:
  template <typename value>
  static bool give(const std::optional<value>& told, value& result) {
    if (told) result = *told;
    return told.has_value();
  }
};

TEST(windows_facts, administrators_are_those_with_the_rights_of_one) {
  struct rights_case {
    const char* name;
    uint32_t minor;  ///< of version 6
    std::optional<told_token> token;
    bool user_is_admin, answer;
  };
  const rights_case cases[] = {
      {"elevated", 2, told_token{elevation::full}, true, true},
      {"the only token, of an administrator", 2, told_token{elevation::standard}, true, true},
      {"the only token, of a user", 2, told_token{elevation::standard}, false, false},
      {"full, but not of the group", 2, told_token{elevation::full}, false, false},
      {"could elevate", 2, told_token{elevation::limited}, false, false},
      {"could elevate, and the older call says yes", 2, told_token{elevation::limited}, true,
       false},
      {"the linked token is refused", 1, told_token{elevation::limited, false}, true, false},
      {"no token", 2, std::nullopt, true, true},
      {"no token, a user", 2, std::nullopt, false, false},
      {"no elevation type", 1, told_token{}, true, true},
      {"no elevation type, a user", 1, told_token{}, false, false},
      {"before split tokens mattered", 0, told_token{elevation::limited}, true, true},
  };
  for (const rights_case& c : cases) {
    told_windows system;
    system.minor = c.minor;
    system.kernel.reset();
    system.token = c.token;
    system.user_is_admin = c.user_is_admin;
    EXPECT_EQ(have_admin_rights(system), c.answer) << c.name;
  }
  told_windows later;  // 10.0 by its kernel: the minor number alone says little
  later.token = told_token{elevation::limited};
  later.user_is_admin = true;
  EXPECT_FALSE(have_admin_rights(later));
}

TEST(windows_facts, the_version_is_told_as_far_as_it_is_known) {
  constexpr system_edition seven_sp1 = {1, 1, 0};
  constexpr system_edition domain = {2, 0, 0};
  struct version_case {
    const char* name;
    uint32_t major, minor;
    std::optional<module_version> kernel;
    std::optional<system_edition> edition;
    const char *short_version, *full_version;
  };
  const module_version ten = {10 << 16, 19045U << 16 | 3636};
  const version_case cases[] = {
      {"10, by its kernel", 6, 2, ten, system_edition{1, 0, 0}, "10.0.workstation", "10.0.19045"},
      {"a server", 6, 3, module_version{6 << 16 | 3, 9600U << 16}, system_edition{3, 0, 0},
       "6.3.server", "6.3.9600"},
      {"no version block", 6, 2, std::nullopt, domain, "6.2.domain-controller", "6.2.0"},
      {"7 with a service pack", 6, 1, ten, seven_sp1, "6.1.workstation.sp.1.0", "6.1.0"},
      {"Vista", 6, 0, ten, system_edition{1, 2, 1}, "6.0.workstation.sp.2.1", "6.0.0"},
      {"XP", 5, 1, ten, system_edition{9, 0, 0}, "0.0.", "0.0.0"},
      {"no edition", 6, 2, ten, std::nullopt, "10.0.", "10.0.19045"},
  };
  for (const version_case& c : cases) {
    told_windows system;
    system.major = c.major;
    system.minor = c.minor;
    system.kernel = c.kernel;
    system.edition_told = c.edition;
    const host_facts facts = facts_of_windows(system);
    EXPECT_EQ(facts.short_version, c.short_version) << c.name;
    EXPECT_EQ(facts.full_version, c.full_version) << c.name;
    EXPECT_EQ(facts.system_family, "Windows");
  }
}

TEST(windows_facts, machine_user_and_drive) {
  struct drive_case {
    std::optional<std::string> program;
    bool network, removable;
  };
  const drive_case drives[] = {
      {"C:\\ovrik.exe", false, false},
      {"N:\\ovrik.exe", true, false},
      {"A:\\ovrik.exe", false, true},
      {"R:\\ovrik.exe", false, false},
      {"\\\\server\\share\\o.exe", true, false},
      {"", true, false},
      {std::nullopt, true, false},
  };
  for (const drive_case& drive : drives) {
    told_windows system;
    system.program = drive.program;
    const host_facts facts = facts_of_windows(system);
    EXPECT_EQ(facts.on_network_drive, drive.network) << drive.program.value_or("(fails)");
    EXPECT_EQ(facts.on_removable_drive, drive.removable) << drive.program.value_or("(fails)");
    EXPECT_EQ(facts.computer, drive.network ? "LAB1 [remote]" : "LAB1");
  }
  const std::pair<uint32_t, bool> processors[] = {{8664, true}, {2200, true}, {586, false}};
  for (const auto& [processor, is_64_bit] : processors) {
    told_windows system;
    system.processor = processor;
    system.computer.reset();
    system.user.reset();
    const host_facts facts = facts_of_windows(system);
    EXPECT_EQ(facts.is_64_bit, is_64_bit) << processor;
    EXPECT_EQ(facts.computer, "<unk>");
    EXPECT_EQ(facts.user, "");
  }
}

}  // namespace
