#include "logging/stream_logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>

namespace {

using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

std::chrono::system_clock::time_point At(int64_t seconds, int64_t milliseconds) {
  return std::chrono::system_clock::time_point(std::chrono::seconds(seconds) +
                                               std::chrono::milliseconds(milliseconds));
}

// 1763267599 is 2025-11-16 04:33:19 UTC; whatever the local zone, the seconds read 19.
constexpr int64_t kSomeSecond = 1763267599;

TEST(StreamLoggerTest, HeadsALineWithLevelThreadTimeAndFileInBrackets) {
  std::string head =
      StreamLogHead(kStreamInfo, 0x1f3c, At(kSomeSecond, 7), "C:\\src\\SDK_File_Import", 726);
  EXPECT_TRUE(std::regex_match(
      head,
      std::regex(R"(\[INFO\]\[0x1f3c\]\[\d\d-\d\d \d\d:\d\d:19\.7\]\[SDK_File_Import:726\])")))
      << head;
  EXPECT_THAT(StreamLogHead(kStreamError, 1, At(kSomeSecond, 250), "f", 1),
              AllOf(StartsWith("[ERROR][0x1]["), EndsWith(":19.250][f:1]")));
  EXPECT_THAT(StreamLogHead(kStreamVerbose, 255, At(kSomeSecond, 0), "f", 1),
              StartsWith("[VERBOSE][0xff]["));
  EXPECT_THAT(StreamLogHead(kStreamWarning, 255, At(kSomeSecond, 0), "f", 1),
              AllOf(StartsWith("[WARNING]["), EndsWith(":19.0][f:1]")));
  EXPECT_THAT(StreamLogHead(kStreamWarning, 1, At(0, 0), "src/importer/SDK_File_Import", 9),
              EndsWith("[src/importer/SDK_File_Import:9]"))
      << "only a backslash ends the folder part";
}

TEST(StreamLoggerTest, SendsOneWholeLineToStandardOutput) {
  testing::internal::CaptureStdout();
  LogMessage("a\\b\\SDK_File_Import", "parseJson", 726, kStreamInfo).stream() << "D:\\media\\x";
  std::string written = testing::internal::GetCapturedStdout();
  EXPECT_THAT(written, StartsWith("[INFO][0x"));
  EXPECT_THAT(written, EndsWith("][SDK_File_Import:726]D:\\media\\x\n"));
  EXPECT_THAT(written, Not(HasSubstr("parseJson")));
  EXPECT_EQ(LogOptions::Get().threshold, 0) << "below every call site's cut-off, so none is quiet";
}

}  // namespace
