// What a run of sound costs through the plug-in beside the stand-in writing the same buffers
// directly: 1024 sample frames of 2 and of 6 channels, in time and in instructions counted under
// callgrind.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "bench_host.h"
#include "counted_stretch.h"

namespace {

constexpr uint32_t kSampleFrames = 1024;
// Requests after the first few, whose first-touched pages and caches made are not a request's.
constexpr int kWarmUpRequests = 16;

host_sim::HostFile* ClipWithChannels(int64_t channels) {
  static host_sim::HostFile* clips[7] = {};
  host_sim::HostFile*& clip = clips[channels];
  if (clip == nullptr) {
    clip = BenchHost::Get().OpenClip(
        R"({"width": 64, "height": 32, "frames": 1000, "audio": {"rate": 48000, "channels": )" +
        std::to_string(channels) + "}}");
  }
  return clip;
}

struct ChannelBuffers {
  explicit ChannelBuffers(int64_t channels) : samples(static_cast<size_t>(channels)) {
    for (std::vector<float>& channel : samples) {
      channel.resize(kSampleFrames);
      pointers.push_back(channel.data());
    }
  }
  std::vector<std::vector<float>> samples;
  std::vector<float*> pointers;
};

void BM_PluginAudio(benchmark::State& state) {
  host_sim::HostFile* clip = ClipWithChannels(state.range(0));
  ChannelBuffers buffers(state.range(0));
  for (auto _ : state) {
    benchmark::DoNotOptimize(clip->ReadAudio(0, kSampleFrames, buffers.pointers.data()));
  }
}

void BM_DirectAudio(benchmark::State& state) {
  DirectSource source(*ClipWithChannels(state.range(0)));
  ChannelBuffers buffers(state.range(0));
  for (auto _ : state) {
    benchmark::DoNotOptimize(source->GetAudioFrame(0, kSampleFrames, buffers.pointers.data()));
  }
}

void BM_PluginAudioInstructions(benchmark::State& state) {
  host_sim::HostFile* clip = ClipWithChannels(state.range(0));
  ChannelBuffers buffers(state.range(0));
  for (int i = 0; i < kWarmUpRequests; ++i) {
    clip->ReadAudio(0, kSampleFrames, buffers.pointers.data());
  }
  CountedStretch counted("plugin_audio/" + std::to_string(state.range(0)), state);
  for (auto _ : state) {
    benchmark::DoNotOptimize(clip->ReadAudio(0, kSampleFrames, buffers.pointers.data()));
  }
}

void BM_DirectAudioInstructions(benchmark::State& state) {
  DirectSource source(*ClipWithChannels(state.range(0)));
  ChannelBuffers buffers(state.range(0));
  for (int i = 0; i < kWarmUpRequests; ++i) {
    source->GetAudioFrame(0, kSampleFrames, buffers.pointers.data());
  }
  CountedStretch counted("direct_audio/" + std::to_string(state.range(0)), state);
  for (auto _ : state) {
    benchmark::DoNotOptimize(source->GetAudioFrame(0, kSampleFrames, buffers.pointers.data()));
  }
}

}  // namespace

BENCHMARK(BM_PluginAudio)->Arg(2)->Arg(6)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_DirectAudio)->Arg(2)->Arg(6)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_PluginAudioInstructions)->Arg(2)->Arg(6)->Iterations(1000);
BENCHMARK(BM_DirectAudioInstructions)->Arg(2)->Arg(6)->Iterations(1000);
