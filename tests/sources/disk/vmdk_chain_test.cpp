// Which files of a virtual disk are missing, and where the check finds them.
#include "sources/disk/vmdk_chain.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <regex>

#include "support/vmdk_files.h"

namespace test_support {
namespace {

class vmdk_chain : public vmdk_files {
 protected:
  /// The outcome of the check, each child whose parent was found as "child <hint>", and the list of
  /// files, without the test's folder.
  std::string check(const std::vector<std::string>& paths) const {
    const char* const faults[] = {"no base", "not opened ", "no memory", "own parent ", "gone"};
    ovrik::read_faults unread;
    const ovrik::vmdk_chain chain = ovrik::check_vmdk_chain(paths, unread);
    EXPECT_TRUE(chain.complete || chain.disk == nullptr);
    std::string said = chain.disk != nullptr ? "fine"
                       : chain.complete      ? "other CID"
                                             : faults[static_cast<size_t>(chain.fault)];
    said += chain.faulty_file + ":";
    for (const ovrik::found_parent& found : chain.found_parents) {
      said += " " + found.child + " <" + found.hint + ">";
    }
    for (const std::string& path : chain.files) said += " " + path;
    if (!chain.misfit.empty()) said += " misfit " + chain.misfit;
    if (chain.is_ring) said += " ring";
    for (const std::string& path : chain.left_out) said += " without " + path;
    return std::regex_replace(said, std::regex(folder.path("")), "");
  }
};

TEST_F(vmdk_chain, a_missing_parent_is_found_by_its_hint) {
  const std::string base = put_disk("base.vmdk", base_text);
  const std::string child = put_disk("child", child_text);
  EXPECT_EQ(check({base, child}), "fine: base.vmdk child");
  EXPECT_EQ(check({base}), "fine: base.vmdk");
  EXPECT_EQ(check({}), "no base:");
  for (const std::string encoding : {"", "encoding=\"windows-1252\"\n"}) {
    for (const std::string hint :
         {"base.vmdk", "D:\\VMs\\lab\\base.vmdk", "/vmfs/1/base.vmdk", "../gone/base.vmdk"}) {
      const std::string line = encoding + "PARENTFILENAMEHINT=\"" + hint + "\"\n";
      const std::string other = put_disk("other", "CID=5\nparentCID=00000001\n" + line);
      EXPECT_EQ(check({other}), "no base: other <" + hint + "> other base.vmdk") << line;
    }
  }
  for (const std::string line :
       {"parentFileNameHint=\"gone.vmdk\"\n", "parentFileNameHint=\"/gone/\"\n",
        "parentFileNameHint=other\n", ""}) {
    const std::string other = put_disk("other", "CID=5\nparentCID=00000001\n" + line);
    EXPECT_EQ(check({other}), "gone: other") << line;
  }
  // A hint counts from the folder of its own disk, and a file with the right CID comes first.
  std::filesystem::create_directories(folder.path("sub/deep"));
  put_disk("sub/base.vmdk", base_text);
  put_disk("sub/deep/base.vmdk", vmdk_descriptor_text("00000007", "ffffffff"));
  const std::string deep =
      put_disk("sub/deep/snap", vmdk_descriptor_text("00000006", "1", "../base.vmdk"));
  EXPECT_TRUE(check({deep}).ends_with("sub/deep/snap sub/deep/../base.vmdk")) << check({deep});
  const std::string side = put_disk("sub/side", vmdk_descriptor_text("5", "1", "base.vmdk"));
  EXPECT_TRUE(check({deep, side}).ends_with("sub/side sub/base.vmdk")) << check({deep, side});
  // The list that is suggested is whole.
  const std::string last = put_disk("last", vmdk_descriptor_text("00000003", "00000002", "child"));
  EXPECT_EQ(check({last}), "no base: last <child> child <base.vmdk> last child base.vmdk");
  EXPECT_EQ(check({last, child, base}), "fine: last child base.vmdk");
  // A file that is there but bears another CID is looked for once, and not at all beside a base.
  put_disk("base.vmdk", vmdk_descriptor_text("00000009", "00000008", "child"));
  EXPECT_EQ(check({child}), "no base: child <base.vmdk> child base.vmdk misfit child");
  const std::string hint = "D:\\VMs\\base.vmdk";
  const std::string far = put_disk("far", vmdk_descriptor_text("00000002", "00000001", hint));
  EXPECT_EQ(check({far}), "gone: far <" + hint + "> far base.vmdk misfit far");
  put_disk("base.vmdk", vmdk_descriptor_text("00000009", "ffffffff"));
  EXPECT_EQ(check({base, child}), "other CID: base.vmdk child misfit child");
}

TEST_F(vmdk_chain, chains_without_sense_are_refused) {
  const std::string one = put_disk("one", vmdk_descriptor_text("1", "2"));
  const std::string two = put_disk("two", vmdk_descriptor_text("2", "1"));
  EXPECT_EQ(check({one, two}), "no base: one two ring");
  EXPECT_EQ(check({put_disk("own", vmdk_descriptor_text("3", "3"))}), "own parent own: own");
  EXPECT_EQ(check({put_file("text", as_bytes("# Disk DescriptorFile\nCID=1\n"))}),
            "not opened text: text");
  EXPECT_EQ(check({folder.path("absent")}), "not opened absent: absent");
  const std::string copy = put_disk("copy", vmdk_descriptor_text("1", "00000001"));
  const std::string base = put_disk("base", base_text);
  EXPECT_EQ(check({base, copy}), "own parent copy: base copy");
  EXPECT_EQ(check({copy, base}), "own parent copy: copy base");
}

TEST_F(vmdk_chain, a_base_may_bear_the_cid_of_no_disk) {
  const std::string base = put_disk("base", vmdk_descriptor_text("ffffffff", "FFFFFFFF"));
  EXPECT_EQ(check({base}), "fine: base");
}

TEST_F(vmdk_chain, files_that_the_disk_is_not_made_of_are_named) {
  const std::string base = put_disk("base", base_text), child = put_disk("child", child_text);
  const std::string twin = put_disk("twin", vmdk_descriptor_text("00000003", "00000001"));
  const std::string copy = put_disk("copy", child_text);
  const std::string other = put_disk("other", vmdk_descriptor_text("0000000a", "ffffffff"));
  EXPECT_EQ(check({base, child, twin}), "fine: base child twin without child");
  EXPECT_EQ(check({base, child, copy}), "fine: base child copy without copy");
  EXPECT_EQ(check({other, base, child}), "fine: other base child without base without child")
      << "the last base by its CID";
}

}  // namespace
}  // namespace test_support
