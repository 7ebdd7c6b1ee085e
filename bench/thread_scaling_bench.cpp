// How frame requests of four host threads on four files scale beside one thread asking for the
// same frames, when stitching takes time (the stand-in sleeps 20 ms a frame): the plug-in holds
// no lock across files.
#include <benchmark/benchmark.h>

#include <thread>
#include <vector>

#include "bench_host.h"

namespace {

constexpr int kFiles = 4;

const std::vector<host_sim::HostFile*>& SlowClips() {
  static const std::vector<host_sim::HostFile*> clips = [] {
    std::vector<host_sim::HostFile*> opened;
    for (int f = 0; f < kFiles; ++f) {
      opened.push_back(BenchHost::Get().OpenClip(
          R"({"width": 256, "height": 128, "frames": 1000000, "render": "flat",
              "faults": {"video_delay_ms": 20}})"));
    }
    return opened;
  }();
  return clips;
}

void RequestFrame(host_sim::HostFile* clip, int64_t index) {
  PPixHand frame = nullptr;
  clip->RequestFrame(index * clip->TicksPerFrame(), {0, 0, kPlanarFormat}, &frame);
  BenchHost::Get().host().frames().Dispose(frame);
}

void ExpireCache(benchmark::State& state) {
  state.PauseTiming();
  BenchHost::Get().host().frame_cache().ExpireAll();
  state.ResumeTiming();
}

void BM_FramesOneThread(benchmark::State& state) {
  const std::vector<host_sim::HostFile*>& clips = SlowClips();
  int64_t index = 0;
  for (auto _ : state) {
    for (host_sim::HostFile* clip : clips) RequestFrame(clip, index);
    ++index;
    ExpireCache(state);
  }
}

void BM_FramesFourThreads(benchmark::State& state) {
  const std::vector<host_sim::HostFile*>& clips = SlowClips();
  int64_t index = 0;
  for (auto _ : state) {
    std::vector<std::thread> threads;
    for (host_sim::HostFile* clip : clips) threads.emplace_back(RequestFrame, clip, index);
    for (std::thread& thread : threads) thread.join();
    ++index;
    ExpireCache(state);
  }
}

}  // namespace

BENCHMARK(BM_FramesOneThread)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_FramesFourThreads)->Unit(benchmark::kMillisecond)->UseRealTime();
