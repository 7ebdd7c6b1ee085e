// qvo-host: a Premiere-like host on the command line. It loads the plug-in file as the host does
// and shows what the host learns from it.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "host_sim/file_inspection.h"
#include "host_sim/host_session.h"
#include "host_sim/info_report.h"
#include "host_sim/plugin_module.h"

namespace {

struct Options {
  std::string command;
  std::vector<std::string> files;
  bool json = false;
  std::string plugin_path = host_sim::DefaultPluginPath();
  int32_t interface_version = host_sim::kNewestInterfaceVersion;
};

void PrintUsage() {
  std::fprintf(stderr,
               "usage: qvo-host start-up [--plugin FILE] [--interface-version N]\n"
               "       qvo-host info FILE... [--json] [--plugin FILE] [--interface-version N]\n"
               "  start-up  loads the plug-in, starts it, prints its capabilities and the file\n"
               "            types it registers, and shuts it down\n"
               "  info      opens each project file as the host does and prints what the host\n"
               "            learns: picture, frame rate, duration, spherical layout, sound\n");
}

bool ParseInteger(const char* text, int32_t* value) {
  char* end = nullptr;
  long parsed = std::strtol(text, &end, 10);
  if (end == text || *end != '\0') return false;
  *value = static_cast<int32_t>(parsed);
  return true;
}

bool ParseOptions(int argc, char** argv, Options* options) {
  if (argc < 2) return false;
  options->command = argv[1];
  bool info = options->command == "info";
  if (!info && options->command != "start-up") return false;
  for (int i = 2; i < argc; ++i) {
    std::string argument = argv[i];
    bool has_value = i + 1 < argc;
    if (argument == "--plugin" && has_value) {
      options->plugin_path = argv[++i];
    } else if (argument == "--interface-version" && has_value) {
      if (!ParseInteger(argv[++i], &options->interface_version)) return false;
    } else if (argument == "--json" && info) {
      options->json = true;
    } else if (info && argument.rfind("--", 0) != 0) {
      options->files.push_back(argument);
    } else {
      return false;
    }
  }
  return !info || !options->files.empty();
}

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

// Only a run that left something behind says so.
void PrintLeftovers(const host_sim::HostReport& report) {
  if (report.clean()) return;
  std::fprintf(stderr, "qvo-host: the plug-in left this behind:\n%s", report.ToString().c_str());
}

void RunStartUp(const Options& options, host_sim::HostSession* session) {
  imImportInfoRec capabilities;
  std::printf("Start-up (interface version %d): result %d\n", options.interface_version,
              session->StartUp(&capabilities));
  PrintCapabilities(capabilities);
  int32_t last_result = 0;
  std::vector<host_sim::RegisteredFileType> types = session->FileTypes(&last_result);
  PrintFileTypes(types, last_result);
  std::printf("Shut-down: result %d\n", session->ShutDown());
}

// Returns true when every file was opened and described.
bool RunInfo(const Options& options, host_sim::HostSession* session) {
  imImportInfoRec capabilities;
  int32_t result = session->StartUp(&capabilities);
  if (result != imNoErr) {
    std::fprintf(stderr, "qvo-host: start-up failed with result %d\n", result);
    return false;
  }
  int32_t last_result = 0;
  session->FileTypes(&last_result);
  bool all_read = true;
  std::vector<host_sim::ClipFacts> clips;
  for (const std::string& file : options.files) {
    host_sim::ClipFacts facts;
    std::string error;
    if (!host_sim::InspectFile(*session, file, &facts, &error)) {
      std::fprintf(stderr, "qvo-host: %s: %s\n", file.c_str(), error.c_str());
      all_read = false;
      continue;
    }
    if (!options.json) std::printf("%s\n", host_sim::DescribeAsTable(facts).c_str());
    clips.push_back(facts);
  }
  session->ShutDown();
  if (options.json) std::printf("%s", host_sim::DescribeAsJson(clips).c_str());
  return all_read;
}

int Run(const Options& options) {
  host_sim::PluginModule plugin(options.plugin_path);
  if (!plugin.loaded()) {
    std::fprintf(stderr, "qvo-host: %s\n", plugin.error().c_str());
    return 1;
  }
  bool succeeded = true;
  {
    host_sim::HostSession session(plugin, options.interface_version);
    if (options.command == "start-up") {
      std::printf("Loaded %s\n", options.plugin_path.c_str());
      RunStartUp(options, &session);
    } else {
      succeeded = RunInfo(options, &session);
    }
    PrintLeftovers(session.host().Report());
  }
  bool unloaded = plugin.Unload();
  if (options.command == "start-up") std::printf("Unloaded: %s\n", unloaded ? "yes" : "no");
  return succeeded ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (!ParseOptions(argc, argv, &options)) {
    PrintUsage();
    return 2;
  }
  return Run(options);
}
