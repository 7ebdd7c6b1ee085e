// Turns one run of plugin_costs_bench (its JSON output, with repetitions) and the instructions its
// counted benchmarks executed under callgrind into the figures the plug-in's costs are held to:
// each from two benchmarks of the same run, their medians or their counts. Writes results.json,
// one row per goal ({"name", "measured", "goal", "met", "steady_within"}, and "time_based" where
// the goal's figure is counted), and prints a table.
//   bench_results RUN.json INSTRUCTIONS.txt RESULTS.json
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <rapidjson/document.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

namespace {

struct Medians {
  std::map<std::string, double> real_time_us;  // by benchmark name
  std::map<std::string, double> cpu_time_us;   // the asking threads' processor time
  std::map<std::string, double> counters;      // "name/counter"
};

double ToMicroseconds(double value, const std::string& unit) {
  if (unit == "ns") return value / 1000.0;
  if (unit == "ms") return value * 1000.0;
  if (unit == "s") return value * 1000000.0;
  return value;
}

// A benchmark's name without its own minimum time ("/min_time:0.500"), which says how long it ran,
// not what it measured.
std::string MeasureName(const std::string& run_name) {
  const size_t at = run_name.find("/min_time:");
  if (at == std::string::npos) return run_name;
  const size_t end = run_name.find('/', at + 1);
  return run_name.substr(0, at) + (end == std::string::npos ? "" : run_name.substr(end));
}

bool ReadMedians(const std::string& path, Medians* medians) {
  std::ifstream file(path);
  std::stringstream text;
  text << file.rdbuf();
  rapidjson::Document run;
  run.Parse(text.str().c_str());
  if (run.HasParseError() || !run.IsObject() || !run.HasMember("benchmarks")) return false;
  for (const auto& bench : run["benchmarks"].GetArray()) {
    if (!bench.HasMember("aggregate_name") || bench["aggregate_name"] != "median") continue;
    const std::string name = MeasureName(bench["run_name"].GetString());
    const std::string unit = bench["time_unit"].GetString();
    medians->real_time_us[name] = ToMicroseconds(bench["real_time"].GetDouble(), unit);
    medians->cpu_time_us[name] = ToMicroseconds(bench["cpu_time"].GetDouble(), unit);
    for (const auto& member : bench.GetObject()) {
      if (member.value.IsDouble() && member.name != "real_time" && member.name != "cpu_time") {
        medians->counters[name + "/" + member.name.GetString()] = member.value.GetDouble();
      }
    }
  }
  return true;
}

// Instructions of one request, by label ("uncached_frame/3840"), from lines of
// "LABEL/requests:N TOTAL", one per callgrind dump.
bool ReadInstructionCounts(const std::string& path, std::map<std::string, double>* per_request) {
  std::ifstream file(path);
  std::string name;
  double total = 0;
  while (file >> name >> total) {
    const size_t label_end = name.rfind("/requests:");
    if (label_end == std::string::npos) return false;
    const char* count = name.c_str() + label_end + std::strlen("/requests:");
    char* count_end = nullptr;
    const double requests = std::strtod(count, &count_end);
    if (count_end == count || *count_end != '\0' || requests <= 0) return false;
    per_request->emplace(name.substr(0, label_end), total / requests);
  }
  return file.eof() && !per_request->empty();
}

struct Row {
  std::string name;
  double measured;
  std::string goal;
  bool met;
  // How far one run's figure may lie from the median of three runs on a quiet machine.
  std::string steady_within;
  double time_based = NAN;  // the time-based figure, where the goal's figure is counted
};

// A run's medians by benchmark name and counts of one request by label, NaN when missing: a
// figure made from one is NaN too, and misses its goal.
struct Measures {
  const Medians& medians;
  const std::map<std::string, double>& instructions;

  double Time(const std::string& name) const { return Find(medians.real_time_us, name); }
  // For one thread that computes and waits on nothing, the processor time it took is its time
  // on a quiet machine, and stays so when other programs take turns on the processors.
  double ProcessorTime(const std::string& name) const { return Find(medians.cpu_time_us, name); }
  // A benchmark's counter ("name/counter"), the median of its repetitions.
  double Counter(const std::string& name) const { return Find(medians.counters, name); }
  double Instructions(const std::string& label) const {
    auto found = instructions.find(label);
    return found == instructions.end() ? NAN : found->second;
  }

  static double Find(const std::map<std::string, double>& times, const std::string& name) {
    auto found = times.find(name);
    return found == times.end() ? NAN : found->second;
  }
};

// The plug-in's extra instructions per uncached frame over those of one log line, the larger
// of the two sizes. A line's instructions are the same between frames and in a tight loop.
double CountedFrameLines(const Measures& m) {
  double lines = 0;
  for (const std::string width : {"3840", "7680"}) {
    const double extra =
        m.Instructions("uncached_frame/" + width) - m.Instructions("direct_frame/" + width);
    const double of_width = extra / m.Instructions("log_line");
    if (std::isnan(of_width)) return NAN;
    lines = std::max(lines, of_width);
  }
  return lines;
}

// The same in time, the unit a line as the frame path pays for it, written between frames of
// that size.
double TimedFrameLines(const Measures& m) {
  double lines = 0;
  for (const std::string width : {"3840", "7680"}) {
    const double extra = m.Time("BM_UncachedFrame/" + width + "/manual_time") -
                         m.Time("BM_DirectFrame/" + width + "/manual_time");
    lines = std::max(lines, extra / m.Time("BM_LogLineBetweenFrames/" + width + "/manual_time"));
  }
  return lines;
}

// The plug-in's extra instructions per 1024 sample frames at the direct path's own processor time
// per instruction, the larger of 2 and 6 channels: tens of microseconds over a count, both steady.
// The stand-in's sine arithmetic retires instructions faster than the calls, branches and lock the
// plug-in adds, so the figure is the low side of their cost; docs/performance.md gives the margin.
double CountedAudioMicroseconds(const Measures& m) {
  double microseconds = 0;
  for (const std::string channels : {"2", "6"}) {
    const double direct = m.Instructions("direct_audio/" + channels);
    const double extra = m.Instructions("plugin_audio/" + channels) - direct;
    const double of_channels =
        extra * m.ProcessorTime("BM_DirectAudio/" + channels + "/real_time") / direct;
    if (std::isnan(of_channels)) return NAN;
    microseconds = std::max(microseconds, of_channels);
  }
  return microseconds;
}

double TimedAudioMicroseconds(const Measures& m) {
  double microseconds = 0;
  for (const std::string channels : {"2", "6"}) {
    microseconds =
        std::max(microseconds, m.ProcessorTime("BM_PluginAudio/" + channels + "/real_time") -
                                   m.ProcessorTime("BM_DirectAudio/" + channels + "/real_time"));
  }
  return microseconds;
}

// The direct line's share of the plug-in's, the two written in turns; the smaller of 1 and 2
// threads.
double LogLineShare(const Measures& m) {
  return std::min(m.Counter("BM_LogLineTurns/threads:1/real_time/direct_share"),
                  m.Counter("BM_LogLineTurns/threads:2/real_time/direct_share"));
}

Row AtMost(std::string name, double measured, double goal, std::string unit,
           std::string steady_within = "15%") {
  return {std::move(name), measured, "<= " + std::to_string(goal).substr(0, 4) + unit,
          measured >= 0 && measured <= goal, std::move(steady_within)};
}

Row AtLeast(std::string name, double measured, double goal, std::string unit) {
  return {std::move(name), measured, ">= " + std::to_string(goal).substr(0, 4) + unit,
          measured >= goal, "15%"};
}

std::vector<Row> Rows(const Measures& m) {
  std::vector<Row> rows;
  rows.push_back(AtMost("uncached_frame_overhead", CountedFrameLines(m), 6, " lines"));
  rows.back().time_based = TimedFrameLines(m);
  rows.push_back(AtMost(
      "cached_frame_overhead",
      m.ProcessorTime("BM_CachedFrame/real_time") - m.ProcessorTime("BM_CacheLookup/real_time"),
      1.5, " us", "0.05 us"));
  rows.push_back(AtLeast("row_spreading", m.Counter("BM_RowSpreadingTurns/real_time/direct_share"),
                         0.8, " of memmove"));
  rows.push_back(AtMost("audio_overhead", CountedAudioMicroseconds(m), 1, " us", "0.05 us"));
  rows.back().time_based = TimedAudioMicroseconds(m);
  rows.push_back(AtLeast("log_line", LogLineShare(m), 0.8, " of direct"));
  rows.push_back(AtMost("command_burst",
                        m.Time("BM_CommandBurst/real_time") / m.Time("BM_ParseJsonBurst/real_time"),
                        1.5, "x"));
  rows.push_back(AtLeast(
      "thread_scaling",
      m.Time("BM_FramesOneThread/real_time") / m.Time("BM_FramesFourThreads/real_time"), 3.6, "x"));
  rows.push_back(AtMost("idle_link_memory",
                        m.Counter("BM_IdleLinkMemory/iterations:1/bytes_per_pass"), 64,
                        " bytes a pass"));
  return rows;
}

void PrintRow(const Row& row) {
  std::printf("%-26s %12.3f  %-20s %-4s %-14s", row.name.c_str(), row.measured, row.goal.c_str(),
              row.met ? "yes" : "NO", row.steady_within.c_str());
  if (!std::isnan(row.time_based)) std::printf(" %.3f", row.time_based);
  std::printf("\n");
}

void WriteRow(const Row& row, rapidjson::PrettyWriter<rapidjson::StringBuffer>* json) {
  json->StartObject();
  json->Key("name");
  json->String(row.name.c_str());
  json->Key("measured");
  if (std::isnan(row.measured)) {
    json->Null();
  } else {
    json->Double(row.measured);
  }
  json->Key("goal");
  json->String(row.goal.c_str());
  json->Key("met");
  json->Bool(row.met);
  json->Key("steady_within");
  json->String(row.steady_within.c_str());
  if (!std::isnan(row.time_based)) {
    json->Key("time_based");
    json->Double(row.time_based);
  }
  json->EndObject();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: bench_results RUN.json INSTRUCTIONS.txt RESULTS.json\n");
    return 2;
  }
  Medians medians;
  if (!ReadMedians(argv[1], &medians)) {
    std::fprintf(stderr, "bench_results: %s is not a benchmark run with repetitions\n", argv[1]);
    return 2;
  }
  std::map<std::string, double> instructions;
  if (!ReadInstructionCounts(argv[2], &instructions)) {
    std::fprintf(stderr, "bench_results: %s is not a list of \"LABEL/requests:N TOTAL\" lines\n",
                 argv[2]);
    return 2;
  }
  rapidjson::StringBuffer text;
  rapidjson::PrettyWriter<rapidjson::StringBuffer> json(text);
  json.StartArray();
  bool all_met = true;
  std::printf("%-26s %12s  %-20s %-4s %-14s %s\n", "name", "measured", "goal", "met",
              "steady within", "time-based");
  for (const Row& row : Rows({medians, instructions})) {
    PrintRow(row);
    WriteRow(row, &json);
    all_met = all_met && row.met;
  }
  json.EndArray();
  std::ofstream(argv[3]) << text.GetString() << "\n";
  return all_met ? 0 : 1;
}
