// PrSourceFactory as the stand-in implements it: one source per path, shared by every caller and
// freed when the last of them calls Destroy, plus the counters of omni_standin_counters.h.
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>

#include "omni_standin_counters.h"
#include "path_state.h"
#include "project_file.h"
#include "standin_source.h"
#include "stitcher_api/pr_source.h"

namespace omni_standin {
namespace {

struct PathEntry {
  PathState state;
  std::shared_ptr<StandinSource> source;  // null while nobody holds the path
  int64_t users = 0;                      // Creates not yet matched by a Destroy
  int64_t create_calls = 0;               // counts toward create_ok_times; never reset
};

class Registry {
 public:
  std::shared_ptr<PRSource> Acquire(const std::string& path, MediaInfo* info) {
    std::lock_guard<std::mutex> lock(mutex_);
    PathEntry& entry = EntryFor(path);
    entry.state.Count(kOmniStandinCreate);
    ++entry.create_calls;

    // A path that is open already shares the project file as it was read when it was opened.
    std::optional<ProjectFile> project;
    if (entry.source) {
      project = entry.source->project();
    } else {
      project = ReadProjectFile(path);
    }
    if (!project || project->faults.create) return nullptr;
    int64_t ok_times = project->faults.create_ok_times;
    if (ok_times >= 0 && entry.create_calls > ok_times) return nullptr;

    if (!entry.source) {
      entry.source = std::make_shared<StandinSource>(path, std::move(*project), &entry.state);
    }
    ++entry.users;
    if (info != nullptr) entry.source->Describe(info);
    return entry.source;
  }

  void Release(std::shared_ptr<PRSource>& source) {
    if (!source) return;
    {
      std::lock_guard<std::mutex> lock(mutex_);
      auto* standin = static_cast<StandinSource*>(source.get());
      auto found = entries_.find(standin->path());
      if (found != entries_.end()) {
        PathEntry& entry = *found->second;
        entry.state.Count(kOmniStandinDestroy);
        // A copy of a reference whose path was released already has nothing left to release.
        if (entry.source.get() == standin && --entry.users == 0) entry.source.reset();
      }
    }
    source.reset();
  }

  int64_t Calls(OmniStandinCall call, const char* path) {
    std::lock_guard<std::mutex> lock(mutex_);
    if (path != nullptr) {
      auto found = entries_.find(path);
      return found == entries_.end() ? 0 : found->second->state.Calls(call);
    }
    int64_t total = 0;
    for (const auto& entry : entries_) total += entry.second->state.Calls(call);
    return total;
  }

  void ResetCalls() {
    std::lock_guard<std::mutex> lock(mutex_);
    for (auto& entry : entries_) entry.second->state.ResetCalls();
  }

 private:
  // REQUIRES: mutex_ held.
  PathEntry& EntryFor(const std::string& path) {
    std::unique_ptr<PathEntry>& entry = entries_[path];
    if (!entry) entry = std::make_unique<PathEntry>();
    return *entry;
  }

  std::mutex mutex_;
  // Entries are never erased: sources keep pointers to their path's state.
  std::unordered_map<std::string, std::unique_ptr<PathEntry>> entries_;  // guarded by mutex_
};

Registry& TheRegistry() {
  static Registry registry;
  return registry;
}

}  // namespace
}  // namespace omni_standin

std::shared_ptr<PRSource> PrSourceFactory::Create(const std::string& path, MediaInfo* info) {
  return omni_standin::TheRegistry().Acquire(path, info);
}

void PrSourceFactory::Destroy(std::shared_ptr<PRSource>& source) {
  omni_standin::TheRegistry().Release(source);
}

extern "C" {

int64_t OmniStandin_LiveSources() { return omni_standin::StandinSource::Live(); }

int64_t OmniStandin_CallCount(int32_t call, const char* path) {
  if (call < 0 || call >= kOmniStandinCallKinds) return -1;
  return omni_standin::TheRegistry().Calls(static_cast<OmniStandinCall>(call), path);
}

void OmniStandin_ResetCounters() { omni_standin::TheRegistry().ResetCalls(); }

}  // extern "C"
