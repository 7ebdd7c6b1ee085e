// What a frame costs through the plug-in beside what the same work costs without it: an uncached
// frame against the stand-in writing the same host buffers directly (in time, and in instructions
// counted under callgrind), a cached frame against the host's cache lookup alone, and the packed
// rows' spreading against one memmove of their bytes.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstring>
#include <string>
#include <vector>

#include "bench_host.h"
#include "counted_stretch.h"
#include "delivery/row_spreading.h"
#include "host_sim/frame_cache_suite.h"
#include "in_turns.h"

namespace {

void BM_UncachedFrame(benchmark::State& state) {
  host_sim::HostFile* clip = FlatClipOfWidth(state.range(0));
  host_sim::Host& host = BenchHost::Get().host();
  const PrTime ticks = clip->TicksPerFrame();
  int64_t index = 0;
  for (auto _ : state) {
    PPixHand frame = nullptr;
    const auto start = std::chrono::steady_clock::now();
    clip->RequestFrame(index++ * ticks, {0, 0, kPlanarFormat}, &frame);
    state.SetIterationTime(Seconds(std::chrono::steady_clock::now() - start));
    host.frame_cache().ExpireAll();
    host.frames().Dispose(frame);
  }
}

void BM_DirectFrame(benchmark::State& state) {
  const auto width = static_cast<int32_t>(state.range(0));
  DirectSource source(*FlatClipOfWidth(width), width);
  int64_t index = 0;
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    benchmark::DoNotOptimize(source.WriteFrame(index++));
    state.SetIterationTime(Seconds(std::chrono::steady_clock::now() - start));
  }
}

// Requests after the first few, whose log file opening and first-touched pages are not a frame's.
constexpr int kWarmUpFrames = 2;

void RequestUncachedFrame(host_sim::HostFile* clip, int64_t index) {
  PPixHand frame = nullptr;
  clip->RequestFrame(index * clip->TicksPerFrame(), {0, 0, kPlanarFormat}, &frame);
  UncountedPause host_bookkeeping;
  host_sim::Host& host = BenchHost::Get().host();
  host.frame_cache().ExpireAll();
  host.frames().Dispose(frame);
}

void BM_UncachedFrameInstructions(benchmark::State& state) {
  host_sim::HostFile* clip = FlatClipOfWidth(state.range(0));
  int64_t index = 0;
  while (index < kWarmUpFrames) RequestUncachedFrame(clip, index++);
  CountedStretch counted("uncached_frame/" + std::to_string(state.range(0)), state);
  for (auto _ : state) RequestUncachedFrame(clip, index++);
}

void BM_DirectFrameInstructions(benchmark::State& state) {
  const auto width = static_cast<int32_t>(state.range(0));
  DirectSource source(*FlatClipOfWidth(width), width);
  int64_t index = 0;
  while (index < kWarmUpFrames) source.WriteFrame(index++);
  CountedStretch counted("direct_frame/" + std::to_string(width), state);
  for (auto _ : state) benchmark::DoNotOptimize(source.WriteFrame(index++));
}

void BM_CachedFrame(benchmark::State& state) {
  host_sim::HostFile* clip = FlatClipOfWidth(3840);
  host_sim::Host& host = BenchHost::Get().host();
  PPixHand frame = nullptr;
  clip->RequestFrame(0, {0, 0, kPlanarFormat}, &frame);
  host.frames().Dispose(frame);
  for (auto _ : state) {
    clip->RequestFrame(0, {0, 0, kPlanarFormat}, &frame);
    host.frames().Dispose(frame);
  }
  host.frame_cache().ExpireAll();
}

void BM_CacheLookup(benchmark::State& state) {
  host_sim::HostFile* clip = FlatClipOfWidth(3840);
  host_sim::Host& host = BenchHost::Get().host();
  PPixHand frame = nullptr;
  clip->RequestFrame(0, {0, 0, kPlanarFormat}, &frame);
  host.frames().Dispose(frame);
  const PrSDKPPixCacheSuite* cache = host_sim::FrameCacheSuite();
  const auto importer = static_cast<uint32_t>(clip->importer_id());
  for (auto _ : state) {
    imFrameFormat format = {0, 0, kPlanarFormat};
    cache->GetFrameFromCache(importer, 0, 0, 1, &format, &frame, nullptr, 0);
    host.frames().Dispose(frame);
  }
  host.frame_cache().ExpireAll();
}

constexpr uint32_t kPackedWidth = 7680;
constexpr uint32_t kPackedHeight = 3840;
constexpr uint32_t kPackedRow = kPackedWidth * 4;
constexpr uint32_t kPaddedRow = kPackedRow + 64;

// Spreading a packed frame's rows in place to the pitch, in turns with the same bytes moved in one
// memmove as far up the same buffer as the spreading moves its last row: the farthest any row
// goes, so that neither side has its writes land closer to its reads. Each side is the processor
// time of the one thread that runs both.
void BM_RowSpreadingTurns(benchmark::State& state) {
  std::vector<uint8_t> frame(static_cast<size_t>(kPaddedRow) * kPackedHeight, 1);
  const size_t farthest = size_t{kPaddedRow - kPackedRow} * (kPackedHeight - 1);
  RunInTurns(
      state, ThreadProcessorNanoseconds,
      [&frame] {
        SpreadRowsToPitch(frame.data(), frame.data(), kPaddedRow, 4, kPackedWidth, kPackedHeight);
        benchmark::ClobberMemory();
      },
      [&frame, farthest] {
        std::memmove(frame.data() + farthest, frame.data(), size_t{kPackedRow} * kPackedHeight);
        benchmark::ClobberMemory();
      });
}

}  // namespace

// Timed by hand, so that expiring the cache between frames costs neither side anything.
BENCHMARK(BM_UncachedFrame)->Arg(3840)->Arg(7680)->Unit(benchmark::kMicrosecond)->UseManualTime();
BENCHMARK(BM_DirectFrame)->Arg(3840)->Arg(7680)->Unit(benchmark::kMicrosecond)->UseManualTime();
BENCHMARK(BM_UncachedFrameInstructions)->Arg(3840)->Arg(7680)->Iterations(8);
BENCHMARK(BM_DirectFrameInstructions)->Arg(3840)->Arg(7680)->Iterations(8);
BENCHMARK(BM_CachedFrame)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_CacheLookup)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_RowSpreadingTurns)->Unit(benchmark::kMicrosecond)->UseRealTime();
