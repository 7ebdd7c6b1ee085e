// qvo-host frames: a run of a clip's frames asked of the plug-in as the host asks for them, and
// written out as pictures a person can look at.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host_sdk/premiere_importer.h"
#include "host_sim/host_file.h"
#include "host_sim/host_session.h"
#include "qvo_host/frame_image.h"
#include "qvo_host/progress_line.h"

namespace host_sim {

struct FramesExport {
  std::string file;
  int32_t first_frame = 0;
  int32_t end_frame = 0;  // one past the last
  PrPixelFormat pixel_format = 0;
  std::string folder;
};

// Opens the clip, asks for each frame of the range at its start time, writes each delivered one
// as folder/frame_NNNNN.png and all of them, shrunk, as folder/contact_sheet.png with the clip's
// file name beside them, then closes the clip. Progress goes to standard error. True when every
// frame was delivered and written.
// REQUIRES: the session is started and has asked for the file types.
bool ExportFrames(HostSession& session, const FramesExport& request);

// The frames of the range of `clip`, already open, written as ExportFrames writes them: each is
// converted to RGB as soon as the host hands it over and given back, then encoded on worker
// threads (one per processor) while the next frames are asked for; files are written in the
// frames' order, each counted on `progress` and its thumbnail added to `thumbnails`. True when
// every frame was delivered and written. The folder must exist.
bool ExportFrameRange(HostSession& session, HostFile* clip, const FramesExport& request,
                      ProgressLine* progress, std::vector<RgbImage>* thumbnails);

}  // namespace host_sim
