#include "qvo_host/check_command.h"

#include <memory>
#include <system_error>

#include "command_server/command_server.h"
#include "host_sim/host_session.h"
#include "host_sim/plugin_module.h"
#include "qvo_host/balance_checks.h"
#include "qvo_host/check_profile.h"
#include "qvo_host/check_report_files.h"
#include "qvo_host/file_info_checks.h"
#include "qvo_host/frame_checks.h"
#include "qvo_host/link_checks.h"
#include "qvo_host/log_checks.h"
#include "qvo_host/opened_clip.h"
#include "qvo_host/sound_checks.h"
#include "qvo_host/startup_checks.h"

namespace host_sim {
namespace {

// Opens and describes every file, checking what the host learns of it, its frames and its sound.
// The files stay open for the command link's checks.
std::vector<std::unique_ptr<HostFile>> CheckFiles(HostSession& session, const CheckOptions& options,
                                                  const CheckProfile& profile,
                                                  std::vector<CheckedClip>* clips,
                                                  CheckReport* report) {
  std::vector<std::unique_ptr<HostFile>> files;
  for (const std::string& name : options.files) {
    std::string error;
    std::unique_ptr<HostFile> file = OpenDescribedClip(session, name, &error);
    report->Add(name + ": opened and described", file != nullptr ? "result 0" : error,
                file != nullptr);
    if (file == nullptr) continue;
    CheckFileInformation(file.get(), name, report);
    const int64_t frames = file->TicksPerFrame() > 0 ? file->info().record()->vidDuration /
                                                           file->info().record()->vidSampleSize
                                                     : 0;
    CheckFrames(session, file.get(), name, FramesToCheck(frames, options.random_frames), profile,
                report);
    CheckSound(file.get(), name, report);
    if (frames > 0) clips->push_back({name, file.get()});
    files.push_back(std::move(file));
  }
  return files;
}

void CheckSession(const PluginModule& plugin, const CheckOptions& options,
                  const CheckProfile& profile, command_server::CommandServer& server,
                  CheckReport* report) {
  HostSession session(plugin, kNewestInterfaceVersion);
  if (CheckStartUp(session, report)) {
    std::vector<CheckedClip> clips;
    std::vector<std::unique_ptr<HostFile>> files =
        CheckFiles(session, options, profile, &clips, report);
    CheckCommandLink(session, server, clips, profile, report);
    for (auto& file : files) QuietAndClose(file.get());
    session.host().frame_cache().ExpireAll();
    CheckShutDown(session, report);
  }
  CheckBalance(session.host().Report(), report);
}

}  // namespace

CheckReport RunCheck(const CheckOptions& options) {
  CheckReport report;
  report.keep_thumbnails = !options.report_folder.empty();
  CheckProfile profile;
  command_server::CommandServer server;
  report.Add("command server for the check", "listening on port " + std::to_string(server.port()),
             server.WritePortFile(profile.home()));
  PluginModule plugin(options.plugin_path);
  report.Add("plug-in loaded", plugin.loaded() ? options.plugin_path : plugin.error(),
             plugin.loaded());
  if (plugin.loaded()) {
    CheckSession(plugin, options, profile, server, &report);
    const bool unloaded = plugin.Unload();
    report.Add("plug-in unloaded", unloaded ? "yes" : "no", unloaded);
  }
  server.Stop();
  CheckLog(profile, &report);
  if (!options.report_folder.empty()) {
    report.Add("report written", options.report_folder,
               WriteCheckReport(report, profile, options.report_folder));
  }
  return report;
}

}  // namespace host_sim
