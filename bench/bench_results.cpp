// Turns one run of plugin_costs_bench (its JSON output, with repetitions) into the ratios the
// plug-in's costs are held to: each from the medians of two benchmarks of the same run. Writes
// results.json, one row per goal ({"name", "measured", "goal", "met"}), and prints a table.
//   bench_results RUN.json RESULTS.json
#include <algorithm>
#include <cstdio>
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
  std::map<std::string, double> counters;      // "name/counter"
};

double ToMicroseconds(double value, const std::string& unit) {
  if (unit == "ns") return value / 1000.0;
  if (unit == "ms") return value * 1000.0;
  if (unit == "s") return value * 1000000.0;
  return value;
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
    const std::string name = bench["run_name"].GetString();
    medians->real_time_us[name] =
        ToMicroseconds(bench["real_time"].GetDouble(), bench["time_unit"].GetString());
    for (const auto& member : bench.GetObject()) {
      if (member.value.IsDouble() && member.name != "real_time" && member.name != "cpu_time") {
        medians->counters[name + "/" + member.name.GetString()] = member.value.GetDouble();
      }
    }
  }
  return true;
}

struct Row {
  std::string name;
  double measured;
  std::string goal;
  bool met;
};

std::vector<Row> Rows(const Medians& m) {
  auto t = [&m](const std::string& name) {
    auto found = m.real_time_us.find(name);
    return found == m.real_time_us.end() ? -1.0 : found->second;
  };
  std::vector<Row> rows;
  auto add_at_most = [&rows](std::string name, double measured, double goal, std::string unit) {
    rows.push_back({std::move(name), measured, "<= " + std::to_string(goal).substr(0, 4) + unit,
                    measured >= 0 && measured <= goal});
  };
  auto add_at_least = [&rows](std::string name, double measured, double goal, std::string unit) {
    rows.push_back({std::move(name), measured, ">= " + std::to_string(goal).substr(0, 4) + unit,
                    measured >= goal});
  };
  // The unit is a line as the frame path pays for it, written between frames of that size.
  double frame_lines = 0;
  for (const std::string width : {"3840", "7680"}) {
    const double extra = t("BM_UncachedFrame/" + width + "/manual_time") -
                         t("BM_DirectFrame/" + width + "/manual_time");
    frame_lines =
        std::max(frame_lines, extra / t("BM_LogLineBetweenFrames/" + width + "/manual_time"));
  }
  add_at_most("uncached_frame_overhead", frame_lines, 6, " lines");
  add_at_most("cached_frame_overhead",
              t("BM_CachedFrame/real_time") - t("BM_CacheLookup/real_time"), 1.5, " us");
  add_at_least("row_spreading", t("BM_Memmove/real_time") / t("BM_RowSpreading/real_time"), 0.8,
               " of memmove");
  double audio = 0;
  for (const char* channels : {"2", "6"}) {
    audio = std::max(audio, t(std::string("BM_PluginAudio/") + channels + "/real_time") -
                                t(std::string("BM_DirectAudio/") + channels + "/real_time"));
  }
  add_at_most("audio_overhead", audio, 1, " us");
  double log_share = 1e9;
  for (const char* threads : {"1", "2"}) {
    log_share =
        std::min(log_share, t(std::string("BM_DirectLogLine/real_time/threads:") + threads) /
                                t(std::string("BM_LogLine/real_time/threads:") + threads));
  }
  add_at_least("log_line", log_share, 0.8, " of direct");
  add_at_most("command_burst", t("BM_CommandBurst/real_time") / t("BM_ParseJsonBurst/real_time"),
              1.5, "x");
  add_at_least("thread_scaling",
               t("BM_FramesOneThread/real_time") / t("BM_FramesFourThreads/real_time"), 3.6, "x");
  auto counter = m.counters.find("BM_IdleLinkMemory/iterations:1/bytes_per_pass");
  add_at_most("idle_link_memory", counter == m.counters.end() ? -1 : counter->second, 64,
              " bytes a pass");
  return rows;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: bench_results RUN.json RESULTS.json\n");
    return 2;
  }
  Medians medians;
  if (!ReadMedians(argv[1], &medians)) {
    std::fprintf(stderr, "bench_results: %s is not a benchmark run with repetitions\n", argv[1]);
    return 2;
  }
  rapidjson::StringBuffer text;
  rapidjson::PrettyWriter<rapidjson::StringBuffer> json(text);
  json.StartArray();
  bool all_met = true;
  std::printf("%-26s %12s  %-20s %s\n", "name", "measured", "goal", "met");
  for (const Row& row : Rows(medians)) {
    std::printf("%-26s %12.3f  %-20s %s\n", row.name.c_str(), row.measured, row.goal.c_str(),
                row.met ? "yes" : "NO");
    json.StartObject();
    json.Key("name");
    json.String(row.name.c_str());
    json.Key("measured");
    json.Double(row.measured);
    json.Key("goal");
    json.String(row.goal.c_str());
    json.Key("met");
    json.Bool(row.met);
    json.EndObject();
    all_met = all_met && row.met;
  }
  json.EndArray();
  std::ofstream(argv[2]) << text.GetString() << "\n";
  return all_met ? 0 : 1;
}
