// The checks of start-up and shut-down: what the plug-in answers before the host touches a file,
// and how soon it lets the host go at the end.
#pragma once

#include "host_sim/host_session.h"
#include "qvo_host/check_report.h"

namespace host_sim {

// Starts the plug-in and asks for its file types, checking the result, the capability words and
// the one file type. True when start-up answered 0, so that files can be opened.
bool CheckStartUp(HostSession& session, CheckReport* report);

// Shuts the plug-in down, checking its result and that it returns within one pause of the command
// link and one connect time-out.
void CheckShutDown(HostSession& session, CheckReport* report);

}  // namespace host_sim
