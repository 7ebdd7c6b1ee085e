#include "qvo_host/check/check_worker.h"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <vector>

#include "command_server/command_server.h"
#include "host_sim/host_session.h"
#include "host_sim/plugin_module.h"
#include "platform/stitching_library.h"
#include "qvo_host/check/balance_checks.h"
#include "qvo_host/check/check_journal.h"
#include "qvo_host/check/check_plan.h"
#include "qvo_host/check/file_info_checks.h"
#include "qvo_host/check/frame_checks.h"
#include "qvo_host/check/link_checks.h"
#include "qvo_host/check/sound_checks.h"
#include "qvo_host/check/startup_checks.h"
#include "qvo_host/check/worker_fault_report.h"
#include "qvo_host/opened_clip.h"

namespace host_sim {
namespace {

struct Worker {
  const WorkerPlan& plan;
  CheckJournal& journal;
  ProfileLog log;
  command_server::CommandServer& server;
};

int64_t FrameCount(HostFile* file) {
  const imFileInfoRec8& info = *file->info().record();
  return file->TicksPerFrame() > 0 ? info.vidDuration / info.vidSampleSize : 0;
}

// Opens the clip and, when the plan says so, checks what the host learns of it, its frames and its
// sound. Null when it cannot be opened; otherwise it stays open for the command link.
std::unique_ptr<HostFile> OpenAndCheck(Worker& worker, HostSession& session, size_t index) {
  const PlannedClip& clip = worker.plan.clips[index];
  worker.journal.Stage("clip", std::to_string(index));
  std::string error;
  std::unique_ptr<HostFile> file;
  {
    CallScope call(&worker.journal, clip.path, "Create (opening and describing the file)");
    file = OpenDescribedClip(session, clip.path, &error);
  }
  if (clip.task != ClipTask::kCheck) return file;
  worker.journal.Add(clip.path + ": opened and described", file != nullptr ? "result 0" : error,
                     file != nullptr);
  if (file == nullptr) return nullptr;
  {
    CallScope call(&worker.journal, clip.path, "pixel formats");
    CheckFileInformation(file.get(), clip.path, &worker.journal);
  }
  CheckFrames(session, file.get(), clip.path,
              FramesToCheck(FrameCount(file.get()), worker.plan.random_frames), worker.log,
              &worker.journal);
  CheckSound(file.get(), clip.path, &worker.journal);
  return file;
}

void CloseAndShutDown(Worker& worker, HostSession& session,
                      std::vector<std::unique_ptr<HostFile>>* files) {
  worker.journal.Stage("finish");
  {
    CallScope call(&worker.journal, "", "closing the files");
    for (auto& file : *files) QuietAndClose(file.get());
    session.host().frame_cache().ExpireAll();
  }
  {
    // Twice the bound the check holds it to: a slow shut-down is the check's to fail.
    CallScope call(&worker.journal, "", "shut-down", 2 * kShutDownBound);
    CheckShutDown(session, &worker.journal);
  }
}

void RunSession(Worker& worker, const PluginModule& plugin) {
  HostSession session(plugin, kNewestInterfaceVersion);
  session.host().frames().set_guard_pages(true);
  bool started = false;
  {
    CallScope call(&worker.journal, "", "start-up");
    started = CheckStartUp(session, &worker.journal);
  }
  NameFaultsIn(platform::StitchingLibraryFileName());
  if (started) {
    std::vector<std::unique_ptr<HostFile>> files;
    std::vector<CheckedClip> clips;
    for (size_t i = 0; i < worker.plan.clips.size(); ++i) {
      if (worker.plan.clips[i].task == ClipTask::kSkip) continue;
      std::unique_ptr<HostFile> file = OpenAndCheck(worker, session, i);
      if (file == nullptr) continue;
      if (FrameCount(file.get()) > 0) {
        clips.push_back({worker.plan.clips[i].path, file.get()});
        worker.journal.ClipReady(i);
      }
      files.push_back(std::move(file));
    }
    worker.journal.Stage("command link");
    CheckCommandLink(session, worker.server, clips, worker.log, &worker.journal);
    CloseAndShutDown(worker, session, &files);
  }
  CheckBalance(session.host().Report(), &worker.journal);
}

}  // namespace

int RunCheckWorker(const std::string& plan_path) {
  WorkerPlan plan;
  if (!ReadPlan(plan_path, &plan)) {
    std::fprintf(stderr, "qvo-host: %s is not a check plan\n", plan_path.c_str());
    return 2;
  }
  CheckJournal journal(plan.journal_path, plan.thumbnail_folder);
  if (!journal.opened()) {
    std::fprintf(stderr, "qvo-host: cannot write %s\n", plan.journal_path.c_str());
    return 2;
  }
  ReportFaultsTo(journal);
  command_server::CommandServer server;
  journal.Add("command server for the check", "listening on port " + std::to_string(server.port()),
              server.WritePortFile(plan.profile_folder));
  Worker worker{plan, journal, ProfileLog(std::filesystem::u8path(plan.profile_folder)), server};
  worker.journal.Stage("start-up");
  std::unique_ptr<PluginModule> plugin;
  {
    CallScope call(&journal, "", "loading the plug-in");
    plugin = std::make_unique<PluginModule>(plan.plugin_path);
  }
  journal.Add("plug-in loaded", plugin->loaded() ? plan.plugin_path : plugin->error(),
              plugin->loaded());
  if (plugin->loaded()) {
    NameFaultsIn(std::filesystem::u8path(plan.plugin_path).filename().u8string());
    RunSession(worker, *plugin);
    worker.journal.Stage("unload");
    bool unloaded = false;
    {
      CallScope call(&journal, "", "unloading the plug-in");
      unloaded = plugin->Unload();
    }
    journal.Add("plug-in unloaded", unloaded ? "yes" : "no", unloaded);
  }
  server.Stop();
  journal.End();
  return 0;
}

}  // namespace host_sim
