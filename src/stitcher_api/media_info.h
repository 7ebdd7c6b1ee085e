// The stitching library's description of one project file, exchanged by value with
// OmniStitcher.dll. Its layout is the library's, so it is byte-packed and ends with a string of
// the shared C++ runtime: both sides must use one standard library in one build mode.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// The layout is the library's: x64 MSVC warns (C4315) that the packed string is not aligned as its
// constructor expects, which both sides accept by sharing this very layout.
#if defined(_MSC_VER)
#pragma warning(push)
#pragma warning(disable : 4315)
#endif
#pragma pack(push, 1)
struct MediaInfo {
  uint8_t has_video = 0;
  int32_t width = 0;
  int32_t height = 0;
  double fps = 0.0;
  int64_t frame_count = 0;
  int64_t bitrate = 0;
  int32_t stereo = 0;
  uint8_t has_audio = 0;
  int64_t audio_sample_frames = 0;
  int64_t audio_sample_rate = 0;
  int32_t audio_channels = 0;
  std::string offset;
};
#pragma pack(pop)
#if defined(_MSC_VER)
#pragma warning(pop)
#endif

static_assert(sizeof(std::string) == 32,
              "MediaInfo needs the 32-byte std::string of release builds");
static_assert(offsetof(MediaInfo, has_video) == 0, "MediaInfo layout");
static_assert(offsetof(MediaInfo, width) == 1, "MediaInfo layout");
static_assert(offsetof(MediaInfo, height) == 5, "MediaInfo layout");
static_assert(offsetof(MediaInfo, fps) == 9, "MediaInfo layout");
static_assert(offsetof(MediaInfo, frame_count) == 17, "MediaInfo layout");
static_assert(offsetof(MediaInfo, bitrate) == 25, "MediaInfo layout");
static_assert(offsetof(MediaInfo, stereo) == 33, "MediaInfo layout");
static_assert(offsetof(MediaInfo, has_audio) == 37, "MediaInfo layout");
static_assert(offsetof(MediaInfo, audio_sample_frames) == 38, "MediaInfo layout");
static_assert(offsetof(MediaInfo, audio_sample_rate) == 46, "MediaInfo layout");
static_assert(offsetof(MediaInfo, audio_channels) == 54, "MediaInfo layout");
static_assert(offsetof(MediaInfo, offset) == 58, "MediaInfo layout");
static_assert(sizeof(MediaInfo) == 90, "MediaInfo is 90 bytes");
