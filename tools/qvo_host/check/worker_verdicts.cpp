#include "qvo_host/check/worker_verdicts.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace host_sim {
namespace {

constexpr char kSoundCall[] = "GetAudioFrame";

std::string Seconds(std::chrono::milliseconds duration) {
  const double seconds = std::chrono::duration<double>(duration).count();
  char text[32];
  std::snprintf(text, sizeof(text), "%g s", seconds);
  return text;
}

std::string CallOf(const WorkerRun& run) {
  if (run.call.empty()) return "the check's worker";
  const std::string call = run.call_clip.empty() ? run.call : run.call_clip + " " + run.call;
  return run.in_call ? call : "the check's worker, after " + call;
}

// fault, kind, code, where, address touched, bytes past a host buffer.
std::string FaultFigure(const JournalRecord& fault, const WorkerRun& run) {
  const std::string where = fault.Field(3).empty() ? "" : " at " + fault.Field(3);
  const std::string killed =
      " (" + fault.Field(1) + where + "; the worker ended with " + run.end.description + ")";
  if (!fault.Field(5).empty()) {
    const std::string buffer = run.call.rfind(kSoundCall, 0) == 0 ? "sound buffer" : "frame";
    const long long past = std::strtoll(fault.Field(5).c_str(), nullptr, 10);
    return "wrote past the end of the host's " + buffer + ": the write landed " +
           std::to_string(past + 1) + (past == 0 ? " byte" : " bytes") + " past its end" + killed;
  }
  const std::string touched = fault.Field(4).empty() ? "" : ", touching " + fault.Field(4);
  return "crashed" + touched + killed;
}

}  // namespace

CheckLine InterruptionLine(const WorkerRun& run, std::chrono::milliseconds call_timeout) {
  CheckLine line;
  line.what = CallOf(run);
  if (!run.start_error.empty()) {
    line.figure = "the worker could not start: " + run.start_error;
  } else if (run.timed_out) {
    line.figure = run.in_call
                      ? "did not return within " + Seconds(std::max(call_timeout, run.call_limit)) +
                            " (--call-timeout); the worker was ended"
                      : "the worker wrote nothing for " + Seconds(call_timeout) +
                            " (--call-timeout) and was ended";
  } else if (run.fault) {
    line.figure = FaultFigure(*run.fault, run);
  } else {
    line.figure =
        "the worker ended with " + run.end.description + (run.in_call ? " during the call" : "");
  }
  return line;
}

std::string NotRunBecause(const WorkerRun& run) { return "the worker ended in " + CallOf(run); }

}  // namespace host_sim
