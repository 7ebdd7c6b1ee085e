// Reading a user's Plugin.log back for support: logs made here, line by line as the plug-in
// writes them, with the torn and foreign lines a real log can hold.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "qvo_host/log_parsing.h"
#include "qvo_host/log_plot.h"
#include "qvo_host/log_summary.h"
#include "support/temp_folder.h"

namespace {

using host_sim::LogSummary;
using host_sim::ParsedLog;

// One line as the plug-in writes it, at 10:00:`second`.
std::string Line(int second, const std::string& level, const std::string& message, int site) {
  char stamp[32];
  std::snprintf(stamp, sizeof(stamp), "2026-11-16 10:00:%02d ", second);
  return stamp + level + " " + message + " SDK_File_Import:" + std::to_string(site) + "\r\n";
}

ParsedLog Parse(const std::string& text) {
  ParsedLog log;
  host_sim::ParsePluginLog(text, &log);
  return log;
}

TEST(LogReportTest, ReadsWholeEntriesAndCountsTornAndForeignLines) {
  const std::string text = Line(1, "INFO ", "Open File: C:\\a.qvo", 856) +
                           Line(2, "INFO ", "Received json: {\"type\":\n\"ping\"}", 2527) +
                           "2026-11-16 10:00:03 INFO  get source vid" +  // torn by a crash
                           "\n" + Line(4, "ERROR", " PRSource failed.", 862) +
                           "not a line of this log\n" + "2026-11-16 10:00:05 INFO  no call site\n";
  const ParsedLog log = Parse(text);
  ASSERT_EQ(log.entries.size(), 3u);
  EXPECT_EQ(log.entries[0].message, "Open File: C:\\a.qvo");
  EXPECT_EQ(log.entries[0].site, 856);
  EXPECT_FALSE(log.entries[0].error);
  EXPECT_EQ(log.entries[1].message, "Received json: {\"type\":\n\"ping\"}");
  EXPECT_EQ(log.entries[2].message, " PRSource failed.");
  EXPECT_TRUE(log.entries[2].error);
  EXPECT_EQ(log.entries[2].seconds - log.entries[0].seconds, 3);
  EXPECT_EQ(log.malformed_lines, 3);
}

TEST(LogReportTest, PutsRotatedFilesBeforeTheCurrentOne) {
  std::vector<ParsedLog> logs = {Parse(Line(50, "INFO ", "remove context", 1640)), Parse("torn"),
                                 Parse(Line(10, "INFO ", "Plugin is shutting down...", 163))};
  const ParsedLog all = host_sim::CombineInWrittenOrder(std::move(logs));
  ASSERT_EQ(all.entries.size(), 2u);
  EXPECT_EQ(all.entries[0].site, 163);
  EXPECT_EQ(all.entries[1].site, 1640);
  EXPECT_EQ(all.malformed_lines, 1);
}

TEST(LogReportTest, TellsFilesFramesRetriesSourcesTheLinkAndErrors) {
  std::string text = Line(0, "INFO ", "Start thread to read command from server...", 2410) +
                     Line(0, "INFO ", "Open File: a", 856) + Line(0, "INFO ", "Open File: b", 856) +
                     Line(0, "ERROR", " PRSource failed.", 862);
  const int consume[] = {10, 20, 30, 40, 100};
  for (int i = 0; i < 5; ++i) {
    text += Line(1 + i, "INFO ", "get source video:a", 2269) +
            Line(1 + i, "INFO ", "read frame consume:" + std::to_string(consume[i]), 2284) +
            Line(1 + i, "INFO ", i == 2 ? "result:1" : "result:0", 2285);
    if (i == 2) {
      text += Line(3, "INFO ", "clean up resource:b", 1605) +
              Line(3, "INFO ", "second try result:0", 2293);
    }
  }
  text +=
      Line(8, "INFO ", "get source video:b", 2269) + Line(8, "INFO ", "Received json: {}", 2527) +
      Line(8, "INFO ", "Request Type: get_media_info", 737) +
      Line(8, "ERROR", "Request file path is invalid!", 779) +
      Line(8, "INFO ", "Response: {}", 798) + Line(9, "INFO ", "Close premiere source file.", 905) +
      Line(9, "INFO ", "clean up resource:a", 1605) +
      Line(9, "INFO ", "Plugin is shutting down...", 163);
  const LogSummary summary = host_sim::Summarize(Parse(text));

  EXPECT_EQ(summary.start_ups, 1);
  EXPECT_EQ(summary.shut_downs, 1);
  EXPECT_EQ(summary.files_opened, 2);
  EXPECT_EQ(summary.opens_failed, 1);
  EXPECT_EQ(summary.frames_stitched, 6);
  EXPECT_EQ(summary.first_tries_failed, 1);
  EXPECT_EQ(summary.retries, 1);
  EXPECT_EQ(summary.retries_failed, 0);
  EXPECT_EQ(host_sim::StitchingPercentile(summary, 50), 30);
  EXPECT_EQ(host_sim::StitchingPercentile(summary, 95), 100);
  EXPECT_EQ(host_sim::StitchingPercentile(summary, 100), 100);
  EXPECT_EQ(summary.sources_released, 2);
  EXPECT_EQ(summary.sources_released_to_make_room, 1);
  EXPECT_EQ(summary.sources_made_again, 1);
  EXPECT_EQ(summary.link_requests, 1);
  EXPECT_EQ(summary.link_request_types.at("get_media_info"), 1);
  EXPECT_EQ(summary.link_responses, 1);

  const std::string told = host_sim::FormatSummary(summary);
  EXPECT_NE(told.find("frames         6 stitched; 1 failed the first try, 1 retried, 0 failed the "
                      "retry too\n"),
            std::string::npos)
      << told;
  EXPECT_NE(told.find("median 30 ms, 95th percentile 100 ms, maximum 100 ms, over 5 frames"),
            std::string::npos);
  EXPECT_NE(told.find("errors         2 lines\n                 1 x  PRSource failed.\n"
                      "                 1 x Request file path is invalid!\n"),
            std::string::npos)
      << told;

  TempFolder folder;
  const std::string plot = folder.Join("plot.png");
  EXPECT_TRUE(host_sim::WriteStitchingPlot(summary, plot));
  EXPECT_GT(std::filesystem::file_size(std::filesystem::u8path(plot)), 0u);
  EXPECT_FALSE(host_sim::WriteStitchingPlot(LogSummary{}, plot)) << "nothing to plot";
}

}  // namespace
