// What one frame request costs the host through the plug-in file: a 4K planar frame stitched
// into a host frame (the stand-in's cheapest picture, so the importer's own work shows), the same
// frame answered from the host's cache, and one second of sound.
#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "host_sim/host_file.h"
#include "host_sim/host_session.h"
#include "host_sim/plugin_module.h"
#include "support/temp_folder.h"

namespace {

constexpr PrPixelFormat kPlanar = 0x46317659;
constexpr PrPixelFormat kBgra = 0x61726762;

struct OpenClip {
  OpenClip() : plugin(host_sim::DefaultPluginPath()), session(plugin, 23) {
    path = folder.WriteFile("bench.qvo",
                            R"({"width": 3840, "height": 1920, "frames": 100000, "render": "flat",
            "audio": {"rate": 48000, "channels": 2}})");
    int32_t last_result = 0;
    session.FileTypes(&last_result);
    clip =
        std::make_unique<host_sim::HostFile>(session, path, session.FileTypeFor(path)->file_type);
    clip->Open();
    clip->GetInfo();
  }

  ~OpenClip() { clip->Close(); }

  TempFolder folder;
  std::string path;
  host_sim::PluginModule plugin;
  host_sim::HostSession session;
  std::unique_ptr<host_sim::HostFile> clip;
};

void StitchedFrame(benchmark::State& state, PrPixelFormat format) {
  OpenClip open;
  host_sim::Host& host = open.session.host();
  int64_t index = 0;
  for (auto _ : state) {
    PPixHand frame = nullptr;
    open.clip->RequestFrame(index++ * open.clip->TicksPerFrame(), {0, 0, format}, &frame);
    state.PauseTiming();
    host.frame_cache().ExpireAll();
    host.frames().Dispose(frame);
    state.ResumeTiming();
  }
  const int64_t pixels = 3840 * 1920;
  state.SetBytesProcessed(state.iterations() * (format == kPlanar ? pixels * 3 / 2 : pixels * 4));
}

void BM_StitchedPlanarFrame(benchmark::State& state) { StitchedFrame(state, kPlanar); }
void BM_StitchedPackedFrame(benchmark::State& state) { StitchedFrame(state, kBgra); }

void BM_CachedFrame(benchmark::State& state) {
  OpenClip open;
  PPixHand frame = nullptr;
  open.clip->RequestFrame(0, {0, 0, kPlanar}, &frame);
  for (auto _ : state) {
    open.clip->RequestFrame(0, {0, 0, kPlanar}, &frame);
    benchmark::DoNotOptimize(frame);
    open.session.host().frames().Dispose(frame);
  }
}

void BM_OneSecondOfSound(benchmark::State& state) {
  OpenClip open;
  std::vector<float> left(48000);
  std::vector<float> right(48000);
  float* buffers[2] = {left.data(), right.data()};
  for (auto _ : state) {
    open.clip->ReadAudio(0, 48000, buffers);
    benchmark::DoNotOptimize(left.data());
  }
}

BENCHMARK(BM_StitchedPlanarFrame)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StitchedPackedFrame)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CachedFrame)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_OneSecondOfSound)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
