#include "delivery/size_calculation.h"

#include "delivery/saturating_arithmetic.h"
#include "open_files/private_file_record.h"
#include "platform/file_handles.h"
#include "sample_file/sample_file_helpers.h"

int64_t SampleFileBytes(const SampleFileHeader& header, int32_t duration, int32_t scale,
                        int32_t sample_size) {
  const int64_t frame_bytes = SaturatingMultiply(SaturatingMultiply(header.width, header.height),
                                                 BytesPerPixelForCodec(header.video_codec));
  int64_t video_bytes = 0;
  if (header.has_video != 0 && scale != 0) {
    video_bytes = SaturatingDivide(
        SaturatingMultiply(SaturatingAdd(frame_bytes, static_cast<int64_t>(kFrameSeparatorSize)),
                           duration),
        scale);
  }
  int64_t audio_bytes = 0;
  if (header.has_audio != 0) {
    int64_t samples = duration;
    if (header.has_video != 0 && sample_size != 0) {
      samples = SaturatingFromDouble(header.sample_rate * duration / sample_size);
    }
    audio_bytes =
        SaturatingMultiply(SaturatingMultiply(samples, ChannelCountOfType(header.channel_type)),
                           static_cast<int64_t>(sizeof(float)));
  }
  return SaturatingAdd(SaturatingAdd(video_bytes, audio_bytes),
                       static_cast<int64_t>(kSampleFileHeaderSize));
}

int32_t CalculateSize(imCalcSizeRec* request, const imFileAccessRec8* access) {
  if (request == nullptr) return imMemErr;
  const int32_t duration = request->duration;
  if (duration != 0) {
    const PrivateFileRecord* record = RecordOf(request->privatedata);
    if (record == nullptr) return imMemErr;
    request->sizeInBytes =
        SampleFileBytes(record->header, duration, request->scale, request->sampleSize);
    return imNoErr;
  }
  int64_t size = 0;
  if (access == nullptr || !platform::FileSize64(access->fileref, &size)) return imMemErr;
  request->sizeInBytes = size;
  return imNoErr;
}
