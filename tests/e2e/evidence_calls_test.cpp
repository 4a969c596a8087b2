// What the program asks the system to do with files, on every road: evidence is opened for reading
// and nothing else, and nothing but the results is made, changed or removed.

#include "e2e/e2e_support.h"

namespace test_support {
namespace {

class evidence_calls : public single_source {
 protected:
  void SetUp() override {
    if (is_windows_program()) GTEST_SKIP() << "the calls of this host are traced";
    need_tools("strace mkntfs ntfscp qemu-img");
    put_file("cache.bin", seven_cache());
    shell("mkdir tree && cp sets.hiv tree/ && truncate -s 16M disk.dd && mkntfs -qF disk.dd 2>&1");
    shell("qemu-img convert -O vmdk disk.dd disk.vmdk");
  }

  /// The calls that name a file and can change one, but for those on the results.
  words changing_calls(const std::string& arguments, const std::string& input) const {
    const std::string calls =
        "open,openat,openat2,creat,rename,renameat,renameat2,unlink,unlinkat,truncate,link,linkat,"
        "symlink,symlinkat,mkdir,mkdirat,rmdir,chmod,fchmodat,chown,utimensat,setxattr,mknod";
    const run_result traced = run_program("strace",
                                          "-f -qq -o calls -e trace=" + calls + " " +
                                              start_of_program() + " " + arguments + " -quiet",
                                          {.input = input, .folder = folder.path()});
    EXPECT_NE(traced.exit_status, 127) << traced.err;
    words changing;
    for (const std::string& call : behind("\n", "\n" + text("calls"))) {
      if (call.empty() || call.find("+++ exited") != std::string::npos) continue;
      const bool reads = call.find("O_RDONLY") != std::string::npos &&
                         call.find("O_CREAT") == std::string::npos &&
                         call.find("O_TRUNC") == std::string::npos;
      const bool results = call.find("\"rows.csv\"") != std::string::npos ||
                           call.find("\"out3") != std::string::npos;
      if (!reads && !results) changing.push_back(call);
    }
    return changing;
  }
};

TEST_F(evidence_calls, no_road_asks_for_more_than_reading) {
  struct {
    const char *arguments, *input;
  } const roads[] = {{"-hive sets.hiv", ""},
                     {"-hive sets.hiv -all_controlsets -out rows.csv -csv", ""},
                     {"-extract sets.hiv -out rows.csv", ""},
                     {"-binary cache.bin", ""},
                     {"-pipe", "sets.hiv\nmissing\ntree\n"},
                     {"-pipe_binary -out rows.csv", "cache.bin\n"},
                     {"-enumdir . -num_subdirs 2 -filter_sig '72656766|0'", ""},
                     {"-memfile sets.hiv", ""},
                     {"-image disk.dd", ""},
                     {"-vmdk disk.vmdk", ""}};
  for (const auto& road : roads) {
    const std::string before = state_of("sets.hiv cache.bin disk.dd disk.vmdk tree/sets.hiv");
    EXPECT_EQ(changing_calls(road.arguments, road.input), words()) << road.arguments;
    EXPECT_EQ(state_of("sets.hiv cache.bin disk.dd disk.vmdk tree/sets.hiv"), before)
        << road.arguments;
  }
}

}  // namespace
}  // namespace test_support
