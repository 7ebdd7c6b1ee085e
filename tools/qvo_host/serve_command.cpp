#include "qvo_host/serve_command.h"

#include <chrono>
#include <cstdio>
#include <memory>
#include <thread>

#include "qvo_host/opened_clip.h"

namespace host_sim {
namespace {

constexpr auto kShowEvery = std::chrono::milliseconds(200);

// FNV-1a over the picture bytes of every plane, padding left out.
uint64_t PictureChecksum(const HostFrame& frame) {
  uint64_t hash = 14695981039346656037ull;
  for (int32_t p = 0; p < frame.plane_count; ++p) {
    const FramePlane& plane = frame.planes[p];
    for (int32_t r = 0; r < plane.rows; ++r) {
      const uint8_t* row = plane.bytes + static_cast<size_t>(r) * plane.row_bytes;
      for (int32_t i = 0; i < plane.row_length; ++i) hash = (hash ^ row[i]) * 1099511628211ull;
    }
  }
  return hash;
}

struct ServedClip {
  std::string name;
  std::unique_ptr<HostFile> file;
  uint64_t checksum = 0;
};

// Frame 0 of the clip, shown once; false when the plug-in did not deliver it.
bool ShowFrameZero(HostSession& session, ServedClip* clip, bool first_time) {
  Host& host = session.host();
  const int64_t misses_before = host.frame_cache().misses();
  PPixHand handle = nullptr;
  const int32_t result = clip->file->RequestFrame(
      0, {0, 0, PrPixelFormat_YUV_420_MPEG4_FRAME_PICTURE_PLANAR_8u_709_FullRange}, &handle);
  const HostFrame* frame = handle != nullptr ? host.frames().Find(handle) : nullptr;
  if (result != imNoErr || frame == nullptr) {
    std::printf("%s: frame 0 not delivered (result %d)\n", clip->name.c_str(), result);
    return false;
  }
  const bool fetched = host.frame_cache().misses() != misses_before;
  const uint64_t checksum = PictureChecksum(*frame);
  if (first_time) {
    std::printf("%s: frame 0 stitched, checksum %016llx\n", clip->name.c_str(),
                static_cast<unsigned long long>(checksum));
  } else if (fetched) {
    std::printf("%s: frame 0 was no longer cached and was stitched again, checksum %016llx (%s)\n",
                clip->name.c_str(), static_cast<unsigned long long>(checksum),
                checksum != clip->checksum ? "differs from the cached one" : "unchanged");
  }
  std::fflush(stdout);
  clip->checksum = checksum;
  host.frames().Dispose(handle);
  return true;
}

}  // namespace

bool ServeClips(HostSession& session, const std::vector<std::string>& files, int32_t seconds) {
  std::vector<ServedClip> clips;
  for (const std::string& name : files) {
    std::string error;
    std::unique_ptr<HostFile> file = OpenDescribedClip(session, name, &error);
    if (file == nullptr) {
      std::fprintf(stderr, "qvo-host: %s: %s\n", name.c_str(), error.c_str());
      return false;
    }
    clips.push_back({name, std::move(file), 0});
  }
  bool delivered = true;
  for (ServedClip& clip : clips) delivered = ShowFrameZero(session, &clip, true) && delivered;
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
  while (delivered && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(kShowEvery);
    for (ServedClip& clip : clips) delivered = ShowFrameZero(session, &clip, false) && delivered;
  }
  for (ServedClip& clip : clips) QuietAndClose(clip.file.get());
  return delivered;
}

}  // namespace host_sim
