#include "platform/stitching_library.h"

namespace platform {

// The plug-in names the library as a dependency found through its own folder ($ORIGIN), so the
// system's loader loaded it with the plug-in, or refused the plug-in.
StitchingLibraryLoad LoadStitchingLibrary() {
  StitchingLibraryLoad load;
  load.loaded = true;
  return load;
}

std::string StitchingLibraryFileName() { return "libOmniStitcher.so"; }

}  // namespace platform
