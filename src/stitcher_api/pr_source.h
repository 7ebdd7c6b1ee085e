// The stitching library's interface, as OmniStitcher.dll declares it. The plug-in holds a source
// only through std::shared_ptr<PRSource>; an empty reference means the file has no source now.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

#include "platform/export.h"
#include "stitcher_api/media_info.h"

// Calls that OmniStitcher.dll exports; the stand-in library builds with OMNISTITCHER_BUILD.
#if defined(OMNISTITCHER_BUILD)
#define OMNISTITCHER_API QUORVEL_DLL_EXPORT
#else
#define OMNISTITCHER_API QUORVEL_DLL_IMPORT
#endif

// Members that the plug-in defines and exports for the library's use.
#if defined(QUORVEL_PLUGIN_BUILD)
#define QUORVEL_PLUGIN_API QUORVEL_DLL_EXPORT
#else
#define QUORVEL_PLUGIN_API
#endif

// One stitched source, opaque to the plug-in: the library makes it, owns its inside and frees it
// through the shared reference's own deleter. Its three calls are plain member functions that the
// library exports. Calls on one source are not thread-safe: callers serialise them.
class PRSource {
 public:
  // Writes the stitched picture of `frame_index` at width x height. With three plane pointers
  // and strides: planar YUV 4:2:0. With planes[1] null: packed 4-byte pixels, rows tightly
  // packed, top row first, strides unused. Returns 0 on success.
  OMNISTITCHER_API int32_t GetVideoFrame(int64_t frame_index, int32_t width, int32_t height,
                                         uint8_t** planes, int* strides);

  // Writes `count` float sample frames from `start` into each channel buffer.
  OMNISTITCHER_API int32_t GetAudioFrame(int64_t start, int64_t count, float** buffers);

  // Re-reads the stitching parameters.
  OMNISTITCHER_API bool Update();

 protected:
  PRSource() = default;
  ~PRSource() = default;
};

class PrSourceFactory {
 public:
  // Returns the path's source, shared and counted per path, and fills *info; empty on failure.
  // `path` is in the system ANSI code page.
  OMNISTITCHER_API static std::shared_ptr<PRSource> Create(const std::string& path,
                                                           MediaInfo* info);

  // Empties `source` and frees the path's source when its last user is gone.
  OMNISTITCHER_API static void Destroy(std::shared_ptr<PRSource>& source);

  QUORVEL_PLUGIN_API PrSourceFactory& operator=(const PrSourceFactory& other);

  // Defined in the plug-in, used only inside the library.
  QUORVEL_PLUGIN_API static std::mutex mutex_;
  QUORVEL_PLUGIN_API static std::unordered_map<std::string, int> refs_;
  QUORVEL_PLUGIN_API static std::unordered_map<std::string, std::shared_ptr<PRSource>> sources_;
};
