// The process-wide list of open files' contexts, with the time each was last used, so that the
// stitched sources of the least recently used half can be released when stitching runs short.
#pragma once

#include <chrono>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <vector>

#include "open_files/file_context.h"
#include "open_files/private_file_record.h"

class ContextRegistry {
 public:
  using Clock = std::chrono::steady_clock;

  static ContextRegistry& Instance();

  // Lists `context` and marks it used now. Takes the list mutex, then the last-use mutex.
  void Register(FileContext* context);

  // Marks `context` used now.
  void TouchContext(FileContext* context);

  // Releases the context's stitched source, if it has one. Takes the context's mutex, so the
  // calling thread must not hold it.
  void ReleaseSource(FileContext* context);

  // Releases the source (without the context's mutex) and the suites the context holds, through
  // the record's basic suite.
  void ResetFileContext(FileContext* context, const PrivateFileRecord* record);

  // Takes `context` off the list and forgets its last use.
  void RemoveContext(FileContext* context);

  // Releases the sources of the least recently used half of the listed contexts (rounded down),
  // oldest first. `held_by_caller`, whose mutex the calling thread holds, is passed over rather
  // than locked twice, and so is a context that another thread is reading at that moment: two
  // failing reads on two files must not wait for each other's mutex.
  void EvictHalf(const FileContext* held_by_caller);

  // Calls `visit` for every listed context in order of opening, under the list mutex.
  template <typename Visit>
  void ForEachContext(Visit visit) {
    std::lock_guard<std::mutex> lock(list_mutex_);
    for (FileContext* context : contexts_) visit(context);
  }

  // Clears the running flag and joins the worker, if one runs.
  void Stop();

  size_t size();

 private:
  std::vector<FileContext*> ContextsByLastUse();
  void ReleaseSourceIfIdle(FileContext* context);

  std::thread worker_;  // nothing starts it; Stop joins it only when joinable

  std::mutex list_mutex_;               // taken before last_use_mutex_ when both are held
  std::vector<FileContext*> contexts_;  // guarded by list_mutex_, in order of opening

  std::mutex last_use_mutex_;
  std::unordered_map<const FileContext*, Clock::time_point>
      last_use_;  // guarded by last_use_mutex_

  bool running_ = false;
};
