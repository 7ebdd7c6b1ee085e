// The command line of qvo-host: its commands and options.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host_sdk/premiere_importer.h"
#include "host_sim/host.h"

namespace host_sim {

struct CommandLine {
  std::string command;  // start-up, info, frames, audio, serve, check or log-report
  std::vector<std::string> files;
  bool json = false;
  std::string plugin_path;
  int32_t interface_version = kNewestInterfaceVersion;
  // frames: frames first_frame to end_frame - 1 into the folder `out`, in `pixel_format`.
  int32_t first_frame = 0;
  int32_t end_frame = 0;
  PrPixelFormat pixel_format = PrPixelFormat_YUV_420_MPEG4_FRAME_PICTURE_PLANAR_8u_709_FullRange;
  // frames: the folder; audio: the WAV file; log-report: the plot's PNG file, or empty.
  std::string out;
  // serve: how long the clips stay open.
  int32_t seconds = 20;
  // check: frames checked at random beyond the first, middle and last; the report folder, or empty.
  int32_t random_frames = 4;
  std::string report;
};

// False for a command line that names no known command or lacks what its command needs.
bool ParseCommandLine(int argc, char** argv, CommandLine* line);

void PrintUsage();

}  // namespace host_sim
