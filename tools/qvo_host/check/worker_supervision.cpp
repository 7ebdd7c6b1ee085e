#include "qvo_host/check/worker_supervision.h"

#include <algorithm>
#include <cstdlib>

#include "qvo_host/check/check_plan.h"

namespace host_sim {
namespace {

constexpr std::chrono::milliseconds kPoll{20};

// Keeps `run` up to date with one record; true when the record was the worker's news of its own
// progress rather than something for the report.
bool Track(const JournalRecord& record, WorkerRun* run) {
  const std::string& kind = record.kind();
  if (kind == journal::kStage) {
    run->stage = record.Field(1);
    run->stage_detail = record.Field(2);
  } else if (kind == journal::kCall) {
    run->in_call = true;
    run->call_clip = record.Field(1);
    run->call = record.Field(2);
    run->call_limit = std::chrono::milliseconds(std::strtoll(record.Field(3).c_str(), nullptr, 10));
  } else if (kind == journal::kReturned) {
    run->in_call = false;
  } else if (kind == journal::kClipReady) {
    run->ready_clips.push_back(
        static_cast<size_t>(std::strtoull(record.Field(1).c_str(), nullptr, 10)));
  } else if (kind == journal::kFault) {
    run->fault = record;
  } else if (kind == journal::kEnd) {
    run->finished = true;
  } else {
    return false;
  }
  return true;
}

}  // namespace

WorkerRun SuperviseWorker(const WorkerFiles& files, std::chrono::milliseconds call_timeout,
                          const std::function<void(const JournalRecord&)>& on_record) {
  WorkerRun run;
  platform::ChildProcess worker(files.program, {kCheckWorkerCommand, files.plan}, files.output);
  if (!worker.started()) {
    run.start_error = worker.error();
    return run;
  }
  JournalReader reader(files.journal);
  auto last_news = std::chrono::steady_clock::now();
  const auto read = [&] {
    for (const JournalRecord& record : reader.ReadNew()) {
      last_news = std::chrono::steady_clock::now();
      if (!Track(record, &run)) on_record(record);
    }
  };
  while (!worker.WaitForEnd(kPoll, &run.end)) {
    read();
    const auto limit = run.in_call ? std::max(call_timeout, run.call_limit) : call_timeout;
    if (std::chrono::steady_clock::now() - last_news > limit) {
      run.timed_out = true;
      worker.Kill();
    }
  }
  read();
  run.finished = run.finished && !run.timed_out && !run.end.faulted && run.end.code == 0;
  return run;
}

}  // namespace host_sim
