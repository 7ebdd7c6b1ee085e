#include "command_link_faults/host_traffic.h"

#include <vector>

namespace {

constexpr PrPixelFormat kPlanar = 0x46317659;
constexpr int32_t kFrames = 30;
constexpr uint32_t kSoundRun = 100;
constexpr auto kRequestInterval = std::chrono::milliseconds(10);

}  // namespace

HostTraffic::HostTraffic(host_sim::HostSession& session, host_sim::HostFile& clip)
    : session_(session), clip_(clip), thread_([this] { Run(); }) {}

HostTraffic::~HostTraffic() { Stop(); }

void HostTraffic::Stop() {
  stopping_ = true;
  if (thread_.joinable()) thread_.join();
}

bool HostTraffic::ServedMore(int64_t count, std::chrono::milliseconds timeout) {
  std::unique_lock<std::mutex> lock(mutex_);
  const int64_t goal = served_ + count;
  return served_changed_.wait_for(lock, timeout, [this, goal] { return served_ >= goal; });
}

int64_t HostTraffic::failures() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return failures_;
}

void HostTraffic::Run() {
  for (int32_t index = 0; !stopping_; ++index) {
    const int32_t result = index % 2 == 0 ? RequestFrame(index / 2) : RequestSound(index / 2);
    {
      std::lock_guard<std::mutex> lock(mutex_);
      if (result == imNoErr) {
        ++served_;
      } else {
        ++failures_;
      }
      served_changed_.notify_all();
    }
    // A player's pace, not a flood: the machine is shared with the plug-in's own threads.
    std::this_thread::sleep_for(kRequestInterval);
  }
}

int32_t HostTraffic::RequestFrame(int32_t index) {
  PPixHand frame = nullptr;
  const int32_t result =
      clip_.RequestFrame((index % kFrames) * clip_.TicksPerFrame(), {0, 0, kPlanar}, &frame);
  if (frame != nullptr) session_.host().frames().Dispose(frame);
  return result;
}

int32_t HostTraffic::RequestSound(int32_t index) {
  std::vector<float> left(kSoundRun);
  std::vector<float> right(kSoundRun);
  float* buffers[2] = {left.data(), right.data()};
  return clip_.ReadAudio((index % kFrames) * kSoundRun, kSoundRun, buffers);
}
