// Runs that something ends early: a signal, a file that may not grow, a live check. What was
// written is whole rows.
#include "e2e/e2e_support.h"

namespace test_support {
namespace {

class cut_short : public single_source {
 protected:
  cut_short() {
    cache_builder cache(14);
    for (char16_t number = 0; number < 200; ++number) {
      cache.entry({.path = u"C:\\Ж" + std::u16string(number, u'x') + u".exe"});
    }
    put_file("many", system_hive_with(cache.bytes()).bytes());
  }
};

TEST_F(cut_short, a_signal_ends_the_run_behind_a_whole_row) {
  if (is_windows_program()) GTEST_SKIP() << "no signals";
  const std::string all = rows("-hive many");
  for (const auto& [signal, status] : {std::pair("TERM", 143), std::pair("HUP", 129)}) {
    SCOPED_TRACE(signal);
    // The list waits for more; the rows of its first hive have gone out by then.
    const std::string ended =
        shell(std::string("mkfifo list; (echo many; exec sleep 20) > list & feeder=$!;") +
              start_of_program() + " -pipe -csv -quiet -out out < list 2>err & run=$!;" +
              "while ! grep -q 'xx.exe' out 2>/dev/null; do sleep 0.05; done;" + "kill -" + signal +
              " $run; status=0; wait $run || status=$?; kill $feeder; rm list; echo $status");
    EXPECT_EQ(ended, std::to_string(status) + "\n");
    EXPECT_NE(text("out").find(all), std::string::npos);
    shell("rm out");
  }
  // A signal that the caller ignores stays ignored.
  EXPECT_EQ(shell("trap '' HUP; (echo many; sleep 1) | " + start_of_program() +
                  " -pipe -csv -quiet 2>err > out & sleep 0.5; kill -HUP $!; wait $!; echo $?"),
            "0\n");
}

TEST_F(cut_short, a_file_that_may_not_grow_ends_with_a_whole_row) {
  if (is_windows_program()) GTEST_SKIP() << "no limits";
  for (const std::string form : {"", "-csv", "-csvl2t", "-bodyfile", "-multiline"}) {
    const std::string all = body("-hive many " + form);
    for (const int blocks : {2, 5, 9}) {
      SCOPED_TRACE(form + " " + std::to_string(blocks));
      const run_result result =
          run_program("sh",
                      {"-c", "ulimit -f " + std::to_string(blocks) + "; exec " +
                                 start_of_program() + " -hive many -quiet -out out " + form},
                      {.folder = folder.path()});
      EXPECT_EQ(result.err, "prob writing results file: out\n");
      EXPECT_EQ(result.exit_status, failure);
      const std::string kept = body_of(text("out"));
      EXPECT_TRUE(all.starts_with(kept));
      EXPECT_TRUE(kept.ends_with(form == "-multiline" && blocks > 2 ? "\n\n" : "\n")) << kept;
      EXPECT_GT(kept.size() + 1024, static_cast<size_t>(blocks) * 512);
    }
  }
}

TEST_F(cut_short, a_live_check_costs_nothing_of_the_control_sets_before) {
  hive_builder builder = system_hive({{.number = 1, .cache = seven_cache()},
                                      {.number = 2, .cache = seven_cache()},
                                      {.number = 3, .cache = seven_cache()}},
                                     1);
  bytes broken = builder.bytes();
  put_u32(broken, builder.key_at("ControlSet003\\Control") + 0x30, 0);  // no security
  put_file("broken", broken);
  EXPECT_EQ(run("-hive broken -all_controlsets -csv -out out").exit_status, abnormal_end());
  EXPECT_EQ(behind("Artifact: Shim Cache ", text("out")),
            (words{"[ControlSet001 - CurrentControlSet]", "[ControlSet002]"}));
  EXPECT_EQ(behind("c.exe", text("out")).size(), 2U);
}

}  // namespace
}  // namespace test_support
