// The checks of the command link, from the side of a command server of the check's own: it
// answers "get_media_info" for every file with what the host was told, and "request_update_param"
// updates the other files and expires the host's cache, so that the next frame is stitched anew.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "command_server/command_server.h"
#include "host_sim/host_file.h"
#include "host_sim/host_session.h"
#include "qvo_host/check/check_journal.h"
#include "qvo_host/check/profile_log.h"

namespace host_sim {

struct CheckedClip {
  std::string name;  // as the user named it
  HostFile* file;    // opened and described
};

// One pass of the command link's thread, its pause and a connect time-out, with room.
constexpr std::chrono::seconds kLinkWait{10};

// REQUIRES: `server` wrote its port file into the profile before start-up; every clip has frames.
void CheckCommandLink(HostSession& session, command_server::CommandServer& server,
                      const std::vector<CheckedClip>& clips, const ProfileLog& log,
                      CheckJournal* journal);

}  // namespace host_sim
