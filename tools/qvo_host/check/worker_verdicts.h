// What the judge makes of a worker that did not finish its plan: the FAIL line of the call that
// ended it, and the checks that could not run because of it.
#pragma once

#include <chrono>
#include <string>

#include "qvo_host/check/check_report.h"
#include "qvo_host/check/worker_supervision.h"

namespace host_sim {

// The line for the call the worker was in when it crashed, hung or ended: what was called (the
// clip, the call, the frame or position) and what ended it.
CheckLine InterruptionLine(const WorkerRun& run, std::chrono::milliseconds call_timeout);

// Why the checks after the interruption did not run: "the worker ended in <call>".
std::string NotRunBecause(const WorkerRun& run);

}  // namespace host_sim
