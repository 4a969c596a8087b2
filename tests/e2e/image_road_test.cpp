// The image road on volumes and disks that programs of others made.
#include <sstream>

#include "e2e/volume_test.h"

namespace test_support {
namespace {

std::string hex(uint64_t number) {
  std::ostringstream text;
  text << "0x" << std::hex << number;
  return text.str();
}

class image_road : public volume_test {
 protected:
  /// Rows as from the file itself, the oracle's bytes those of the file, the image untouched.
  /// Returns its entry in the MFT.
  std::string expect_hive_in(const char* name, words more = {},
                             const std::string& sectors = "0") const {
    const std::string image = folder.path(name);
    const auto time = fs::last_write_time(image);
    const std::string before = run_program("sha256sum", {image}).out;
    words arguments = {"-image", image, "-csv"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    EXPECT_EQ(rows(arguments), rows({"-hive", "hive", "-csv"})) << name;
    EXPECT_TRUE(fs::last_write_time(image) == time) << name;
    EXPECT_EQ(run_program("sha256sum", {image}).out, before);
    std::string inode = run_program("ifind", {"-o", sectors, "-n", hive_path, image}).out;
    inode.erase(inode.find_last_not_of("\n") + 1);
    run_program("icat", {"-o", sectors, image, inode}, {.out_path = folder.path("out")});
    EXPECT_TRUE(read_file(folder.path("out")) == hive) << name << " was not made as meant";
    return inode;
  }

  /// The list of partitions goes to standard error, then the hint.
  void expect_list(const std::string& image, words more, uint64_t hint) const {
    words arguments = {"-image", image};
    arguments.insert(arguments.end(), more.begin(), more.end());
    const run_result result = run(arguments);
    EXPECT_EQ(result.exit_status, failure) << image;
    EXPECT_NE(result.err.find("use option [-offset " + hex(hint) + "]"), std::string::npos)
        << result.err;
    // mmls: slot, place in the table, first sector, last, count, description
    const std::string table = run_program("mmls", {folder.path(image)}).out;
    uint64_t unit = 512;
    int listed = 0;
    std::istringstream lines(table);
    for (std::string line; std::getline(lines, line);) {
      if (line.starts_with("Units are in ")) unit = std::stoull(line.substr(13));
      std::istringstream fields(line);
      std::string slot, place, start;
      fields >> slot >> place >> start;
      if (place.empty() || !std::isdigit(static_cast<unsigned char>(place[0]))) continue;
      ++listed;
      EXPECT_NE(result.err.find("[ " + hex(std::stoull(start) * unit) + " ]"), std::string::npos)
          << line << result.err;
    }
    EXPECT_GE(listed, 2) << table;
  }
};

TEST_F(image_road, bare_volumes_of_every_cluster_size_give_the_rows_of_the_file) {
  struct volume_case {
    const char* name;
    uint64_t size;
    words options;
    int files;
    size_t piece;  // the hive is written in pieces with other files' between them
    bool packed;
    const char* list;  // what istat says of the hive's attribute list
  };
  const volume_case cases[] = {
      {"many files, 4 KiB", 32 * mebi, {"-c", "4096"}, 6100, 0, false, ""},
      {"512 bytes", 32 * mebi, {"-c", "512"}, 300, 0, false, ""},
      {"4 KiB, in pieces", 32 * mebi, {"-c", "4096"}, 10, 4096, false, "Non-Resident"},
      {"64 KiB", 64 * mebi, {"-c", "65536"}, 300, 65536, false, ""},
      {"4 KiB sectors", 32 * mebi, {"-s", "4096", "-c", "4096"}, 10, 0, false, ""},
      {"packed", 32 * mebi, {"-c", "4096"}, 10, 0, true, ""},
      {"packed, 512 bytes", 32 * mebi, {"-c", "512"}, 10, 0, true, "Non-Resident"},
  };
  for (const volume_case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string system = "/Windows/System32/";
    std::string fill = c.packed ? "compress\t" + system + "config\n" : "";
    for (int i = 0; i < c.files; ++i) {
      const std::string name = system + (i % 2 == 0 ? "MiXeD" : "a quite long name of a file ") +
                               std::to_string(i) + ".dll";
      fill += "empty\t" + name + "\n";
      if (i % 3 == 0) fill += "append\t" + name + "\thive\t0\t20\n";
      if (i % 5 == 1) fill += "short\t" + name + "\tAQUI~" + std::to_string(i) + ".DLL\n";
      if (i == c.files / 2) fill += "remove\t" + name + "\n";
    }
    fill += "empty\t/" + hive_path + "\nempty\t/other\n";
    const size_t piece = c.piece == 0 ? hive.size() : c.piece;
    for (size_t at = 0; at < hive.size(); at += piece) {
      const size_t length = std::min(piece, hive.size() - at);
      fill += append_hive(at, length);
      if (c.piece != 0) fill += "append\t/other\thive\t0\t" + std::to_string(length) + "\n";
    }
    // Names that lead past the file: a link to it elsewhere, and one of another file here.
    fill += "link\t/" + hive_path + "\t" + system + "link to a hive\n";
    fill += "empty\t/Windows/x\nlink\t/Windows/x\t" + system + "config/SYSTEM.LOG\n";
    make_volume(c.name, c.size, c.options, fill);
    const std::string inode = expect_hive_in(c.name);
    const std::string facts = run_program("istat", {folder.path(c.name), inode}).out;
    const size_t list = facts.find("Type: $ATTRIBUTE_LIST (");
    const std::string line = list == std::string::npos ? "" : facts.substr(list, 70);
    EXPECT_TRUE(*c.list == 0 ? line.empty() : line.find(c.list) != std::string::npos) << line;
    fs::remove(folder.path(c.name));
  }
}

TEST_F(image_road, a_disk_without_an_offset_is_listed_and_read_with_one) {
  make_small_volume("volume");
  struct disk_case {
    const char* name;
    words maker;
    const char* script;
    std::vector<uint64_t> sectors;  // where the volumes go
  };
  const disk_case cases[] = {
      {"mbr",
       {"sfdisk", "-q"},
       "label: dos\nstart=2048,size=16384,type=7\nstart=20480,type=5\n"
       "start=22528,size=16384,type=7\nstart=43008,size=16384,type=7\n",
       {2048, 22528, 43008}},
      {"gpt",
       {"sgdisk", "-n", "1:2048:18431", "-t", "1:0700", "-n", "2:20480:36863", "-t", "2:0700"},
       "",
       {2048, 20480}},
  };
  for (const disk_case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string disk = folder.path(c.name);
    make_empty(disk, 48 * mebi);
    words arguments(c.maker.begin() + 1, c.maker.end());
    arguments.push_back(disk);
    ASSERT_EQ(run_program(c.maker[0], arguments, {.input = c.script}).exit_status, 0);
    for (const uint64_t sector : c.sectors) {
      copy_into(disk, sector * 512, read_file(folder.path("volume")));
    }
    expect_list(c.name, {}, c.sectors.back() * 512);
    expect_list(c.name, {"-offset", "0x1000"}, c.sectors.back() * 512);
    for (const uint64_t sector : c.sectors) {
      expect_hive_in(c.name, {"-offset", hex(sector * 512)}, std::to_string(sector));
    }
  }

  // Cut within the last volume, behind the hive.
  fs::resize_file(folder.path("gpt"), 36863 * 512);
  const words cut = {"-image", "gpt", "-csv", "-offset", "0xa00000"};
  const run_result refused = run(cut);
  EXPECT_EQ(refused.exit_status, failure);
  EXPECT_NE(refused.err.find("image size does not encapsulate entire volume"), std::string::npos);
  words forced = {"-ignore_image_size"};
  forced.insert(forced.begin(), cut.begin(), cut.end());
  EXPECT_EQ(rows(forced), rows({"-hive", "hive", "-csv"}));
}

TEST_F(image_road, tables_of_large_sectors_count_in_them) {
  make_small_volume("volume", {"-s", "4096", "-c", "4096"});
  for (const std::string label : {"dos", "gpt"}) {
    const std::string disk = folder.path(label);
    make_empty(disk, 24 * mebi);
    const std::string keys =
        label == "dos" ? "o\nn\np\n1\n256\n+2047\nt\n7\nw\n" : "g\nn\n1\n256\n+2047\nt\n11\nw\n";
    ASSERT_EQ(run_program("fdisk", {"-b", "4096", disk}, {.input = keys}).exit_status, 0);
    copy_into(disk, mebi, read_file(folder.path("volume")));
    const run_result listed = run({"-image", label});
    EXPECT_EQ(listed.exit_status, failure) << label;
    EXPECT_NE(listed.err.find("use option [-offset 0x100000]"), std::string::npos) << listed.err;
    EXPECT_EQ(rows({"-image", label, "-csv", "-offset", "0x100000"}),
              rows({"-hive", "hive", "-csv"}))
        << label;
  }
}

TEST_F(image_road, what_is_no_ntfs_is_refused_in_words) {
  make_empty(folder.path("empty"), mebi);
  make_empty(folder.path("nothing"), 0);
  for (const char* name : {"fat", "ext4", "disk"}) make_empty(folder.path(name), 64 * mebi);
  run_program("mkfs.vfat", {"-F", "32", folder.path("fat")});
  run_program("mkfs.ext4", {"-q", "-F", folder.path("ext4")});
  run_program("sfdisk", {"-q", folder.path("disk")},
              {.input = "label: dos\nstart=2048,size=16384,type=c\nstart=20480,type=83\n"});
  bytes fat = read_file(folder.path("fat"));
  fat.resize(8 * mebi);
  copy_into(folder.path("disk"), mebi, fat);
  struct wrong_case {
    words arguments;
    const char* said;
  };
  const wrong_case cases[] = {
      {{"-image", "empty"}, "couldn't find any partitions on disk"},
      {{"-image", "nothing"}, "couldn't find any partitions on disk"},
      {{"-image", "fat"}, "couldn't find any partitions on disk"},
      {{"-image", "ext4"}, "prob detecting ntfs partition"},
      {{"-image", "disk"}, "volume offset [ 0x100000 ] : fat32"},
      {{"-image", "disk", "-offset", "0x100000"},
       "volume offset selected 0x100000 is not a NTFS partition, but [fat32]"},
      {{"-image", "disk", "-offset", "0xffffffffff"},
       "volume offset 0xffffffffff is not within image bounds"},
      {{"-image", "absent"}, "invalid image: "},
      {{"-livesys"}, ""},
  };
  for (const wrong_case& c : cases) {
    const run_result result = run(c.arguments);
    EXPECT_EQ(result.exit_status, failure) << c.arguments.back();
    EXPECT_NE(result.err.find(c.said), std::string::npos) << c.arguments.back() << result.err;
    EXPECT_EQ(result.signal, 0);
  }
  const std::string live = run({"-livesys"}).err;
  EXPECT_EQ(std::count(live.begin(), live.end(), '\n'), 1) << live;
}

}  // namespace
}  // namespace test_support
