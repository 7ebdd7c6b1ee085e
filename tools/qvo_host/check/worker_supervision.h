// The judge's watch over one check worker: it starts the worker, reads its journal as it is
// written, ends it when a call into the plug-in overruns its time limit, and tells how it ended and
// where it was.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/child_process.h"
#include "qvo_host/check/check_journal.h"

namespace host_sim {

struct WorkerFiles {
  std::string program;  // qvo-host itself
  std::string plan;     // the plan the worker reads
  std::string journal;  // the journal it writes
  std::string output;   // its standard output and error
};

// Where a worker stood and how it ended.
struct WorkerRun {
  std::string start_error;  // the worker could not be started; nothing else holds
  bool finished = false;    // it ran its whole plan
  bool timed_out = false;   // the judge ended it: a call overran the time limit
  platform::ChildEnd end;
  std::string stage;         // the stage it was in: start-up, clip, command link, finish, unload
  std::string stage_detail;  // the clip's index, for the clip stage
  bool in_call = false;      // a call into the plug-in had begun and not returned
  std::string call_clip;     // the clip of the last call begun, or empty
  std::string call;          // the last call begun
  std::chrono::milliseconds call_limit{0};  // the call's own limit, when it has one
  std::vector<size_t> ready_clips;
  std::optional<JournalRecord> fault;  // the worker's last words, when it faulted
};

// Runs one worker to its end. `on_record` receives every check, time and thumbnail record as it
// comes. A call that does not return within `call_timeout` (or its own longer limit), and a
// worker that writes nothing for that long between calls, end the worker.
WorkerRun SuperviseWorker(const WorkerFiles& files, std::chrono::milliseconds call_timeout,
                          const std::function<void(const JournalRecord&)>& on_record);

}  // namespace host_sim
