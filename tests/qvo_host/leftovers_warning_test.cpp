// What qvo-host says after a command of what the plug-in left behind: nothing for the audio suite
// that closing a file releases twice, which the design keeps, and everything else.
#include "qvo_host/leftovers_warning.h"

#include <gtest/gtest.h>

namespace {

using host_sim::HostReport;
using host_sim::SuiteBalance;

constexpr char kAudioSuite[] = "Premiere Audio Suite";

TEST(LeftoversWarningTest, SaysNothingOfTheDesignsOwnImbalanceAndEverythingElse) {
  const struct {
    const char* what;
    std::vector<SuiteBalance> suites;
    size_t handles_left;
    const char* said;  // empty for silence
  } cases[] = {
      {"audio released twice", {{kAudioSuite, 1, 3, 6}}, 0, ""},
      {"audio released three times", {{kAudioSuite, 1, 2, 6}}, 0, "released 6"},
      {"another suite released twice", {{"Premiere Time Suite", 1, 1, 2}}, 0, "Time Suite"},
      {"a handle beside the design's", {{kAudioSuite, 1, 3, 6}}, 1, "handles never disposed"},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.what);
    HostReport report;
    report.suites_unbalanced = one.suites;
    report.handles_never_disposed.resize(one.handles_left);
    const std::string warning = host_sim::LeftoversWarning(report);
    if (*one.said == '\0') {
      EXPECT_EQ(warning, "");
    } else {
      EXPECT_EQ(warning.rfind("qvo-host: the plug-in left this behind:\n", 0), 0u) << warning;
      EXPECT_NE(warning.find(one.said), std::string::npos) << warning;
      EXPECT_EQ(warning.find("acquired 3, released 6"), std::string::npos) << warning;
    }
  }
}

}  // namespace
