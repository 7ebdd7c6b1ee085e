// Finding the stitching library beside the plug-in. On Windows the plug-in delay-loads
// OmniStitcher.dll, so loading the plug-in never fails for want of it, and loads it here by full
// path from the plug-in's own folder before its first call: the system would otherwise look for it
// beside the host's program. Elsewhere the system's loader has found it beside the plug-in already.
#pragma once

#include <string>

namespace platform {

struct StitchingLibraryLoad {
  bool loaded = false;
  std::string path;         // the full path tried, UTF-8; empty when it was loaded already
  unsigned long error = 0;  // the system's error code when it could not be loaded
};

// Loads the library once per process and keeps it loaded for the rest of the process: sources
// made by it may outlive the plug-in's shut-down, and calls already bound to it must stay valid
// if the plug-in is loaded again. A failed load is tried again on the next call. Any thread.
StitchingLibraryLoad LoadStitchingLibrary();

// The library's file name on this system, without its folder.
std::string StitchingLibraryFileName();

}  // namespace platform
