// What `qvo-host frames` takes for a 4K frame of the stand-in's test scene, from the plug-in's
// delivery to the PNG file on disk: the conversion to RGB, the encoding and the write, through the
// same code as the command. Reported as frames per second of wall time, all processors at work, and
// as the processor time a frame takes over all threads, which tells what an idle machine would
// give when others are busy on this one.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <ctime>
#include <vector>

#include "bench_host.h"
#include "qvo_host/frames_command.h"

namespace {

constexpr int32_t kFramesPerRun = 8;

void BM_ExportFrames4K(benchmark::State& state) {
  host_sim::HostFile* clip =
      BenchHost::Get().OpenClip(R"({"width": 3840, "height": 1920, "frames": 1000000})");
  TempFolder folder;
  // The progress line has nobody to show it to here.
  std::FILE* nowhere = std::fopen("/dev/null", "w");
  host_sim::FramesExport request;
  request.pixel_format = kPlanarFormat;
  request.folder = folder.path().u8string();
  int64_t frames = 0;
  std::clock_t processor = 0;
  for (auto _ : state) {
    const std::clock_t start = std::clock();
    request.first_frame = static_cast<int32_t>(frames);
    request.end_frame = request.first_frame + kFramesPerRun;
    host_sim::ProgressLine progress("frame", kFramesPerRun, nowhere, false);
    std::vector<host_sim::RgbImage> thumbnails;
    if (!host_sim::ExportFrameRange(BenchHost::Get().session(), clip, request, &progress,
                                    &thumbnails)) {
      state.SkipWithError("a frame was not exported");
      break;
    }
    frames += kFramesPerRun;
    processor += std::clock() - start;
    state.PauseTiming();
    BenchHost::Get().host().frame_cache().ExpireAll();
    state.ResumeTiming();
  }
  std::fclose(nowhere);
  if (frames == 0) return;
  state.counters["frames_per_second"] =
      benchmark::Counter(static_cast<double>(frames), benchmark::Counter::kIsRate);
  state.counters["processor_ms_per_frame"] =
      1000.0 * static_cast<double>(processor) / CLOCKS_PER_SEC / static_cast<double>(frames);
}
BENCHMARK(BM_ExportFrames4K)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
