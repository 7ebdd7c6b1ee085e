// qvo-host frames: a run of a clip's frames asked of the plug-in as the host asks for them, and
// written out as pictures a person can look at.
#pragma once

#include <cstdint>
#include <string>

#include "host_sdk/premiere_importer.h"
#include "host_sim/host_session.h"

namespace host_sim {

struct FramesExport {
  std::string file;
  int32_t first_frame = 0;
  int32_t end_frame = 0;  // one past the last
  PrPixelFormat pixel_format = 0;
  std::string folder;
};

// Opens the clip, asks for each frame of the range at its start time, writes each delivered one
// as folder/frame_NNNNN.png and all of them, shrunk, as folder/contact_sheet.png, then closes the
// clip. Progress goes to standard error. True when every frame was delivered and written.
// REQUIRES: the session is started and has asked for the file types.
bool ExportFrames(HostSession& session, const FramesExport& request);

}  // namespace host_sim
