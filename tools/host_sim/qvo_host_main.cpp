// qvo-host: a Premiere-like host on the command line. It loads the plug-in file as the host does
// and shows what the host learns from it.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "host_sim/host_session.h"
#include "host_sim/plugin_module.h"

namespace {

struct Options {
  std::string command;
  std::string plugin_path = host_sim::DefaultPluginPath();
  int32_t interface_version = 23;
};

void PrintUsage() {
  std::fprintf(stderr,
               "usage: qvo-host start-up [--plugin FILE] [--interface-version N]\n"
               "  start-up  loads the plug-in, starts it, prints its capabilities and the file\n"
               "            types it registers, and shuts it down\n");
}

bool ParseOptions(int argc, char** argv, Options* options) {
  if (argc < 2) return false;
  options->command = argv[1];
  for (int i = 2; i < argc; ++i) {
    std::string flag = argv[i];
    if (i + 1 >= argc) return false;
    if (flag == "--plugin") {
      options->plugin_path = argv[++i];
    } else if (flag == "--interface-version") {
      options->interface_version = std::atoi(argv[++i]);
    } else {
      return false;
    }
  }
  return options->command == "start-up";
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
                type.name.c_str(), type.short_name.c_str(), type.extensions.c_str());
  }
  std::printf("  (list ended with result %d)\n", last_result);
}

int RunStartUp(const Options& options) {
  host_sim::PluginModule plugin(options.plugin_path);
  if (!plugin.loaded()) {
    std::fprintf(stderr, "qvo-host: %s\n", plugin.error().c_str());
    return 1;
  }
  std::printf("Loaded %s\n", options.plugin_path.c_str());
  host_sim::HostSession session(plugin, options.interface_version);
  imImportInfoRec capabilities;
  std::printf("Start-up (interface version %d): result %d\n", options.interface_version,
              session.StartUp(&capabilities));
  PrintCapabilities(capabilities);
  int32_t last_result = 0;
  std::vector<host_sim::RegisteredFileType> types = session.FileTypes(&last_result);
  PrintFileTypes(types, last_result);
  std::printf("Shut-down: result %d\n", session.ShutDown());
  std::printf("Unloaded: %s\n", plugin.Unload() ? "yes" : "no");
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (!ParseOptions(argc, argv, &options)) {
    PrintUsage();
    return 2;
  }
  return RunStartUp(options);
}
