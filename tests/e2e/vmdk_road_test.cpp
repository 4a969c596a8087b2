// The road of virtual disks, on files that programs of others made.
#include "e2e/volume_test.h"
#include "sources/vmdk_collection.h"

namespace test_support {
namespace {

constexpr size_t grain_bytes = 65536;

/// Each line a command for one disk: qemu-io reads them from its input.
struct layer {
  std::string file;
  std::string commands;
};

class vmdk_road : public volume_test {
 protected:
  /// A disk with a table and two volumes, of which the last one is to be found.
  void make_disk() const {
    make_small_volume("volume");
    make_empty(folder.path("disk"), 24 * mebi);
    const char* const script =
        "label: dos\nstart=2048,size=16384,type=7\nstart=20480,size=16384,type=7\n"
        "start=36864,size=2048,type=c\n";
    EXPECT_EQ(run_program("sfdisk", {"-q", folder.path("disk")}, {.input = script}).exit_status, 0);
    copy_into(folder.path("disk"), 20480 * 512, read_file(folder.path("volume")));
  }

  void qemu_img(words arguments) const {
    const run_result made = run_program("/usr/bin/qemu-img", arguments, {.folder = folder.path()});
    EXPECT_EQ(made.exit_status, 0) << arguments[0] << made.err;
  }

  /// Spreads the disk over a base and two snapshots: each grain is in one of them, under it older
  /// bytes that no longer count, and some zeros hide what was there before.
  void make_chain() const {
    const bytes disk = read_file(folder.path("disk"));
    layer layers[] = {{"base.vmdk", ""}, {"snap1.vmdk", ""}, {"snap2.vmdk", ""}};
    for (size_t at = 0; at < disk.size(); at += grain_bytes) {
      const auto begin = disk.begin() + static_cast<std::ptrdiff_t>(at);
      const bytes grain(begin, begin + static_cast<std::ptrdiff_t>(grain_bytes));
      const bool zeros = grain == bytes(grain_bytes);
      const size_t place = at / grain_bytes;
      const size_t owner = noise(1, static_cast<uint32_t>(place * 77))[0] % 3;
      if (zeros && place % 9 != 0) continue;
      const std::string range = std::to_string(at) + " " + std::to_string(grain_bytes) + "\n";
      if (owner != 0 && place % 2 == 0) layers[owner - 1].commands += "write -q -P 0x5a " + range;
      if (zeros && owner != 0) {
        layers[owner].commands += "write -q -z " + range;
      } else {
        const std::string name = folder.path("grain" + std::to_string(place));
        write_file(name, grain);
        layers[owner].commands += "write -q -s " + name + " " + range;
      }
    }
    qemu_img({"create", "-q", "-f", "vmdk", "base.vmdk", std::to_string(disk.size())});
    for (size_t i = 0; i < 3; ++i) {
      if (i != 0) {
        qemu_img({"create", "-q", "-f", "vmdk", "-o", "zeroed_grain=on", "-b", layers[i - 1].file,
                  "-F", "vmdk", layers[i].file});
      }
      const run_result written =
          run_program("/usr/bin/qemu-io", {"-f", "vmdk", layers[i].file},
                      {.input = layers[i].commands, .folder = folder.path()});
      EXPECT_EQ(written.exit_status, 0) << written.err;
      EXPECT_EQ(written.out.find("rror"), std::string::npos) << written.out;
    }
  }

  /// The whole of the virtual disk, against what qemu-img makes of its newest file.
  void expect_contents(const std::string& newest, const words& files) const {
    qemu_img({"convert", "-f", "vmdk", "-O", "raw", newest, "raw"});
    words paths;
    for (const std::string& file : files) paths.push_back(folder.path(file));
    const auto disk = ovrik::open_vmdk_chain(paths);
    ASSERT_NE(disk, nullptr);
    bytes all(disk->size());
    for (size_t at = 0; at < all.size();) {
      auto size = static_cast<uint32_t>(std::min<size_t>(300000, all.size() - at));
      ASSERT_TRUE(disk->read(&all[at], size, at));
      at += size;
    }
    EXPECT_TRUE(all == read_file(folder.path("raw"))) << newest;
  }

  std::string state_of(const std::string& file) const {
    return run_program("sha256sum", {folder.path(file)}).out +
           run_program("stat", {"-c", "%s %y", folder.path(file)}).out;
  }
};

TEST_F(vmdk_road, disks_and_chains_give_the_rows_of_the_file) {
  make_disk();
  qemu_img({"convert", "-O", "vmdk", "-o", "subformat=monolithicSparse", "disk", "one.vmdk"});
  make_chain();
  expect_contents("one.vmdk", {"one.vmdk"});
  expect_contents("snap2.vmdk", {"snap1.vmdk", "snap2.vmdk", "base.vmdk"});

  const std::string wanted = rows({"-hive", "hive", "-csv"});
  const words files = {"one.vmdk", "base.vmdk", "snap1.vmdk", "snap2.vmdk"};
  std::string before, after;
  for (const std::string& file : files) before += state_of(file);
  const words lists[] = {
      {"-vmdk", "one.vmdk"},
      {"-vmdk", "one.vmdk", "-offset", "0xa00000"},
      {"-vmdk", "one.vmdk", "-offset", "0x1200000"},  // no NTFS there
      {"-vmdk", "one.vmdk", "-offset", "0x600"},
      {"-vmdk", "snap2.vmdk | snap1.vmdk | base.vmdk"},
      {"-vmdk", " base.vmdk, \"snap2.vmdk\";snap1.vmdk"},
      {"-vmdk", "snap1.vmdk", "-vmdk", "snap2.vmdk", "-vmdk", "\"base.vmdk\"", "-quiet"},
  };
  for (words arguments : lists) {
    arguments.emplace_back("-csv");
    EXPECT_EQ(rows(arguments), wanted) << arguments[1];
  }

  // A list with a parent missing gets one that can be pasted.
  const run_result refused = run({"-vmdk", folder.path("snap2.vmdk")});
  EXPECT_EQ(refused.exit_status, failure);
  const size_t paste = refused.err.find("suggested array: -vmdk \"");
  ASSERT_NE(paste, std::string::npos) << refused.err;
  const size_t begin = paste + 24;
  const std::string list = refused.err.substr(begin, refused.err.find('"', begin) - begin);
  EXPECT_EQ(rows({"-vmdk", list, "-csv"}), wanted) << list;
  for (const std::string& file : files) after += state_of(file);
  EXPECT_EQ(before, after);
  // A file that nobody names may still be one that the disk needs.
  for (const std::string& named : {list, std::string("snap2.vmdk")}) {
    EXPECT_EQ(run({"-vmdk", named, "-out", "snap1.vmdk"}).exit_status, failure);
    EXPECT_NE(before.find(state_of("snap1.vmdk")), std::string::npos) << named;
  }
  fs::rename(folder.path("base.vmdk"), folder.path("base,old;1.vmdk"));
  bytes moved = read_file(folder.path("snap1.vmdk"));
  const std::string text = as_text(moved);
  const size_t hint = text.find("parentFileNameHint=\"base.vmdk\"\n");
  ASSERT_NE(hint, std::string::npos);
  put(moved, hint, as_bytes("parentFileNameHint=\"base,old;1.vmdk\"\n\0"));
  write_file(folder.path("snap1.vmdk"), moved);
  EXPECT_NE(run({"-vmdk", "snap2.vmdk"})
                .err.find("array: -vmdk \"snap2.vmdk | snap1.vmdk\" -vmdk \"base,old;1.vmdk\"\n"),
            std::string::npos);
  EXPECT_EQ(rows({"-vmdk", "snap2.vmdk | snap1.vmdk", "-vmdk", "base,old;1.vmdk", "-csv"}), wanted);
}

TEST_F(vmdk_road, what_is_no_chain_with_a_hive_ends_in_words_or_silence) {
  make_disk();
  for (const char* form : {"streamOptimized", "monolithicFlat", "twoGbMaxExtentSparse"}) {
    qemu_img({"convert", "-O", "vmdk", "-o", std::string("subformat=") + form, "disk", form});
  }
  qemu_img({"create", "-q", "-f", "vmdk", "empty", "8M"});
  bytes volume = read_file(folder.path("volume"));
  put(volume, 0x100000, bytes(volume.size() - 0x200000));
  write_file(folder.path("torn"), volume);
  put(volume, 48, bytes(8));
  write_file(folder.path("dead"), volume);
  for (const char* name : {"torn", "dead"}) {
    qemu_img({"convert", "-f", "raw", "-O", "vmdk", name, std::string(name) + ".vmdk"});
  }
  struct wrong_case {
    words arguments;
    int exit_status;
    const char* said;
  };
  const wrong_case cases[] = {
      {{"-vmdk", "streamOptimized"}, failure, ""},
      {{"-vmdk", "monolithicFlat"}, failure, "monolithicFlat can't be opened"},
      {{"-vmdk", "twoGbMaxExtentSparse"}, failure, "can't be opened"},
      {{"-vmdk", "absent | empty"}, failure, "suggested array: -vmdk \"absent | empty\""},
      {{"-vmdk", ""}, failure, ""},
      {{"-vmdk", "empty"}, failure, "couldn't find any partitions on disk"},
      {{"-vmdk", "empty", "-offset", "0x1000000"}, failure, "is not within image bounds"},
      {{"-vmdk", "dead.vmdk"}, failure, ""},
      {{"-vmdk", "torn.vmdk"}, 0, ""},
      {{"-vss", "3"},
       failure,
       is_windows_program() ? "Problem opening"
                            : "shadow copies are reached through a running Windows"},
  };
  for (const wrong_case& c : cases) {
    const run_result result = run(c.arguments);
    EXPECT_EQ(result.exit_status, c.exit_status) << c.arguments[1] << result.err;
    EXPECT_NE(result.err.find(c.said), std::string::npos) << c.arguments[1] << result.err;
    EXPECT_EQ(result.out.find("reg date"), std::string::npos) << c.arguments[1];
  }
}

}  // namespace
}  // namespace test_support
