#include "qvo_host/command_line.h"

#include <cstdio>
#include <cstdlib>

#include "host_sim/plugin_module.h"

namespace host_sim {
namespace {

bool ParseInteger(const std::string& text, int32_t* value) {
  char* end = nullptr;
  long parsed = std::strtol(text.c_str(), &end, 10);
  if (end == text.c_str() || *end != '\0') return false;
  *value = static_cast<int32_t>(parsed);
  return true;
}

// "A:B" with 0 <= A < B.
bool ParseRange(const std::string& text, CommandLine* line) {
  size_t colon = text.find(':');
  return colon != std::string::npos && ParseInteger(text.substr(0, colon), &line->first_frame) &&
         ParseInteger(text.substr(colon + 1), &line->end_frame) && line->first_frame >= 0 &&
         line->first_frame < line->end_frame;
}

bool ParseFormat(const std::string& text, CommandLine* line) {
  if (text == "yuv") {
    line->pixel_format = PrPixelFormat_YUV_420_MPEG4_FRAME_PICTURE_PLANAR_8u_709_FullRange;
  } else if (text == "bgra") {
    line->pixel_format = PrPixelFormat_BGRA_4444_8u;
  } else {
    return false;
  }
  return true;
}

// One option of `line->command` at argv[*i], moving *i past its value.
bool ParseOption(int argc, char** argv, int* i, CommandLine* line) {
  const std::string argument = argv[*i];
  const bool has_value = *i + 1 < argc;
  const bool frames = line->command == "frames";
  const bool exports = frames || line->command == "audio";
  if (argument == "--plugin" && has_value) {
    line->plugin_path = argv[++*i];
  } else if (argument == "--interface-version" && has_value) {
    return ParseInteger(argv[++*i], &line->interface_version);
  } else if (argument == "--json" && line->command == "info") {
    line->json = true;
  } else if (argument == "--range" && has_value && frames) {
    return ParseRange(argv[++*i], line);
  } else if (argument == "--format" && has_value && frames) {
    return ParseFormat(argv[++*i], line);
  } else if (argument == "--seconds" && has_value && line->command == "serve") {
    return ParseInteger(argv[++*i], &line->seconds) && line->seconds > 0;
  } else if (argument == "--out" && has_value && exports) {
    line->out = argv[++*i];
  } else if (argument == "--frames" && has_value && line->command == "check") {
    return ParseInteger(argv[++*i], &line->random_frames) && line->random_frames >= 0;
  } else if (argument == "--report" && has_value && line->command == "check") {
    line->report = argv[++*i];
  } else if (argument == "--png" && has_value && line->command == "log-report") {
    line->out = argv[++*i];
  } else if (line->command != "start-up" && argument.rfind("--", 0) != 0) {
    line->files.push_back(argument);
  } else {
    return false;
  }
  return true;
}

}  // namespace

bool ParseCommandLine(int argc, char** argv, CommandLine* line) {
  if (argc < 2) return false;
  line->command = argv[1];
  line->plugin_path = DefaultPluginPath();
  const std::string& command = line->command;
  if (command != "start-up" && command != "info" && command != "frames" && command != "audio" &&
      command != "serve" && command != "check" && command != "log-report") {
    return false;
  }
  for (int i = 2; i < argc; ++i) {
    if (!ParseOption(argc, argv, &i, line)) return false;
  }
  if (command == "info" || command == "serve" || command == "check" || command == "log-report") {
    return !line->files.empty();
  }
  if (command == "frames")
    return line->files.size() == 1 && !line->out.empty() && line->end_frame > 0;
  if (command == "audio") return line->files.size() == 1 && !line->out.empty();
  return true;
}

void PrintUsage() {
  std::fprintf(
      stderr,
      "usage: qvo-host start-up [--plugin FILE] [--interface-version N]\n"
      "       qvo-host info FILE... [--json] [--plugin FILE] [--interface-version N]\n"
      "       qvo-host frames FILE --range A:B --out DIR [--format yuv|bgra] [--plugin FILE]\n"
      "       qvo-host audio FILE --out FILE.wav [--plugin FILE]\n"
      "       qvo-host serve FILE... [--seconds N] [--plugin FILE]\n"
      "       qvo-host check FILE... [--frames N] [--report DIR] [--plugin FILE]\n"
      "       qvo-host log-report Plugin.log [Plugin.YYYY_MM_DD_HH_MM_SS.log...] [--png FILE]\n"
      "  start-up  loads the plug-in, starts it, prints its capabilities and the file\n"
      "            types it registers, and shuts it down\n"
      "  info      opens each project file as the host does and prints what the host\n"
      "            learns: picture, frame rate, duration, spherical layout, sound\n"
      "  frames    asks for frames A to B-1 (planar YUV 4:2:0 by default) and writes each as\n"
      "            DIR/frame_NNNNN.png, with DIR/contact_sheet.png showing them all\n"
      "  audio     reads the whole sound, one second per request, into a 32-bit float WAV\n"
      "  serve     keeps the files open for N seconds (default 20), showing frame 0 of each\n"
      "            every 200 ms, and says when one is stitched again after a parameter\n"
      "            update from the command server\n"
      "  check     checks, file by file, what a host relies on: start-up and shut-down, file\n"
      "            information, frames (every row written, nothing outside the buffer, the\n"
      "            same bytes twice, repeats from the cache) at the first, middle, last and N\n"
      "            random frames (default 4), sound, stitching time, the command link, handles\n"
      "            and suites given back, Plugin.log; one PASS or FAIL line per check, exit\n"
      "            code 0 only when all pass; --report DIR writes report.json, report.md, a\n"
      "            contact sheet, a plot of stitching time and the run's Plugin.log\n"
      "  log-report  tells what a user's Plugin.log and its rotated files say happened:\n"
      "            files, frames, stitching time per frame, retries, sources released and\n"
      "            made again, command-link requests, errors; --png plots the stitching\n"
      "            time of every frame over the log's time\n");
}

}  // namespace host_sim
