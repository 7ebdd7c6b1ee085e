// The checks of start-up and shut-down: what the plug-in answers before the host touches a file,
// and how soon it lets the host go at the end.
#pragma once

#include <chrono>

#include "host_sim/host_session.h"
#include "qvo_host/check/check_journal.h"

namespace host_sim {

// One pause of the command link's thread and one connect time-out.
constexpr std::chrono::seconds kShutDownBound{5};

// Starts the plug-in and asks for its file types, checking the result, the capability words and
// the one file type. True when start-up answered 0, so that files can be opened.
bool CheckStartUp(HostSession& session, CheckJournal* journal);

// Shuts the plug-in down, checking its result and that it returns within one pause of the command
// link and one connect time-out.
void CheckShutDown(HostSession& session, CheckJournal* journal);

}  // namespace host_sim
