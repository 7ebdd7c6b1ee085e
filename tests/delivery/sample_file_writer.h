// Sample-format files for the tests of the sample-file helpers, sizes and trimming: a header,
// frames each followed by "++++", then each channel's samples. Every byte says where it came from,
// so that a part of a clip, from its first frame and sample on, reads as the trimmed file of it.
#pragma once

#include <cstdint>
#include <string>

#include "open_files/private_file_record.h"

struct SampleClip {
  int32_t width = 4;
  int32_t height = 2;
  uint32_t frames = 5;
  double sample_rate = 10.0;
  uint32_t channel_type = 2;  // stereo
  uint64_t sample_frames = 50;
  uint32_t first_frame = 0;
  uint64_t first_sample = 0;
  bool has_video = true;
  bool has_audio = true;
};

// A private record whose header describes `clip`, as the file-information request leaves it.
PrivateFileRecord RecordFor(const SampleClip& clip);

// Byte `i` of frame `frame`.
uint8_t FrameByte(uint32_t frame, uint32_t i);

// Sample `n` of channel `channel`.
float SampleValue(int channel, uint64_t n);

// The whole file's bytes: frames from `first_frame` on, samples from `first_sample` on.
std::string SampleFileContent(const SampleClip& clip);
