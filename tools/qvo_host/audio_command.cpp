#include "qvo_host/audio_command.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <vector>

#include "qvo_host/opened_clip.h"
#include "qvo_host/progress_line.h"
#include "qvo_host/wav_writer.h"

namespace host_sim {
namespace {

// The clip's sound as the information record gives it.
struct Sound {
  uint16_t channels = 0;
  uint32_t sample_rate = 0;
  uint32_t sample_frames = 0;
};

// False, saying why, when the clip has no sound this host can write.
bool SoundOf(const imFileInfoRec8& info, Sound* sound, std::string* error) {
  const int32_t channels = info.audInfo.numChannels;
  const float sample_rate = info.audInfo.sampleRate;
  const int64_t sample_frames = info.audDuration;
  if (info.hasAudio == 0 || channels <= 0 || !(sample_rate >= 1.0f) || sample_frames < 0) {
    *error = "the clip has no sound";
    return false;
  }
  sound->channels = static_cast<uint16_t>(std::min(channels, 65535));
  sound->sample_rate = static_cast<uint32_t>(std::lround(sample_rate));
  if (sample_frames > MostWavSampleFrames(sound->channels)) {
    *error = "the sound is too long for a WAV file";
    return false;
  }
  sound->sample_frames = static_cast<uint32_t>(sample_frames);
  return true;
}

// Reads every block into `wav`; false, saying why, when the plug-in refuses one.
bool ReadAllBlocks(HostFile* file, const Sound& sound, FloatWavWriter* wav) {
  const uint32_t block = sound.sample_rate;
  std::vector<std::vector<float>> channels(sound.channels, std::vector<float>(block));
  std::vector<float*> buffers;
  for (std::vector<float>& channel : channels) buffers.push_back(channel.data());
  ProgressLine progress("sound", sound.sample_frames);
  for (uint32_t done = 0; done < sound.sample_frames;) {
    const uint32_t size = std::min(block, sound.sample_frames - done);
    const int32_t result = file->ReadAudio(done == 0 ? 0 : -1, size, buffers.data());
    if (result != imNoErr) {
      progress.Finish();
      std::fprintf(stderr, "qvo-host: sound at %u: result %d\n", done, result);
      return false;
    }
    if (!wav->AppendPlanar(buffers.data(), size)) return false;
    done += size;
    progress.Update(done);
  }
  progress.Finish();
  return true;
}

}  // namespace

bool ExportAudio(HostSession& session, const std::string& clip_path, const std::string& wav_path) {
  std::string error;
  std::unique_ptr<HostFile> file = OpenDescribedClip(session, clip_path, &error);
  Sound sound;
  if (file == nullptr || !SoundOf(*file->info().record(), &sound, &error)) {
    std::fprintf(stderr, "qvo-host: %s: %s\n", clip_path.c_str(), error.c_str());
    if (file != nullptr) QuietAndClose(file.get());
    return false;
  }
  FloatWavWriter wav(wav_path, sound.channels, sound.sample_rate, sound.sample_frames);
  bool read = wav.ok() && ReadAllBlocks(file.get(), sound, &wav);
  QuietAndClose(file.get());
  if (read && wav.Finish()) return true;
  std::fprintf(stderr, "qvo-host: %s: the sound was not written\n", wav_path.c_str());
  return false;
}

}  // namespace host_sim
