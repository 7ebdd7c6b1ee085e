#include "command_link/command_client.h"

#include <chrono>
#include <thread>

#include "logging/log_sites.h"
#include "logging/plugin_log.h"

std::atomic<bool> StopFlag{false};

namespace {

std::atomic<int32_t> pause_ms{kCommandLoopPauseMs};

}  // namespace

void SetCommandLoopPauseForTesting(int32_t milliseconds) { pause_ms = milliseconds; }

void CommandClient() {
  PluginLog::Get()->Write(kLogInfo, kLogSource, log_site::kCommandThreadStart,
                          "Start thread to read command from server...");
  while (!StopFlag.load()) {
    if (!StopFlag.load()) std::this_thread::sleep_for(std::chrono::milliseconds(pause_ms.load()));
  }
}
