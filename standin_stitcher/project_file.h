// A stand-in project file (.qvo): a UTF-8 JSON object whose members, all optional, describe the
// clip that the stand-in stitcher pretends to stitch and the faults it should inject.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>

namespace omni_standin {

struct InjectedFaults {
  bool create = false;                // every Create of the path fails
  int64_t create_ok_times = -1;       // only the first n Creates of the path succeed; -1: no limit
  std::set<int64_t> video_fail_once;  // the first request of these frames fails
  std::set<int64_t> video_fail_always;  // every request of these frames fails
  int64_t video_delay_ms = 0;           // each frame request sleeps this long first
  // Faults of what is written rather than of the answer, for a host's conformance check:
  int64_t rows_unwritten = 0;       // the last n rows of the first plane keep what they held
  bool write_past_end = false;      // 16 bytes written just past the last row of the last plane
  bool write_before_start = false;  // 16 bytes written just before the first row of the first plane
  bool unstable_picture = false;    // any two fetches of a frame in a row differ in one byte
  bool sound_short = false;         // one sample frame fewer than asked, in every channel
  bool sound_long = false;          // one sample frame more than asked, in every channel
  // Faults a closed, GPU-driven library has, which end or stall the process that calls it:
  bool write_far_past_end = false;  // three pages written from a row past the last plane's end
  std::set<int64_t> crash_frames;   // a write through a null pointer
  std::set<int64_t> hang_frames;    // never returns
  std::set<int64_t> throw_frames;   // throws std::runtime_error
};

struct ProjectFile {
  int32_t width = 3840;
  int32_t height = 1920;
  double fps = 29.97;
  int64_t frames = 300;
  int64_t bitrate = 120000000;
  bool stereo = false;
  std::string offset;
  bool has_audio = true;
  int32_t audio_rate = 48000;
  int32_t audio_channels = 2;
  int64_t audio_sample_frames = 0;  // frames / fps * rate, rounded down, unless the file says
  bool flat_render = false;         // "render": "flat" instead of the test scene
  InjectedFaults faults;
};

// Reads the project file at `path`, a narrow path in the system code page opened as it stands.
// Empty when the file cannot be read, is not a JSON object, or a member has the wrong type or a
// value no clip can have (a size, rate or channel count below 1, a negative count).
std::optional<ProjectFile> ReadProjectFile(const std::string& path);

}  // namespace omni_standin
