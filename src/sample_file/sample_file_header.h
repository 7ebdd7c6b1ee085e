// The 602-byte header of the sample file format. The same record forms the first 602 bytes of
// every open file's PrivateFileRecord, and it is written as it stands to the files that the
// trimming request and the request that stores the text fields write: byte-packed, no gaps,
// little-endian.
//
// Body of a sample file, after the header: the video frames in order, each of
// width * height * 4 bytes and each followed by kFrameSeparator, so that frame i (from 0) starts at
// byte kSampleFileHeaderSize + i * (frame bytes + 4); then the audio samples, one channel after
// another, 4 bytes a sample.
#pragma once

#include <cstddef>
#include <cstdint>

constexpr size_t kSampleFileHeaderSize = 602;

// The only version whose picture and sound fields the file-information request fills.
constexpr int32_t kSampleFileVersion = 5;

// Follows every frame of a sample file; the terminator is not part of the file.
constexpr char kFrameSeparator[] = "++++";
constexpr size_t kFrameSeparatorSize = sizeof(kFrameSeparator) - 1;

#pragma pack(push, 1)
struct SampleFileHeader {
  // "PREMIERE SDK_FILE " in the format's description; the importer never sets or checks it, so
  // it stays as the record was created (zero-filled).
  char signature[18];
  int32_t version;  // kSampleFileVersion
  uint32_t has_audio;
  uint32_t audio_codec;  // four-character code
  uint32_t has_video;
  uint32_t video_codec;   // four-character code
  uint32_t pixel_format;  // host pixel-format code
  uint32_t depth;         // bits per pixel
  int32_t width;
  int32_t height;
  uint32_t frame_count;
  uint64_t sample_frames;   // the clip's total audio sample frames
  uint32_t channel_type;    // host audio channel-type code, see ChannelCountOfType
  uint64_t frame_duration;  // host time ticks
  double sample_rate;
  uint32_t field_type;
  uint32_t aspect_numerator;
  uint32_t aspect_denominator;
  // Zero-terminated texts exchanged with the host's record of selectors 52 and 53.
  char text_field_1[18];
  char text_field_2[18];
  char text_field_3[40];
  char text_field_4[40];
  char text_field_5[256];
  uint8_t reserved[132];  // never read or written
};
#pragma pack(pop)

static_assert(offsetof(SampleFileHeader, signature) == 0, "sample file header layout");
static_assert(offsetof(SampleFileHeader, version) == 18, "sample file header layout");
static_assert(offsetof(SampleFileHeader, has_audio) == 22, "sample file header layout");
static_assert(offsetof(SampleFileHeader, audio_codec) == 26, "sample file header layout");
static_assert(offsetof(SampleFileHeader, has_video) == 30, "sample file header layout");
static_assert(offsetof(SampleFileHeader, video_codec) == 34, "sample file header layout");
static_assert(offsetof(SampleFileHeader, pixel_format) == 38, "sample file header layout");
static_assert(offsetof(SampleFileHeader, depth) == 42, "sample file header layout");
static_assert(offsetof(SampleFileHeader, width) == 46, "sample file header layout");
static_assert(offsetof(SampleFileHeader, height) == 50, "sample file header layout");
static_assert(offsetof(SampleFileHeader, frame_count) == 54, "sample file header layout");
static_assert(offsetof(SampleFileHeader, sample_frames) == 58, "sample file header layout");
static_assert(offsetof(SampleFileHeader, channel_type) == 66, "sample file header layout");
static_assert(offsetof(SampleFileHeader, frame_duration) == 70, "sample file header layout");
static_assert(offsetof(SampleFileHeader, sample_rate) == 78, "sample file header layout");
static_assert(offsetof(SampleFileHeader, field_type) == 86, "sample file header layout");
static_assert(offsetof(SampleFileHeader, aspect_numerator) == 90, "sample file header layout");
static_assert(offsetof(SampleFileHeader, aspect_denominator) == 94, "sample file header layout");
static_assert(offsetof(SampleFileHeader, text_field_1) == 98, "sample file header layout");
static_assert(offsetof(SampleFileHeader, text_field_2) == 116, "sample file header layout");
static_assert(offsetof(SampleFileHeader, text_field_3) == 134, "sample file header layout");
static_assert(offsetof(SampleFileHeader, text_field_4) == 174, "sample file header layout");
static_assert(offsetof(SampleFileHeader, text_field_5) == 214, "sample file header layout");
static_assert(offsetof(SampleFileHeader, reserved) == 470, "sample file header layout");
static_assert(sizeof(SampleFileHeader) == kSampleFileHeaderSize, "sample file header size");
