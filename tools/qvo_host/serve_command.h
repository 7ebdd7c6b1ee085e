// qvo-host serve: clips kept open the way a host keeps a sequence open, with frame 0 of each shown
// again and again, so that a command server's parameter update can be seen: after it, the host's
// cache no longer holds the frame and the plug-in stitches it anew, with the new parameters.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host_sim/host_session.h"

namespace host_sim {

// Opens and describes every file, then asks for frame 0 of each every 200 ms for `seconds`,
// saying on standard output when one was fetched anew and whether its picture changed. True when
// every file opened and every frame came. REQUIRES: the session is started and has asked for the
// file types.
bool ServeClips(HostSession& session, const std::vector<std::string>& files, int32_t seconds);

}  // namespace host_sim
