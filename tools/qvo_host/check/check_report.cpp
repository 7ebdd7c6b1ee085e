#include "qvo_host/check/check_report.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sstream>

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

namespace host_sim {
namespace {

using JsonWriter = rapidjson::PrettyWriter<rapidjson::StringBuffer>;

void WriteTimes(const char* name, const std::vector<double>& values, JsonWriter* writer) {
  writer->Key(name);
  writer->StartObject();
  writer->Key("frames");
  writer->Uint64(values.size());
  writer->Key("median_ms");
  writer->Double(Percentile(values, 50));
  writer->Key("p95_ms");
  writer->Double(Percentile(values, 95));
  writer->Key("max_ms");
  writer->Double(Percentile(values, 100));
  writer->Key("each_ms");
  writer->StartArray();
  for (double value : values) writer->Double(value);
  writer->EndArray();
  writer->EndObject();
}

// A table cell: the pipe would end it.
std::string Cell(std::string text) {
  std::replace(text.begin(), text.end(), '|', '/');
  return text;
}

}  // namespace

void CheckReport::Add(const std::string& what, const std::string& figure, bool passed) {
  auto earlier = std::find_if(lines_.begin(), lines_.end(),
                              [&what](const CheckLine& line) { return line.what == what; });
  if (earlier != lines_.end() && (passed || !earlier->passed)) return;
  const CheckLine line{what, figure, passed, true};
  if (earlier != lines_.end()) {
    *earlier = line;
  } else {
    lines_.push_back(line);
  }
  std::printf("%s\n", FormatCheckLine(line).c_str());
  std::fflush(stdout);
}

void CheckReport::AddNotRun(const std::string& what, const std::string& why) {
  lines_.push_back({what, why, false, false});
  std::printf("%s\n", FormatCheckLine(lines_.back()).c_str());
  std::fflush(stdout);
}

bool CheckReport::AllPassed() const {
  return !lines_.empty() && std::all_of(lines_.begin(), lines_.end(),
                                        [](const CheckLine& line) { return line.passed; });
}

std::string FormatCheckLine(const CheckLine& line) {
  return std::string(!line.ran     ? "NOT RUN"
                     : line.passed ? "PASS"
                                   : "FAIL") +
         "  " + line.what + "  " + line.figure;
}

double Percentile(std::vector<double> values, int p) {
  if (values.empty()) return 0;
  std::sort(values.begin(), values.end());
  const double rank = std::ceil(p / 100.0 * static_cast<double>(values.size()));
  const size_t index = rank < 1 ? 0 : static_cast<size_t>(rank) - 1;
  return values[std::min(index, values.size() - 1)];
}

std::string CheckReportJson(const CheckReport& report) {
  rapidjson::StringBuffer buffer;
  JsonWriter writer(buffer);
  writer.StartObject();
  writer.Key("passed");
  writer.Bool(report.AllPassed());
  writer.Key("checks");
  writer.StartArray();
  for (const CheckLine& line : report.lines()) {
    writer.StartObject();
    writer.Key("what");
    writer.String(line.what.c_str());
    writer.Key("figure");
    writer.String(line.figure.c_str());
    writer.Key("passed");
    writer.Bool(line.passed);
    writer.Key("result");
    writer.String(!line.ran ? "not run" : line.passed ? "pass" : "fail");
    writer.EndObject();
  }
  writer.EndArray();
  writer.Key("stitching");
  writer.StartObject();
  WriteTimes("host", report.times().host_ms, &writer);
  WriteTimes("library", report.times().library_ms, &writer);
  writer.EndObject();
  writer.EndObject();
  return std::string(buffer.GetString(), buffer.GetSize()) + "\n";
}

std::string CheckReportMarkdown(const CheckReport& report) {
  std::ostringstream out;
  const auto& lines = report.lines();
  const auto failed =
      std::count_if(lines.begin(), lines.end(), [](const CheckLine& line) { return !line.passed; });
  out << "# qvo-host check\n\n";
  out << (report.AllPassed() ? "**Passed**" : "**Failed**") << ": " << lines.size() - failed
      << " of " << lines.size() << " checks passed.\n\n";
  const auto first_failure =
      std::find_if(lines.begin(), lines.end(), [](const CheckLine& line) { return !line.passed; });
  if (first_failure != lines.end()) {
    out << "First failure: **" << first_failure->what << "**: " << first_failure->figure
        << "\n\n## Failed or not run\n\n";
    for (const CheckLine& line : lines) {
      if (!line.passed) {
        out << "- " << (line.ran ? "" : "not run: ") << line.what << ": " << line.figure << "\n";
      }
    }
    out << "\n";
  }
  out << "## Every check\n\n| result | check | figure |\n|---|---|---|\n";
  for (const CheckLine& line : lines) {
    out << "| "
        << (!line.ran     ? "not run"
            : line.passed ? "pass"
                          : "**FAIL**")
        << " | " << Cell(line.what) << " | " << Cell(line.figure) << " |\n";
  }
  out << "\n`contact_sheet.png` shows the checked frames, `stitching_time.png` the stitching time "
         "of every frame, `Plugin.log` is the plug-in's log of the run.\n";
  return out.str();
}

}  // namespace host_sim
