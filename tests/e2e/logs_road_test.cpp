// Transaction logs beside a hive, with and without -logs.
#include <algorithm>

#include "e2e/e2e_support.h"
#include "support/hive_log_builder.h"

namespace test_support {
namespace {

class logs_road : public single_source {
 protected:
  static bytes hive_with(char16_t program) {
    cache_builder cache(7);
    cache.entry({.path = std::u16string(u"\\??\\C:\\") + program + u".exe"});
    bytes hive = system_hive_with(cache.bytes()).bytes();
    // Begun as number 11, completed as number 10: dirty.
    put_u32(hive, 4, 11);
    put_u32(hive, 8, 10);
    for (size_t i = 0; i < 4; ++i) {
      hive[0x1FC + i] = 0;
      for (size_t at = i; at < 0x1FC; at += 4) hive[0x1FC + i] ^= hive[at];
    }
    return hive;
  }

  /// A log of the newer kind whose only entry makes all bins those of `hive`.
  static bytes log_of(const bytes& hive) {
    constexpr size_t entry_at = 512, first_page = 0x28 + 8;
    const auto bins = static_cast<uint32_t>(hive.size() - 0x1000);
    bytes log = composed_base_block({.bins_bytes = bins, .name = u"", .rm_id = 0});
    log.resize(entry_at);
    const bytes entry = composed_log_entry(11, {{.offset = 0, .size = bins}}, bins);
    log.insert(log.end(), entry.begin(), entry.end());
    std::copy(hive.begin() + 0x1000, hive.end(),
              log.begin() + static_cast<ptrdiff_t>(entry_at + first_page));
    seal_log_entry(log, entry_at);
    return log;
  }
};

TEST_F(logs_road, rows_come_from_the_logs_where_that_is_asked_for) {
  const bytes stored = hive_with(u'a');
  bytes foreign = stored;
  std::fill(foreign.begin() + 0x1000, foreign.end(), uint8_t{0});
  const struct {
    const char* what;
    bytes log;
    const char* with_logs;
  } cases[] = {{"newer", log_of(hive_with(u'b')), "C:\\b.exe"},
               {"without any control set", log_of(foreign), "C:\\a.exe"},
               {"no log", as_bytes("text"), "C:\\a.exe"}};
  put_file("SYSTEM", stored);
  const std::string before = state_of("SYSTEM");
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    put_file("system.Log1", row.log);
    EXPECT_NE(run("-hive SYSTEM").out.find("C:\\a.exe"), std::string::npos);
    for (const char* road : {"-hive SYSTEM", "-enumdir .", "-pipe"}) {
      SCOPED_TRACE(road);
      shell("rm -f said");  // a walk spares what lies in its folder
      const run_result result =
          run(std::string(road) + " -logs -diags said", {.input = "SYSTEM\n"});
      EXPECT_NE(result.out.find(row.with_logs), std::string::npos) << result.out << text("said");
      EXPECT_EQ(result.exit_status, 0) << result.err;
      EXPECT_NE(text("said").find("system.Log1"), std::string::npos);
    }
  }
  EXPECT_EQ(state_of("SYSTEM"), before);
}

TEST_F(logs_road, the_logs_of_a_real_machine_leave_its_rows) {
  for (const char* name : {"SYSTEM", "SYSTEM.LOG1", "SYSTEM.LOG2"}) {
    if (!fetch_real(std::string("logs/") + name + ".xz", folder.path(name))) {
      GTEST_SKIP() << "no real hives";
    }
  }
  EXPECT_EQ(rows("-hive SYSTEM -logs -diags said"), rows("-hive SYSTEM"));
  const std::string said = text("said");
  EXPECT_NE(said.find("4 entries and 10 pages applied"), std::string::npos) << said;
  EXPECT_NE(said.find("20 entries and 305 pages applied"), std::string::npos);
  EXPECT_NE(said.find("0 entries only with the logs"), std::string::npos);
}

}  // namespace
}  // namespace test_support
