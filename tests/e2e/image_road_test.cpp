// The image road on volumes and disks that programs of others made.
#include <filesystem>

#include "e2e/volume_test.h"

namespace test_support {
namespace {

class image_road : public volume_test {
 protected:
  /// Rows as from the file itself, the image untouched. Others find the file at that sector too;
  /// returns what they say of it.
  std::string expect_hive_in(const std::string& image, const std::string& options = "",
                             const std::string& sector = "0") const {
    const std::string before = state_of(image);
    EXPECT_EQ(rows("-image " + image + " " + options), wanted);
    EXPECT_EQ(state_of(image), before);
    const std::string where = " -o " + sector + " " + image;
    const std::string inode = " $(ifind -n " + hive_path + where + ")";
    return shell("icat" + where + inode + " | cmp - hive; istat" + where + inode);
  }
};

TEST_F(image_road, bare_volumes_of_every_cluster_size_give_the_rows_of_the_file) {
  const size_t whole = hive.size();
  struct {
    std::string size, options;
    int files;
    size_t piece;  // the hive is written in pieces with other files' between them
    bool packed;
    bool is_listed;  // it has an attribute list outside its record
  } const volumes[] = {
      {"32M", "-c 4096", 6100, whole, false, false},
      {"32M", "-c 512", 300, whole, false, false},
      {"32M", "-c 4096", 10, 4096, false, true},
      {"64M", "-c 65536", 300, 65536, false, false},
      {"32M", "-s 4096 -c 4096", 10, whole, false, false},
      {"32M", "-c 4096", 10, whole, true, false},
      {"32M", "-c 512", 10, whole, true, true},
  };
  for (const auto& volume : volumes) {
    SCOPED_TRACE(volume.options + std::to_string(volume.files) + (volume.packed ? "packed" : ""));
    const std::string system = "/Windows/System32/";
    std::string fill = volume.packed ? "compress\t" + system + "config\n" : "";
    for (int i = 0; i < volume.files; ++i) {
      const std::string number = std::to_string(i);
      const std::string name =
          system + (i % 2 == 0 ? "MiXeD" : "a quite long name of a file ") + number + ".dll";
      fill += "empty\t" + name + "\n";
      if (i % 3 == 0) fill += "append\t" + name + "\thive\t0\t20\n";
      if (i % 5 == 1) fill += "short\t" + name + "\tAQUI~" + number + ".DLL\n";
      if (i == volume.files / 2) fill += "remove\t" + name + "\n";
    }
    fill += "empty\t/" + hive_path + "\nempty\t/other\n";
    for (size_t at = 0; at < whole; at += volume.piece) {
      const size_t length = std::min(volume.piece, whole - at);
      fill += append_hive(at, length);
      if (length < whole) fill += "append\t/other\thive\t0\t" + std::to_string(length) + "\n";
    }
    // Names that lead past the file: a link to it elsewhere, and one of another file here.
    fill += "link\t/" + hive_path + "\t" + system + "link to a hive\n";
    fill += "empty\t/Windows/x\nlink\t/Windows/x\t" + system + "config/SYSTEM.LOG\n";
    make_volume("volume", volume.size, volume.options, fill);
    const words list = behind("Type: $ATTRIBUTE_LIST (", expect_hive_in("volume"));
    EXPECT_EQ(volume.is_listed, !list.empty() && list[0].find("Non-Resident") != std::string::npos);
    shell("rm volume");
  }
}

TEST_F(image_road, a_disk_without_an_offset_is_listed_and_read_with_one) {
  make_small_volume("small", "-c 4096");
  make_small_volume("large", "-s 4096 -c 4096");
  const std::string one = "\nvolume offset [ 0x100000 ] : ntfs or exfat\n";
  struct {
    std::string maker, volume;
    words sectors;
    std::string list;
  } const disks[] = {
      {"sfdisk -q disk <<END\nlabel: dos\nstart=2048,size=16384,type=7\nstart=20480,type=5\n"
       "start=22528,size=16384,type=7\nstart=43008,size=16384,type=7\nEND",
       "small",
       {"2048", "22528", "43008"},
       one + "volume offset [ 0xa00000 ] : exten\nvolume offset [ 0xb00000 ] : ntfs or exfat\n"
             "volume offset [ 0x1400000 ] : exten\nvolume offset [ 0x1500000 ] : ntfs or exfat\n"
             "\nuse option [-offset 0x1500000]\n\n"},
      // Tables of large sectors count in them.
      {"printf 'o\nn\np\n1\n256\n+2047\nt\n7\nw\n' | fdisk -b 4096 disk",
       "large",
       {"2048"},
       one + "\nuse option [-offset 0x100000]\n\n"},
      {"printf 'g\nn\n1\n256\n+2047\nt\n11\nw\n' | fdisk -b 4096 disk",
       "large",
       {"2048"},
       one + "\nuse option [-offset 0x100000]\n\n"},
      {"sgdisk -n 1:2048:18431 -t 1:0700 -n 2:20480:36863 -t 2:0700 disk",
       "small",
       {"2048", "20480"},
       one + "volume offset [ 0xa00000 ] : ntfs or exfat\n\nuse option [-offset 0xa00000]\n\n"},
  };
  for (const auto& disk : disks) {
    SCOPED_TRACE(disk.maker);
    shell("rm -f disk; truncate -s 48M disk; " + disk.maker);
    for (const std::string& sector : disk.sectors) {
      shell("dd conv=notrunc status=none of=disk if=" + disk.volume + " seek=" + sector);
      expect_hive_in("disk", "-offset $((512 * " + sector + "))", sector);
    }
    expect({{"-image disk", disk.list}, {"-image disk -offset 0x1000", disk.list}});
  }
  // Cut within the last volume, behind the hive.
  shell("truncate -s 18873856 disk");
  expect({{"-image disk -offset 0xa00000",
           "volume offset 0xa00000 is a NTFS partition, however image size does not encapsulate "
           "entire volume\n\n"}});
  EXPECT_EQ(rows("-image disk -offset 0xa00000 -ignore_image_size"), wanted);
}

TEST_F(image_road, volumes_that_no_intact_table_names_are_read_by_their_offset) {
  make_small_volume("small", "-c 4096");
  shell(
      "truncate -s 24M gpt dos; sgdisk -n 1:2048:18431 -t 1:0700 gpt; sfdisk -q dos;"
      "dd conv=notrunc status=none of=gpt if=small seek=2048;"
      "dd conv=notrunc status=none of=dos if=small seek=6144;"
      "dd conv=notrunc status=none of=gpt if=/dev/zero seek=1 count=33",
      "label: dos\nstart=2048,size=40000,type=42\n");
  expect({{"-image gpt",
           "\nvolume offset [ 0x100000 ] : ntfs or exfat\n\nuse option [-offset 0x100000]\n\n"}});
  EXPECT_EQ(rows("-image gpt -offset 0x100000"), wanted);
  EXPECT_EQ(rows("-image dos -offset 0x300000"), wanted);
}

TEST_F(image_road, what_is_no_ntfs_is_refused_in_words) {
  shell(
      "truncate -s 1M empty; truncate -s 0 nothing; truncate -s 64M fat ext4 disk;"
      "mkfs.vfat -F 32 fat; mkfs.ext4 -q -F ext4; sfdisk -q disk;"
      "dd conv=notrunc status=none of=disk if=fat seek=2048 count=16384",
      "label: dos\nstart=2048,size=16384,type=c\nstart=20480,type=83\n");
  const std::string none = "couldn't find any partitions on disk\n\n";
  const std::string list =
      "\nvolume offset [ 0x100000 ] : fat32\nvolume offset [ 0xa00000 ] : linux\n\n"
      "prob detecting ntfs partition\n\n";
  expect({
      {"-image empty", none},
      {"-image nothing", none},
      {"-image fat", none},
      {"-image ext4",
       "volume offset selected 0x0 is not a NTFS partition, but [linux]\n"
       "\nvolume offset [ 0x0 ] : linux\n\nprob detecting ntfs partition\n\n"},
      {"-image disk", list},
      {"-image disk -offset 0x100000",
       "volume offset selected 0x100000 is not a NTFS partition, but [fat32]\n" + list},
      {"-image disk -offset 0xffffffffff",
       "volume offset 0xffffffffff is not within image bounds\n\n"},
      {"-image absent", "invalid image: " + host_path((is_windows_program() ? "Z:" : "") +
                                                      folder.path("absent\n\n"))},
  });
}

}  // namespace
}  // namespace test_support
