// qvo-host audio: a clip's whole sound read from the plug-in as the host reads it, block after
// block, and written to a WAV file.
#pragma once

#include <string>

#include "host_sim/host_session.h"

namespace host_sim {

// Opens the clip, reads its sound one second per request (the first at position 0, the rest with
// negative positions, continuing where the last read ended), writes it to `wav_path` as 32-bit
// float WAV and closes the clip. Progress goes to standard error. True when every request
// succeeded and the file was written.
// REQUIRES: the session is started and has asked for the file types.
bool ExportAudio(HostSession& session, const std::string& clip_path, const std::string& wav_path);

}  // namespace host_sim
