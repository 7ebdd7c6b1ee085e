// Reading a user's Plugin.log back for support: logs made here, line by line as the plug-in
// writes them, with the torn and foreign lines a real log can hold.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "qvo_host/log_parsing.h"
#include "qvo_host/log_plot.h"
#include "qvo_host/log_summary.h"
#include "qvo_host/time_plot.h"

namespace {

using host_sim::LogSummary;
using host_sim::ParsedLog;
using host_sim::Rgb;
using host_sim::RgbImage;
using ::testing::AllOf;
using ::testing::HasSubstr;

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

// The files come in any order, the current one among the rotated ones.
TEST(LogReportTest, ReadsWholeEntriesInWrittenOrderAndCountsTornAndForeignLines) {
  const std::string text = Line(1, "INFO ", "Open File: C:\\a.qvo", 856) +
                           Line(2, "INFO ", "Received json: {\"type\":\n\"ping\"}", 2527) +
                           "2026-11-16 10:00:03 INFO  get source vid" +  // torn by a crash
                           "\n" + Line(4, "ERROR", " PRSource failed.", 862) +
                           "not a line of this log\n" + "2026-11-16 10:00:05 INFO  no call site\n";
  std::vector<ParsedLog> logs = {Parse(Line(50, "INFO ", "remove context", 1640)), Parse("torn"),
                                 Parse(text)};
  const ParsedLog log = host_sim::CombineInWrittenOrder(std::move(logs));
  ASSERT_EQ(log.entries.size(), 4u);
  EXPECT_EQ(log.entries[1].message, "Received json: {\"type\":\n\"ping\"}");
  EXPECT_EQ(log.entries[3].site, 1640);
  EXPECT_EQ(log.malformed_lines, 4);
}

// The clips are named by their paths on Windows and elsewhere.
TEST(LogReportTest, TellsFilesFramesRetriesSourcesTheLinkAndErrorsAndPlotsEachClipsFrames) {
  const std::string a = "C:\\clips\\a.qvo", b = "/media/b.qvo";
  std::string text = Line(0, "INFO ", "Start thread to read command from server...", 2410) +
                     Line(0, "INFO ", "Open File: " + a, 856) +
                     Line(0, "INFO ", "Open File: " + b, 856) +
                     Line(0, "ERROR", " PRSource failed.", 862);
  const int consume[] = {10, 20, 30, 40, 100};
  for (int i = 0; i < 5; ++i) {
    text += Line(1 + i, "INFO ", "get source video:" + a, 2269) +
            Line(1 + i, "INFO ", "read frame consume:" + std::to_string(consume[i]), 2284) +
            Line(1 + i, "INFO ", i == 2 ? "result:1" : "result:0", 2285);
    if (i == 1) {
      text += Line(2, "INFO ", "get source video:" + b, 2269) +
              Line(2, "INFO ", "read frame consume:30", 2284);
    }
    if (i == 2) {
      text += Line(3, "INFO ", "clean up resource:" + b, 1605) +
              Line(3, "INFO ", "second try result:0", 2293);
    }
  }
  text += Line(8, "INFO ", "get source video:" + b, 2269) +
          Line(8, "INFO ", "Received json: {}", 2527) +
          Line(8, "INFO ", "Request Type: get_media_info", 737) +
          Line(8, "ERROR", "Request file path is invalid!", 779) +
          Line(8, "INFO ", "Response: {}", 798) +
          Line(9, "INFO ", "Close premiere source file.", 905) +
          Line(9, "INFO ", "clean up resource:" + a, 1605) +
          Line(9, "INFO ", "Open File: " + a, 856) +  // opened again: a new source, not made again
          Line(9, "INFO ", "get source video:" + a, 2269) +
          Line(9, "INFO ", "Plugin is shutting down...", 163);
  const LogSummary summary = host_sim::Summarize(Parse(text));

  // Starts, shut-downs, opens, failed opens, frames, first tries failed, retries, retries failed,
  // releases, releases to make room, sources made again, link requests and responses.
  EXPECT_EQ(
      (std::vector<int64_t>{
          summary.start_ups, summary.shut_downs, summary.files_opened, summary.opens_failed,
          summary.frames_stitched, summary.first_tries_failed, summary.retries,
          summary.retries_failed, summary.sources_released, summary.sources_released_to_make_room,
          summary.sources_made_again, summary.link_requests, summary.link_responses}),
      (std::vector<int64_t>{1, 1, 3, 1, 8, 1, 1, 0, 2, 1, 1, 1, 1}));
  EXPECT_EQ(summary.link_request_types.at("get_media_info"), 1);
  EXPECT_THAT(
      host_sim::FormatSummary(summary),
      AllOf(HasSubstr("frames         8 stitched; 1 failed the first try, 1 retried, 0 "
                      "failed the retry too\n"),
            HasSubstr("median 30 ms, 95th percentile 100 ms, maximum 100 ms, over 6 frames"),
            HasSubstr("errors         2 lines\n                 1 x  PRSource failed.\n"
                      "                 1 x Request file path is invalid!\n")));

  const host_sim::TimePlot plot = host_sim::StitchingTimePlot(summary, "Plugin.log");
  EXPECT_EQ(plot.title, "Plugin.log");
  ASSERT_EQ(plot.series.size(), 2u);
  EXPECT_EQ(plot.series[0].label, "a.qvo");
  EXPECT_EQ(plot.series[0].x, (std::vector<double>{1, 2, 3, 4, 5}));
  EXPECT_EQ(plot.series[0].milliseconds, (std::vector<double>{10, 20, 30, 40, 100}));
  EXPECT_EQ(plot.series[1].label, "b.qvo");
  EXPECT_EQ(plot.series[1].x, (std::vector<double>{2}));
  const host_sim::TimePlot unnamed = host_sim::StitchingTimePlot(
      host_sim::Summarize(Parse(Line(1, "INFO ", "read frame consume:7", 2284))), "Plugin.log");
  EXPECT_EQ(unnamed.series.at(0).label, "Plugin.log") << "the log names no clip";
}

// How many pixels of `colour` the rectangle [left, right) x [top, bottom) holds.
int64_t Count(const RgbImage& image, Rgb colour, int32_t left, int32_t top, int32_t right,
              int32_t bottom) {
  int64_t count = 0;
  for (int32_t y = std::max(top, 0); y < std::min(bottom, image.height); ++y) {
    for (int32_t x = std::max(left, 0); x < std::min(right, image.width); ++x) {
      const uint8_t* pixel = &image.pixels[(static_cast<size_t>(y) * image.width + x) * 3];
      count += pixel[0] == colour.r && pixel[1] == colour.g && pixel[2] == colour.b;
    }
  }
  return count;
}

// The row, or with `column` the column, whose line of pixels holds the most of `colour`.
int32_t Fullest(const RgbImage& image, Rgb colour, bool column) {
  int32_t fullest = 0;
  int64_t most = -1;
  for (int32_t i = 0; i < (column ? image.width : image.height); ++i) {
    const int64_t count = column ? Count(image, colour, i, 0, i + 1, image.height)
                                 : Count(image, colour, 0, i, image.width, i + 1);
    if (count > most) std::tie(fullest, most) = std::make_pair(i, count);
  }
  return fullest;
}

// Separate runs of rows that hold `colour` between columns [left, right).
int32_t TextLines(const RgbImage& image, Rgb colour, int32_t left, int32_t right, int32_t top,
                  int32_t bottom) {
  int32_t lines = 0;
  bool inside = false;
  for (int32_t y = top; y < bottom; ++y) {
    const bool inked = Count(image, colour, left, y, right, y + 1) > 0;
    lines += inked && !inside;
    inside = inked;
  }
  return lines;
}

TEST(LogReportTest, PlotShowsTitleAxesNumbersPercentilesAndLegend) {
  host_sim::TimePlot plot{"a.qvo and b.qvo", "frame", {{"a.qvo", {}, {}}, {"b.qvo", {}, {}}}};
  for (int i = 0; i < 10; ++i) {  // 5, 10, ... 100 ms: median 50, 95th percentile 95
    for (int s = 0; s < 2; ++s) {
      plot.series[s].x.push_back(i);
      plot.series[s].milliseconds.push_back(10.0 * i + 5.0 * (s + 1));
    }
  }
  const RgbImage image = host_sim::DrawTimePlot(plot);
  const int32_t x_axis = Fullest(image, host_sim::kPlotInk, false);
  const int32_t y_axis = Fullest(image, host_sim::kPlotInk, true);
  const int32_t median = Fullest(image, host_sim::kPlotMedian, false);
  const int32_t percentile95 = Fullest(image, host_sim::kPlotPercentile95, false);
  const int32_t top = x_axis - 400;  // 0 to 100 ms over the plot's 400 pixels

  EXPECT_GT(Count(image, host_sim::kPlotInk, 0, 0, image.width, 30), 0) << "title";
  EXPECT_GE(TextLines(image, host_sim::kPlotInk, 0, y_axis - 2, top - 8, x_axis + 8), 6)
      << "0 to 100 in steps of 20";
  EXPECT_GT(Count(image, host_sim::kPlotInk, y_axis + 20, x_axis + 7, image.width, x_axis + 24), 0)
      << "frame numbers";
  EXPECT_NEAR(x_axis - median, 200, 3);
  EXPECT_NEAR(x_axis - percentile95, 380, 3);
  for (const auto& [colour, row] : {std::pair{host_sim::kPlotMedian, median},
                                    std::pair{host_sim::kPlotPercentile95, percentile95}}) {
    EXPECT_GT(Count(image, colour, 0, 0, image.width, image.height) -
                  Count(image, colour, 0, row, image.width, row + 2),
              100)
        << "the value beside its line";
  }
  for (size_t s = 0; s < 3; ++s) {
    SCOPED_TRACE(s);
    const Rgb colour = host_sim::PlotSeriesColour(s);
    EXPECT_EQ(Count(image, colour, 0, x_axis + 40, image.width, image.height) > 0, s < 2)
        << "in the legend";
    EXPECT_EQ(Count(image, colour, y_axis, top, image.width, x_axis) > 0, s < 2) << "the points";
  }

  plot.title.clear();
  EXPECT_EQ(Count(host_sim::DrawTimePlot(plot), host_sim::kPlotInk, 0, 0, image.width, 30), 0);
  EXPECT_EQ(host_sim::DrawTimePlot({"empty", "frame", {{"a.qvo", {}, {}}}}).width, 0);
}

}  // namespace
