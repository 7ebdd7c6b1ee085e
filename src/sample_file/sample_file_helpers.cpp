#include "sample_file/sample_file_helpers.h"

#include <cstring>

#include "host_sdk/premiere_constants.h"
#include "sample_file/sample_file_header.h"

uint32_t BytesPerPixelForCodec(uint32_t /*codec*/) { return 4; }

int32_t ChannelCountOfType(uint32_t channel_type) {
  switch (channel_type) {
    case kPrAudioChannelType_Mono:
      return 1;
    case kPrAudioChannelType_Stereo:
      return 2;
    case kPrAudioChannelType_51:
      return 6;
    default:
      return -1;
  }
}

void ClampAudioRequest(int64_t position, uint32_t size, int64_t total, int64_t* saved_position,
                       int64_t* start, int64_t* count) {
  *start = position < 0 ? *saved_position : position;
  if (*start + size <= total) {
    *count = size;
    *saved_position = *start + size;
  } else {
    *count = total - *start;
    *saved_position = total;
  }
}

uint32_t WriteFileChecked(platform::FileHandle file, const void* buffer, uint32_t* count) {
  uint32_t asked = *count;
  if (!platform::WriteToFile(file, buffer, asked, count)) return platform::LastSystemError();
  return *count != asked ? 4 : 0;
}

uint8_t ReadSampleFrame(platform::FileHandle file, uint32_t frame_bytes, uint32_t frame_index,
                        void* destination) {
  uint32_t offset = static_cast<uint32_t>(kSampleFileHeaderSize) + frame_index * frame_bytes;
  if (frame_index > 0) offset += frame_index * static_cast<uint32_t>(kFrameSeparatorSize);
  // The seek's result is not checked: only the read decides the result.
  platform::SeekFromStart32(file, offset);
  uint32_t read = 0;
  return platform::ReadFromFile(file, destination, frame_bytes, &read) ? 0 : 2;
}
