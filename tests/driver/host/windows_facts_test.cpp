// What is made of the answers that Windows documents, and of calls that fail.
#include "driver/host/windows_facts.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace {

using namespace ovrik;

template <typename value>
bool give(const std::optional<value>& told, value& result) {
  if (told) result = *told;
  return told.has_value();
}

struct told_token : access_token {
  explicit told_token(std::optional<elevation> told) : kind(told) {}

  bool get_elevation(elevation& found) const override { return give(kind, found); }
  std::unique_ptr<access_token> linked() const override { return nullptr; }
  bool has_administrators() const override { return false; }

  std::optional<elevation> kind;
};

struct told_library : system_library {
  told_library(const std::optional<module_version>& told, bool admin)
      : version(told), user_is_admin(admin) {}

  bool read_module_version(const std::string& path, module_version& found) const override {
    return path == "C:\\system\\kernel32.dll" && give(version, found);
  }
  bool is_user_an_admin() const override { return user_is_admin; }

  std::optional<module_version> version;
  bool user_is_admin;
};

/// A 64-bit Windows 10 that calls itself 8, as it does to a program that does not declare itself.
/// What holds nothing is a call that fails.
struct told_windows : windows_calls {
  uint32_t major = 6, minor = 2;
  std::optional<module_version> kernel = module_version{10 << 16, 19045U << 16 | 3636};
  std::optional<system_edition> edition_told = system_edition{1, 0, 0};
  uint32_t processor = 8664;
  bool user_is_admin = false, has_token = true, is_32_bit = false;
  std::optional<elevation> token_kind;
  std::optional<std::string> computer = "LAB1", user = "ada", program = "C:\\tools\\ovrik.exe";
  std::string drives = "A2 C3 N4 R5";  ///< letters and their types
  std::optional<std::string> folder = "C:\\system", folder_of_32_bit;
  std::string with_version = "kernelbase.dll";  ///< the library that has the version's functions
  mutable std::vector<std::string> loads;       ///< paths of the libraries that were to be loaded

  bool is_major_version_at_least(uint32_t wanted) const override { return major >= wanted; }
  bool is_minor_version_at_least(uint32_t wanted) const override { return minor >= wanted; }
  bool edition(system_edition& found) const override { return give(edition_told, found); }
  uint32_t processor_type() const override { return processor; }
  bool is_32_bit_program() const override { return is_32_bit; }
  std::unique_ptr<access_token> process_token() const override {
    return has_token ? std::make_unique<told_token>(token_kind) : nullptr;
  }
  bool computer_name(std::string& name) const override { return give(computer, name); }
  bool user_name(std::string& name) const override { return give(user, name); }
  bool program_path(std::string& path) const override { return give(program, path); }
  bool system_folder(std::string& path) const override { return give(folder, path); }
  bool system_folder_of_32_bit(std::string& path) const override {
    return give(folder_of_32_bit, path);
  }
  uint32_t drive_type(char letter) const override {
    const size_t at = drives.find(letter);
    return at == std::string::npos ? 1 : static_cast<uint32_t>(drives[at + 1] - '0');
  }
  std::unique_ptr<system_library> loaded_library(const std::string& name) const override {
    if (name != "kernelbase.dll") return nullptr;
    return std::make_unique<told_library>(name == with_version ? kernel : std::nullopt, false);
  }
  std::unique_ptr<system_library> load_library(const std::string& path) const override {
    loads.push_back(path);
    const std::string name = path.substr(path.rfind('\\') + 1);
    return std::make_unique<told_library>(name == with_version ? kernel : std::nullopt,
                                          name == "shell32.dll" && user_is_admin);
  }
};

TEST(windows_facts, administrators_are_those_with_the_rights_of_one) {
  constexpr auto standard = elevation::standard, full = elevation::full,
                 limited = elevation::limited;
  const std::optional<module_version> ten = told_windows().kernel;
  struct rights_case {
    const char* name;
    uint32_t minor;  ///< of version 6
    std::optional<module_version> kernel;
    bool has_token;
    std::optional<elevation> kind;
    bool by_group;  ///< the older call decides; otherwise nobody is one
  };
  const rights_case cases[] = {
      {"elevated", 2, {}, true, full, true},
      {"the only token", 2, {}, true, standard, true},
      {"could elevate", 2, {}, true, limited, false},
      {"could elevate on 7", 1, {}, true, limited, false},
      {"could elevate on 10", 2, ten, true, limited, false},
      {"no token", 2, {}, false, {}, true},
      {"no elevation type", 1, {}, true, {}, true},
      {"before split tokens mattered", 0, {}, true, limited, true},
  };
  for (const rights_case& c : cases) {
    told_windows system;
    system.minor = c.minor;
    system.kernel = c.kernel;
    system.has_token = c.has_token;
    system.token_kind = c.kind;
    EXPECT_FALSE(have_admin_rights(system)) << c.name;
    system.user_is_admin = true;
    EXPECT_EQ(have_admin_rights(system), c.by_group) << c.name;
  }
}

TEST(windows_facts, the_version_is_told_as_far_as_it_is_known) {
  using module = module_version;
  using edition = system_edition;
  const module ten = {10 << 16, 19045U << 16 | 3636}, server = {6 << 16 | 3, 9600U << 16};
  struct version_case {
    const char* name;
    uint32_t major, minor;
    std::optional<module_version> kernel;
    std::optional<system_edition> edition;
    const char *short_version, *full_version;
  };
  const version_case cases[] = {
      {"10, by its kernel", 6, 2, ten, edition{1, 0, 0}, "10.0.workstation", "10.0.19045"},
      {"a server", 6, 3, server, edition{3, 0, 0}, "6.3.server", "6.3.9600"},
      {"no version block", 6, 2, {}, edition{2, 0, 0}, "6.2.domain-controller", "6.2.0"},
      {"7", 6, 1, ten, edition{1, 1, 0}, "6.1.workstation.sp.1.0", "6.1.0"},
      {"Vista", 6, 0, ten, edition{1, 2, 1}, "6.0.workstation.sp.2.1", "6.0.0"},
      {"XP", 5, 1, ten, edition{9, 0, 0}, "0.0.", "0.0.0"},
      {"no edition", 6, 2, ten, {}, "10.0.", "10.0.19045"},
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

TEST(windows_facts, libraries_come_from_the_folder_that_the_program_can_load_from) {
  using paths = std::vector<std::string>;
  struct library_case {
    const char* name;
    bool is_32_bit;
    std::optional<std::string> folder, folder_of_32_bit;
    const char* with_version;
    paths loads;
    const char* full_version;
  };
  const library_case cases[] = {
      {"64-bit", false, "C:\\system", "C:\\wow", "kernelbase.dll", {}, "10.0.19045"},
      {"not loaded yet",
       false,
       "C:\\system",
       "C:\\wow",
       "version.dll",
       {"C:\\system\\version.dll"},
       "10.0.19045"},
      {"32-bit on 64-bit",
       true,
       "C:\\system",
       "C:\\wow",
       "version.dll",
       {"C:\\wow\\version.dll", "C:\\wow\\sspicli.dll"},
       "10.0.19045"},
      {"32-bit",
       true,
       "C:\\system",
       {},
       "kernelbase.dll",
       {"C:\\system\\sspicli.dll"},
       "10.0.19045"},
      {"no functions", false, "C:\\system", {}, "", {"C:\\system\\version.dll"}, "6.2.0"},
      {"no folder", true, {}, {}, "version.dll", {}, "6.2.0"},
  };
  for (const library_case& c : cases) {
    told_windows system;
    system.is_32_bit = c.is_32_bit;
    system.folder = c.folder;
    system.folder_of_32_bit = c.folder_of_32_bit;
    system.with_version = c.with_version;
    EXPECT_EQ(facts_of_windows(system).full_version, c.full_version) << c.name;
    EXPECT_EQ(system.loads, c.loads) << c.name;
  }
}

TEST(windows_facts, machine_user_and_drive) {
  struct drive_case {
    std::optional<std::string> program;
    uint32_t type;  ///< 4 of a network, 2 removable
  };
  const drive_case drives[] = {{"C:\\ovrik.exe", 3},
                               {"N:\\ovrik.exe", 4},
                               {"A:\\ovrik.exe", 2},
                               {"R:\\ovrik.exe", 5},
                               {"\\\\server\\share\\o.exe", 4},
                               {"", 4},
                               {{}, 4}};
  told_windows system;
  for (const drive_case& drive : drives) {
    system.program = drive.program;
    const host_facts facts = facts_of_windows(system);
    EXPECT_EQ(facts.on_network_drive, drive.type == 4) << drive.program.value_or("(fails)");
    EXPECT_EQ(facts.on_removable_drive, drive.type == 2) << drive.program.value_or("(fails)");
    EXPECT_EQ(facts.computer, drive.type == 4 ? "LAB1 [remote]" : "LAB1");
    EXPECT_EQ(facts.user, "ada");
  }
  system.program = "C:\\ovrik.exe";
  system.computer.reset();
  system.user.reset();
  for (const uint32_t processor : {8664U, 2200U, 586U}) {
    system.processor = processor;
    const host_facts facts = facts_of_windows(system);
    EXPECT_EQ(facts.is_64_bit, processor != 586) << processor;
    EXPECT_EQ(facts.computer, "<unk>");
    EXPECT_EQ(facts.user, "");
  }
}

}  // namespace
