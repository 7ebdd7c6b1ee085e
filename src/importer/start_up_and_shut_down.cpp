#include "importer/start_up_and_shut_down.h"

#include <system_error>
#include <thread>

#include "command_link/command_client.h"
#include "logging/log_sites.h"
#include "logging/plugin_log.h"
#include "open_files/context_registry.h"
#include "platform/sockets.h"
#include "platform/stitching_library.h"

namespace {

// Started at start-up, joined at shut-down; never joined at library unload, where Windows holds
// the loader lock.
std::thread command_thread;

void FillCapabilities(int32_t interface_version, imImportInfoRec* capabilities) {
  capabilities->setupOnDblClk = 0;
  capabilities->canSave = 1;
  capabilities->canDelete = 1;
  capabilities->dontCache = 0;
  capabilities->hasSetup = 1;
  capabilities->keepLoaded = 0;
  capabilities->priority = 0;
  capabilities->canTrim = 1;
  capabilities->canCalcSizes = 1;
  if (interface_version >= 6) capabilities->avoidAudioConform = 1;
}

}  // namespace

int32_t StartUp(const imStdParms* std_parms, imImportInfoRec* capabilities,
                bool (*start_sockets)()) {
  if (!start_sockets()) {
    PluginLog::Get()->Write(kLogError, kLogSource, log_site::kWsaStartupFailure,
                            "WSAStartup() failure");
  }
  const platform::StitchingLibraryLoad stitcher = platform::LoadStitchingLibrary();
  if (!stitcher.loaded) {
    // The plug-in stays loaded and answers; every open fails until the library is in place.
    PluginLog::Get()->Write(kLogError, kLogSource, log_site::kStitchingLibraryMissing,
                            "Stitching library could not be loaded from %s (error %lu)",
                            stitcher.path.c_str(), stitcher.error);
  }
  try {
    command_thread = std::thread(CommandClient);
  } catch (const std::system_error& error) {
    PluginLog::Get()->Write(kLogError, kLogSource, log_site::kCommandThreadStartFailure,
                            "Command thread could not start: %s", error.what());
  }
  FillCapabilities(std_parms->imInterfaceVer, capabilities);
  return imNoErr;
}

int32_t ShutDown() {
  PluginLog::Get()->Write(kLogInfo, kLogSource, log_site::kShuttingDown,
                          "Plugin is shutting down...");
  StopFlag = true;
  if (command_thread.joinable()) command_thread.join();
  ContextRegistry::Instance().Stop();
  platform::StopSockets();
  return imNoErr;
}
