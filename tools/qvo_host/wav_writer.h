// WAV files of 32-bit float sound (WAVE_FORMAT_IEEE_FLOAT), channels interleaved, little-endian
// whatever the machine.
#pragma once

#include <cstdint>
#include <fstream>
#include <string>

namespace host_sim {

// The 58 bytes before the samples of a file of `sample_frames` frames: the RIFF heading, an 18-byte
// "fmt " chunk (format 3, 32 bits, no extension), the "fact" chunk that formats other than PCM
// carry, and the "data" heading.
std::string FloatWavHeader(uint16_t channels, uint32_t sample_rate, uint32_t sample_frames);

// The most sample frames a file of `channels` channels can hold within RIFF's 32-bit sizes.
uint32_t MostWavSampleFrames(uint16_t channels);

// Writes one file from start to end. One thread.
class FloatWavWriter {
 public:
  // Creates `path` (UTF-8), replacing any file there, and writes the header for `sample_frames`
  // frames, which the caller then appends. Check ok().
  FloatWavWriter(const std::string& path, uint16_t channels, uint32_t sample_rate,
                 uint32_t sample_frames);

  bool ok() const { return file_.good(); }

  // Appends `frames` sample frames from `channels` (one buffer per channel), interleaving them.
  bool AppendPlanar(const float* const* channels, uint32_t frames);

  // Closes the file; true when every byte reached it and exactly the announced frames were
  // appended.
  bool Finish();

 private:
  std::ofstream file_;
  const uint16_t channels_;
  const uint32_t announced_frames_;
  uint64_t appended_frames_ = 0;
};

}  // namespace host_sim
