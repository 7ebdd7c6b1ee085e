#include "delivery/sample_file_writer.h"

#include <cstring>

#include "sample_file/sample_file_helpers.h"

PrivateFileRecord RecordFor(const SampleClip& clip) {
  PrivateFileRecord record;
  std::memset(&record, 0, sizeof(record));
  SampleFileHeader& header = record.header;
  header.version = kSampleFileVersion;
  header.has_video = clip.has_video ? 1 : 0;
  header.video_codec = 0x524C455F;
  header.width = clip.width;
  header.height = clip.height;
  header.frame_count = clip.frames;
  header.has_audio = clip.has_audio ? 1 : 0;
  header.sample_rate = clip.sample_rate;
  header.channel_type = clip.channel_type;
  header.sample_frames = clip.sample_frames;
  return record;
}

uint8_t FrameByte(uint32_t frame, uint32_t i) { return static_cast<uint8_t>(frame * 16 + i); }

float SampleValue(int channel, uint64_t n) {
  return static_cast<float>(channel * 1000) + static_cast<float>(n);
}

std::string SampleFileContent(const SampleClip& clip) {
  PrivateFileRecord record = RecordFor(clip);
  std::string bytes(reinterpret_cast<const char*>(&record.header), kSampleFileHeaderSize);
  const uint32_t frame_bytes = static_cast<uint32_t>(clip.width * clip.height * 4);
  for (uint32_t f = 0; f < clip.frames; ++f) {
    for (uint32_t i = 0; i < frame_bytes; ++i)
      bytes += static_cast<char>(FrameByte(clip.first_frame + f, i));
    bytes += "++++";
  }
  for (int c = 0; c < ChannelCountOfType(clip.channel_type); ++c) {
    for (uint64_t n = 0; n < clip.sample_frames; ++n) {
      float value = SampleValue(c, clip.first_sample + n);
      bytes.append(reinterpret_cast<const char*>(&value), sizeof(value));
    }
  }
  return bytes;
}
