// What the judge of a check asks one worker to do, in a file the worker reads at its start: the
// plug-in, the clips and what to do with each, and where to keep its journal.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace host_sim {

// The hidden command that starts a worker: `qvo-host check-worker PLAN`.
constexpr char kCheckWorkerCommand[] = "check-worker";

enum class ClipTask {
  kCheck,  // checked, then kept open for the command link
  kOpen,   // checked by an earlier worker: only opened again for the command link
  kSkip,   // an earlier worker ended in it, or it could not be opened
};

struct PlannedClip {
  std::string path;  // UTF-8, as the user named it
  ClipTask task = ClipTask::kCheck;
};

struct WorkerPlan {
  std::string plugin_path;
  std::string profile_folder;    // the check's user profile, where Plugin.log is written
  std::string journal_path;      // where the worker keeps its journal
  std::string thumbnail_folder;  // where thumbnails go; empty: none are kept
  int32_t random_frames = 4;
  std::vector<PlannedClip> clips;
};

bool WritePlan(const WorkerPlan& plan, const std::string& path);
// False when the file cannot be read or is not a plan.
bool ReadPlan(const std::string& path, WorkerPlan* plan);

}  // namespace host_sim
