#include "qvo_host/check/sound_checks.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "platform/guarded_memory.h"

namespace host_sim {
namespace {

// A quiet NaN with a payload of its own: no library writes it by chance.
constexpr uint32_t kSentinelBits = 0x7FC0DEADu;
constexpr int64_t kLongestRun = 4096;
constexpr size_t kSlack = 64;  // samples after the asked count in each buffer

struct SoundRead {
  int64_t position;  // negative: where the previous read ended
  int64_t size;
  int64_t expected;  // sample frames the plug-in should have written: what remains of the file
};

struct SoundTally {
  int64_t reads = 0;
  int64_t short_reads = 0;  // a channel with a sample of the asked count left unwritten
  int64_t long_reads = 0;   // a channel written past the asked count
  int64_t not_finite = 0;   // samples
};

bool IsSentinel(float sample) {
  uint32_t bits = 0;
  std::memcpy(&bits, &sample, sizeof(bits));
  return bits == kSentinelBits;
}

float Sentinel() {
  float sample = 0;
  std::memcpy(&sample, &kSentinelBits, sizeof(sample));
  return sample;
}

// Start, middle, across the end, then sequential reads from the start.
std::vector<SoundRead> Reads(int64_t total) {
  const int64_t run = std::max<int64_t>(1, std::min(kLongestRun, total));
  const auto remaining = [total, run](int64_t start) {
    return std::max<int64_t>(0, std::min(run, total - start));
  };
  const int64_t middle = total / 2;
  const int64_t across_end = std::max<int64_t>(0, total - run / 2);
  return {{0, run, remaining(0)},
          {middle, run, remaining(middle)},
          {across_end, run, remaining(across_end)},
          {0, run, remaining(0)},
          {-1, run, remaining(run)},
          {-1, run, remaining(2 * run)}};
}

// A channel buffer whose slack ends where an inaccessible page begins: a write past the slack
// faults at its first sample.
class GuardedChannel {
 public:
  explicit GuardedChannel(size_t samples)
      : bytes_(platform::AllocateGuarded(samples * sizeof(float), alignof(float), 0)),
        samples_(bytes_ != nullptr ? samples : 0) {
    std::fill(begin(), end(), Sentinel());
  }
  ~GuardedChannel() { platform::FreeGuarded(bytes_); }
  GuardedChannel(const GuardedChannel&) = delete;
  GuardedChannel& operator=(const GuardedChannel&) = delete;

  float* begin() const { return reinterpret_cast<float*>(bytes_); }
  float* end() const { return begin() + samples_; }

 private:
  uint8_t* bytes_;
  size_t samples_;
};

std::string SoundCall(const SoundRead& read) {
  return "GetAudioFrame position " + std::to_string(read.position) +
         (read.position < 0 ? " (where the last read ended)" : "") + ", count " +
         std::to_string(read.size);
}

void ReadAndTally(HostFile* file, int32_t channels, const SoundRead& read, const std::string& name,
                  CheckJournal* journal, SoundTally* tally) {
  std::vector<std::unique_ptr<GuardedChannel>> buffers;
  std::vector<float*> pointers;
  for (int32_t c = 0; c < channels; ++c) {
    buffers.push_back(std::make_unique<GuardedChannel>(static_cast<size_t>(read.size) + kSlack));
    pointers.push_back(buffers.back()->begin());
  }
  {
    CallScope call(journal, name, SoundCall(read));
    file->ReadAudio(read.position, static_cast<uint32_t>(read.size), pointers.data());
  }
  ++tally->reads;
  bool short_read = false;
  bool long_read = false;
  for (const auto& buffer : buffers) {
    float* written_end = buffer->begin() + read.expected;
    short_read = short_read || std::any_of(buffer->begin(), written_end, IsSentinel);
    long_read = long_read || !std::all_of(written_end, buffer->end(), IsSentinel);
    tally->not_finite += std::count_if(buffer->begin(), written_end, [](float sample) {
      return !IsSentinel(sample) && !std::isfinite(sample);
    });
  }
  tally->short_reads += short_read ? 1 : 0;
  tally->long_reads += long_read ? 1 : 0;
}

}  // namespace

void CheckSound(HostFile* file, const std::string& name, CheckJournal* journal) {
  const imFileInfoRec8& info = *file->info().record();
  const int32_t channels = info.audInfo.numChannels;
  if (info.hasAudio == 0 || channels <= 0) {
    journal->Add(name + " sound: reads", "the file has no sound", true);
    return;
  }
  SoundTally tally;
  const std::vector<SoundRead> reads = Reads(info.audDuration);
  for (const SoundRead& read : reads) ReadAndTally(file, channels, read, name, journal, &tally);
  const std::string of =
      " of " + std::to_string(tally.reads) + " reads, " + std::to_string(channels) + " channels";
  journal->Add(name + " sound: the asked count written",
               std::to_string(tally.short_reads) + " reads short" + of, tally.short_reads == 0);
  journal->Add(name + " sound: nothing written past the count",
               std::to_string(tally.long_reads) + " reads too long" + of, tally.long_reads == 0);
  journal->Add(name + " sound: samples finite",
               std::to_string(tally.not_finite) + " samples not finite", tally.not_finite == 0);
}

}  // namespace host_sim
