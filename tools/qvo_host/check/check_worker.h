// The worker of qvo-host check: the one process that loads the plug-in and calls into it (and
// through it, into the stitching library), telling its judge in the journal what it is about to
// call before every call and each check's result as it comes. It never writes the report: when it
// crashes or hangs, the judge still has everything it wrote.
#pragma once

#include <string>

namespace host_sim {

// Runs the plan in the file `plan_path`. Returns 0 once the plan has run, whatever the checks
// found; 2 when the plan or the journal cannot be had.
int RunCheckWorker(const std::string& plan_path);

}  // namespace host_sim
