// The road of virtual disks, on files that programs of others made.
#include "e2e/volume_test.h"
#include "sources/disk/vmdk_chain.h"

namespace test_support {
namespace {

class vmdk_road : public volume_test {
 protected:
  /// "disk": a table and two places for volumes, of which the last one holds a hive.
  void make_disk() const {
    make_small_volume("volume", "-c 4096");
    shell(
        "truncate -s 24M disk; sfdisk -q disk;"
        "dd conv=notrunc status=none of=disk if=volume seek=20480",
        "label: dos\nstart=2048,size=16384,type=7\nstart=20480,size=16384,type=7\n"
        "start=36864,size=2048,type=c\n");
  }

  /// Spreads the disk over a base and two snapshots: each grain is in one of them, under it older
  /// bytes that no longer count, and some zeros hide what was there before.
  void make_chain() const {
    shell("split -d -a 3 -b 65536 disk grain");
    std::string commands[3];
    for (int place = 0; place < 24 * 16; ++place) {
      const std::string name = "grain" + std::to_string(1000 + place).substr(1);
      const bool zeros = content(name) == bytes(65536);
      if (zeros && place % 9 != 0) continue;
      const int owner = place * 7 % 11 % 3;
      const std::string range = std::to_string(place * 65536) + " 65536\n";
      if (owner != 0 && place % 2 == 0) commands[owner - 1] += "write -q -P 0x5a " + range;
      const bool hides = zeros && owner != 0;
      commands[owner] += (hides ? "write -q -z " : "write -q -s " + name + " ") + range;
    }
    const std::string snap = "qemu-img create -q -f vmdk -o zeroed_grain=on -F vmdk -b ";
    const std::string makers[] = {
        "qemu-img create -q -f vmdk base.vmdk 24M; ln base.vmdk 'base,old;1.vmdk'; qemu-io "
        "base.vmdk",
        snap + "'base,old;1.vmdk' snap1.vmdk; qemu-io snap1.vmdk",
        snap + "snap1.vmdk snap2.vmdk; qemu-io snap2.vmdk"};
    for (size_t i = 0; i < 3; ++i) {
      const std::string said = shell(makers[i], commands[i]);
      EXPECT_EQ(said.find("rror"), std::string::npos) << said;
    }
  }

  /// The whole of the virtual disk, against what qemu-img makes of its newest file.
  void expect_contents(const std::string& newest, const words& files) const {
    shell("qemu-img convert -f vmdk -O raw " + newest + " raw");
    words paths;
    for (const std::string& file : files) paths.push_back(folder.path(file));
    ovrik::read_faults faults;
    const auto disk = ovrik::check_vmdk_chain(paths, faults).disk;
    ASSERT_NE(disk, nullptr);
    bytes all(disk->size());
    auto size = static_cast<uint32_t>(all.size());
    ASSERT_TRUE(disk->read(all.data(), size, 0));
    EXPECT_TRUE(all == content("raw")) << newest;
  }
};

TEST_F(vmdk_road, disks_and_chains_give_the_rows_of_the_file) {
  make_disk();
  shell("qemu-img convert -f raw -O vmdk -o subformat=monolithicSparse disk one.vmdk");
  make_chain();
  expect_contents("one.vmdk", {"one.vmdk"});
  expect_contents("snap2.vmdk", {"snap1.vmdk", "snap2.vmdk", "base.vmdk"});
  const std::string before = state_of("*.vmdk");
  for (const char* list : {
           "-vmdk one.vmdk",
           "-vmdk one.vmdk -offset 0xa00000",
           "-vmdk one.vmdk -offset 0x1200000",  // no NTFS there
           "-vmdk one.vmdk -offset 0x600",
           "-vmdk 'snap2.vmdk | snap1.vmdk | base.vmdk'",
           "-vmdk ' base.vmdk, \"snap2.vmdk\";snap1.vmdk'",
           "-vmdk snap1.vmdk -vmdk snap2.vmdk -vmdk '\"base.vmdk\"'",
           "-vmdk 'snap2.vmdk | snap1.vmdk' -vmdk 'base,old;1.vmdk'",
       }) {
    EXPECT_EQ(rows(list), wanted) << list;
  }
  // A list with a parent missing gets one that can be pasted.
  expect({{"-vmdk snap2.vmdk",
           "=> vmdk file: snap2.vmdk\n depends on parent vmdk snap1.vmdk\n"
           "=> vmdk file: snap1.vmdk\n depends on parent vmdk base,old;1.vmdk\n\n"
           "suggested array: -vmdk \"snap2.vmdk | snap1.vmdk\" -vmdk \"base,old;1.vmdk\"\n"}});
  // A file that nobody names may still be one that the disk needs.
  expect({{"-vmdk 'snap2.vmdk | snap1.vmdk | base.vmdk' -out snap1.vmdk",
           spared("snap1.vmdk", is_source)},
          {"-vmdk snap2.vmdk -out snap1.vmdk", spared("snap1.vmdk", "it begins like evidence")}});
  EXPECT_EQ(before, state_of("*.vmdk"));
}

TEST_F(vmdk_road, what_is_no_chain_with_a_hive_ends_in_words_or_silence) {
  make_disk();
  shell(
      "for form in streamOptimized monolithicFlat twoGbMaxExtentSparse; do"
      "  qemu-img convert -f raw -O vmdk -o subformat=$form disk $form;"
      "done;"
      "qemu-img create -q -f vmdk empty 8M;"
      "dd conv=notrunc status=none of=volume if=/dev/zero bs=1M seek=1 count=6;"
      "qemu-img convert -f raw -O vmdk volume torn;"
      "dd conv=notrunc status=none of=volume if=/dev/zero bs=1 seek=48 count=8;"
      "qemu-img convert -f raw -O vmdk volume dead");
  const std::string none = "couldn't find any partitions on disk\n";
  const std::string unopened = " can't be opened\n\nsuggested array: -vmdk ";
  const std::string no_hive = wiped + "Problem opening \\windows\\system32\\config\\system\n";
  const std::string convert =
      "convert the whole disk, by its descriptor, to one file (qemu-img convert -O vmdk) and give "
      "that to -vmdk\n";
  const std::string others = "this is only the descriptor of a disk of the form VMDK: " + convert;
  expect({
      {"-vmdk streamOptimized",
       none + "this is a disk of the form streamOptimized VMDK: its grains are compressed: convert "
              "it (qemu-img convert -O vmdk) and give the result to -vmdk\n"},
      {"-vmdk monolithicFlat", "monolithicFlat" + unopened + "\"monolithicFlat\"\n" + others},
      {"-vmdk twoGbMaxExtentSparse",
       "twoGbMaxExtentSparse" + unopened + "\"twoGbMaxExtentSparse\"\n" + others},
      {"-vmdk twoGbMaxExtentSparse-s001",
       "Child VMDK CID errors, aborting\n\nsuggested array: -vmdk \"twoGbMaxExtentSparse-s001\"\n"
       "this is one part of a disk in several files of the form VMDK: " +
           convert},
      {"-vmdk 'absent | empty'", "absent" + unopened + "\"absent | empty\"\n"},
      {"-vmdk ''",
       "\nno file was named: -vmdk takes the files of the disk, as in -vmdk \"snapshot.vmdk | "
       "base.vmdk\"\n"},
      {"-vmdk 'absent | disk' -out disk", spared("disk", is_source)},
      {"-vmdk empty", none},
      {"-vmdk empty -offset 0x1000000", "volume offset 0x1000000 is not within image bounds\n"},
      {"-vmdk dead", no_hive},
      {"-vmdk torn", no_hive, "", 0},
      {"-image dead", none + "\nthis is a disk of the form VMDK: give it to -vmdk\n"},
  });
}

}  // namespace
}  // namespace test_support
