#include "qvo_host/check/check_command.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include "platform/child_process.h"
#include "qvo_host/check/check_plan.h"
#include "qvo_host/check/check_profile.h"
#include "qvo_host/check/check_report_files.h"
#include "qvo_host/check/log_checks.h"
#include "qvo_host/check/worker_supervision.h"
#include "qvo_host/check/worker_verdicts.h"

namespace host_sim {
namespace {

constexpr char kShutDownGroup[] = "shut-down, what the plug-in leaves behind, unloading";

// The run's own folder inside the profile: plans, journals, the workers' output, thumbnails.
struct RunFolder {
  explicit RunFolder(const CheckProfile& profile)
      : path(std::filesystem::u8path(profile.home()) / "check") {
    std::error_code error;
    std::filesystem::create_directories(path / "thumbnails", error);
  }
  std::string File(const std::string& name) const { return (path / name).u8string(); }
  std::filesystem::path path;
};

class Judge {
 public:
  Judge(const CheckOptions& options, const CheckProfile& profile, CheckReport* report)
      : options_(options), profile_(profile), folder_(profile), report_(report) {
    for (const std::string& file : options.files) clips_.push_back({file, ClipTask::kCheck});
  }

  // Runs workers until one finishes the plan or nothing is left that a fresh one could do.
  void Run() {
    for (int worker = 0;; ++worker) {
      const WorkerRun run = RunWorker(worker);
      if (run.finished) return;
      const CheckLine line = InterruptionLine(run, options_.call_timeout);
      report_->Add(line.what, line.figure, false);
      if (!PlanTheRest(run)) return;
    }
  }

  // Every worker's standard output and error, one after the other.
  std::string WorkerOutput() const {
    std::string output;
    for (const std::string& path : outputs_) {
      std::ifstream file(std::filesystem::u8path(path), std::ios::binary);
      output += "=== " + path + "\n";
      output.append(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    return output;
  }

 private:
  WorkerRun RunWorker(int worker) {
    const std::string n = std::to_string(worker);
    WorkerPlan plan{options_.plugin_path,
                    profile_.home(),
                    folder_.File("journal_" + n + ".txt"),
                    options_.report_folder.empty() ? "" : folder_.File("thumbnails"),
                    options_.random_frames,
                    clips_};
    WorkerFiles files{
        options_.worker_program.empty() ? platform::RunningProgram() : options_.worker_program,
        folder_.File("plan_" + n + ".json"), plan.journal_path,
        folder_.File("worker_output_" + n + ".txt")};
    outputs_.push_back(files.output);
    if (!WritePlan(plan, files.plan)) {
      WorkerRun run;
      run.start_error = "cannot write " + files.plan;
      return run;
    }
    return SuperviseWorker(files, options_.call_timeout,
                           [this](const JournalRecord& record) { Take(record); });
  }

  void Take(const JournalRecord& record) {
    if (record.kind() == journal::kCheck) {
      report_->Add(record.Field(2), record.Field(3), record.Field(1) == "1");
    } else if (record.kind() == journal::kTime) {
      const double ms = std::strtod(record.Field(3).c_str(), nullptr);
      report_->times().host_ms.push_back(ms);
      report_->times().host_frames.push_back(
          {record.Field(1), std::strtoll(record.Field(2).c_str(), nullptr, 10), ms});
    } else if (record.kind() == journal::kThumbnail) {
      ClipThumbnail thumbnail{record.Field(1), {}};
      if (ReadPpm(record.Field(2), &thumbnail.image)) report_->thumbnails.push_back(thumbnail);
    }
  }

  // Lists what the interruption kept from running and plans a fresh worker for what remains: the
  // clips after the one it ended in, with the clips checked before it opened again for the
  // command link. False when nothing remains that a fresh worker could run.
  bool PlanTheRest(const WorkerRun& run) {
    const std::string why = NotRunBecause(run);
    if (run.stage == "clip") {
      const size_t ended_in = std::strtoull(run.stage_detail.c_str(), nullptr, 10);
      if (clips_[ended_in].task == ClipTask::kCheck) {
        report_->AddNotRun(clips_[ended_in].path + ": the checks after that call", why);
      }
      for (size_t i = 0; i < clips_.size(); ++i) {
        const bool ready =
            std::find(run.ready_clips.begin(), run.ready_clips.end(), i) != run.ready_clips.end();
        if (i < ended_in) clips_[i].task = ready ? ClipTask::kOpen : ClipTask::kSkip;
      }
      clips_[ended_in].task = ClipTask::kSkip;
      return true;
    }
    if (run.stage.empty() || run.stage == "start-up") {
      for (const PlannedClip& clip : clips_) {
        if (clip.task == ClipTask::kCheck) report_->AddNotRun(clip.path + ": every check", why);
      }
    }
    if (run.stage != "finish" && run.stage != "unload") {
      report_->AddNotRun("command link: the checks after that call", why);
    }
    if (run.stage != "unload") report_->AddNotRun(kShutDownGroup, why);
    return false;
  }

  const CheckOptions& options_;
  const CheckProfile& profile_;
  RunFolder folder_;
  CheckReport* report_;
  std::vector<PlannedClip> clips_;
  std::vector<std::string> outputs_;
};

bool IsFile(const std::string& path) {
  std::error_code error;
  return std::filesystem::is_regular_file(std::filesystem::u8path(path), error);
}

}  // namespace

std::string InputProblem(const CheckOptions& options) {
  if (!IsFile(options.plugin_path)) return options.plugin_path + ": no such plug-in file";
  for (const std::string& file : options.files) {
    if (!IsFile(file)) return file + ": no such file";
  }
  return std::string();
}

CheckReport RunCheck(const CheckOptions& options) {
  CheckReport report;
  CheckProfile profile;
  Judge judge(options, profile, &report);
  judge.Run();
  CheckLog(profile.log(), &report);
  if (!options.report_folder.empty()) {
    report.Add("report written", options.report_folder,
               WriteCheckReport(report, profile, judge.WorkerOutput(), options.report_folder));
  }
  return report;
}

}  // namespace host_sim
