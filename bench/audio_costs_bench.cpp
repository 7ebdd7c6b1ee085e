// What a run of sound costs through the plug-in beside the stand-in writing the same buffers
// directly: 1024 sample frames of 2 and of 6 channels.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "bench_host.h"

namespace {

constexpr uint32_t kSampleFrames = 1024;

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

}  // namespace

BENCHMARK(BM_PluginAudio)->Arg(2)->Arg(6)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_DirectAudio)->Arg(2)->Arg(6)->Unit(benchmark::kMicrosecond)->UseRealTime();
