// qvo-host: a Premiere-like host on the command line. It loads the plug-in file as the host does,
// shows what the host learns from it, and writes out the frames and sound it delivers.
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "host_sim/host_session.h"
#include "host_sim/plugin_module.h"
#include "platform/command_line.h"
#include "qvo_host/audio_command.h"
#include "qvo_host/check/check_command.h"
#include "qvo_host/check/check_plan.h"
#include "qvo_host/check/check_worker.h"
#include "qvo_host/command_line.h"
#include "qvo_host/file_inspection.h"
#include "qvo_host/frames_command.h"
#include "qvo_host/info_report.h"
#include "qvo_host/leftovers_warning.h"
#include "qvo_host/log_report_command.h"
#include "qvo_host/serve_command.h"

namespace {

std::string JoinExtensions(const std::vector<std::string>& extensions) {
  std::string joined;
  for (const std::string& extension : extensions) {
    if (!joined.empty()) joined += ", ";
    joined += extension;
  }
  return joined;
}

void PrintCapabilities(const imImportInfoRec& capabilities) {
  const struct {
    const char* name;
    int32_t value;
  } words[] = {
      {"canSave", capabilities.canSave},
      {"canDelete", capabilities.canDelete},
      {"hasSetup", capabilities.hasSetup},
      {"dontCache", capabilities.dontCache},
      {"setupOnDblClk", capabilities.setupOnDblClk},
      {"keepLoaded", capabilities.keepLoaded},
      {"priority", capabilities.priority},
      {"canCalcSizes", capabilities.canCalcSizes},
      {"canTrim", capabilities.canTrim},
      {"avoidAudioConform", capabilities.avoidAudioConform},
  };
  std::printf("Capabilities:\n");
  for (const auto& word : words) std::printf("  %-18s %d\n", word.name, word.value);
}

void PrintFileTypes(const std::vector<host_sim::RegisteredFileType>& types, int32_t last_result) {
  std::printf("File types:\n");
  for (const auto& type : types) {
    std::printf("  0x%08X  %s (%s), extensions: %s\n", static_cast<unsigned>(type.file_type),
                type.name.c_str(), type.short_name.c_str(),
                JoinExtensions(type.extensions).c_str());
  }
  std::printf("  (list ended with result %d)\n", last_result);
}

void PrintLeftovers(const host_sim::HostReport& report) {
  std::fputs(host_sim::LeftoversWarning(report).c_str(), stderr);
}

void RunStartUp(const host_sim::CommandLine& line, host_sim::HostSession* session) {
  imImportInfoRec capabilities;
  std::printf("Start-up (interface version %d): result %d\n", line.interface_version,
              session->StartUp(&capabilities));
  PrintCapabilities(capabilities);
  int32_t last_result = 0;
  std::vector<host_sim::RegisteredFileType> types = session->FileTypes(&last_result);
  PrintFileTypes(types, last_result);
  std::printf("Shut-down: result %d\n", session->ShutDown());
}

// Start-up and the file-type questions, which come before the host touches any file.
bool StartHost(host_sim::HostSession* session) {
  imImportInfoRec capabilities;
  int32_t result = session->StartUp(&capabilities);
  if (result != imNoErr) {
    std::fprintf(stderr, "qvo-host: start-up failed with result %d\n", result);
    return false;
  }
  int32_t last_result = 0;
  session->FileTypes(&last_result);
  return true;
}

// Returns true when every file was opened and described.
bool RunInfo(const host_sim::CommandLine& line, host_sim::HostSession* session) {
  bool all_read = true;
  std::vector<host_sim::ClipFacts> clips;
  for (const std::string& file : line.files) {
    host_sim::ClipFacts facts;
    std::string error;
    if (!host_sim::InspectFile(*session, file, &facts, &error)) {
      std::fprintf(stderr, "qvo-host: %s: %s\n", file.c_str(), error.c_str());
      all_read = false;
      continue;
    }
    if (!line.json) std::printf("%s\n", host_sim::DescribeAsTable(facts).c_str());
    clips.push_back(facts);
  }
  if (line.json) std::printf("%s", host_sim::DescribeAsJson(clips).c_str());
  return all_read;
}

bool RunFrames(const host_sim::CommandLine& line, host_sim::HostSession* session) {
  host_sim::FramesExport request;
  request.file = line.files[0];
  request.first_frame = line.first_frame;
  request.end_frame = line.end_frame;
  request.pixel_format = line.pixel_format;
  request.folder = line.out;
  return host_sim::ExportFrames(*session, request);
}

// Every command but start-up: the host started, the command's work, the plug-in shut down.
bool RunOnStartedHost(const host_sim::CommandLine& line, host_sim::HostSession* session) {
  if (!StartHost(session)) return false;
  bool succeeded = false;
  if (line.command == "info") {
    succeeded = RunInfo(line, session);
  } else if (line.command == "frames") {
    succeeded = RunFrames(line, session);
  } else if (line.command == "serve") {
    succeeded = host_sim::ServeClips(*session, line.files, line.seconds);
  } else {
    succeeded = host_sim::ExportAudio(*session, line.files[0], line.out);
  }
  session->ShutDown();
  return succeeded;
}

int Run(const host_sim::CommandLine& line) {
  host_sim::PluginModule plugin(line.plugin_path);
  if (!plugin.loaded()) {
    std::fprintf(stderr, "qvo-host: %s\n", plugin.error().c_str());
    return 1;
  }
  bool succeeded = true;
  {
    host_sim::HostSession session(plugin, line.interface_version);
    if (line.command == "start-up") {
      std::printf("Loaded %s\n", line.plugin_path.c_str());
      RunStartUp(line, &session);
    } else {
      succeeded = RunOnStartedHost(line, &session);
    }
    PrintLeftovers(session.host().Report());
  }
  bool unloaded = plugin.Unload();
  if (line.command == "start-up") std::printf("Unloaded: %s\n", unloaded ? "yes" : "no");
  return succeeded ? 0 : 1;
}

int RunCheck(const host_sim::CommandLine& line) {
  host_sim::CheckOptions options;
  options.plugin_path = line.plugin_path;
  options.files = line.files;
  options.random_frames = line.random_frames;
  options.report_folder = line.report;
  options.call_timeout = std::chrono::seconds(line.call_timeout_seconds);
  const std::string problem = host_sim::InputProblem(options);
  if (!problem.empty()) {
    std::fprintf(stderr, "qvo-host: %s\n", problem.c_str());
    return 2;
  }
  return host_sim::RunCheck(options).AllPassed() ? 0 : 1;
}

}  // namespace

// The arguments as UTF-8 from here on, whatever the system's code page.
int main(int argc, char** argv) {
  std::vector<std::string> arguments = platform::Utf8CommandLine(argc, argv);
  std::vector<char*> utf8_argv;
  for (std::string& argument : arguments) utf8_argv.push_back(&argument[0]);
  if (utf8_argv.size() == 3 && std::string(utf8_argv[1]) == host_sim::kCheckWorkerCommand) {
    return host_sim::RunCheckWorker(utf8_argv[2]);
  }
  host_sim::CommandLine line;
  if (!host_sim::ParseCommandLine(static_cast<int>(utf8_argv.size()), utf8_argv.data(), &line)) {
    host_sim::PrintUsage();
    return 2;
  }
  if (line.command == "log-report") return host_sim::ReportLogs(line.files, line.out) ? 0 : 1;
  if (line.command == "check") return RunCheck(line);
  return Run(line);
}
