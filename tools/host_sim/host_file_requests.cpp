// The content requests of a HostFile: frames, preferred sizes, sound, size calculation and
// trimming.
#include "host_sim/host_file.h"
#include "host_sim/media_request_records.h"
#include "host_sim/time_suite.h"

namespace host_sim {
namespace {

using ProgressFunction = std::function<bool(int32_t, int32_t)>;

// The C callback the host hands the plug-in; the callback ID is the caller's ProgressFunction.
int32_t ReportTrimProgress(int32_t part_done, int32_t total, void* callback_id) {
  const auto* progress = static_cast<const ProgressFunction*>(callback_id);
  return (*progress)(part_done, total) ? imProgressContinue : imProgressAbort;
}

}  // namespace

int32_t HostFile::RequestFrame(PrTime time, imFrameFormat format, PPixHand* frame) {
  last_frame_format_ = format;
  return RequestFrame(time, &last_frame_format_, frame);
}

int32_t HostFile::RequestFrame(PrTime time, imFrameFormat* format, PPixHand* frame) {
  *frame = nullptr;
  imSourceVideoRec record =
      MakeSourceVideoRecord(private_data_, PrefsOrNull(), PrefsSize(), time, format, frame);
  return session_.Call(imGetSourceVideo, file_ref_, &record);
}

PrTime HostFile::TicksPerFrame() const {
  const int64_t scale = info_->record()->vidScale;
  const int64_t sample_size = info_->record()->vidSampleSize;
  PrTime ticks_per_second = 0;
  if (scale <= 0 || sample_size <= 0 ||
      TimeSuite()->GetTicksPerSecond(&ticks_per_second) != suiteError_NoError) {
    return 0;
  }
  // Split so that no product overflows: the remainder is below scale, itself below 2^31.
  return ticks_per_second / scale * sample_size + ticks_per_second % scale * sample_size / scale;
}

int32_t HostFile::PreferredFrameSize(int32_t index, int32_t* width, int32_t* height) {
  imPreferredFrameSizeRec record =
      MakePreferredFrameSizeRecord(private_data_, PrefsOrNull(), index);
  int32_t result = session_.Call(imGetPreferredFrameSize, &record, nullptr);
  if (result == imNoErr) {
    *width = record.outWidth;
    *height = record.outHeight;
  }
  return result;
}

int32_t HostFile::ReadAudio(PrAudioSample position, uint32_t size, float** buffers) {
  imImportAudioRec7 record = MakeAudioRecord(private_data_, PrefsOrNull(), position, size, buffers);
  return session_.Call(imImportAudio7, file_ref_, &record);
}

int32_t HostFile::CalculateSize(int32_t trim_in, int32_t duration, int32_t scale,
                                int32_t sample_size, imFileRef file_handle,
                                int64_t* size_in_bytes) {
  imCalcSizeRec record =
      MakeCalcSizeRecord(private_data_, PrefsOrNull(), trim_in, duration, scale, sample_size);
  imFileAccessRec8 access = MakeAccessRecord(this, file_type_, host_path_, file_handle);
  int32_t result = session_.Call(imCalcSize8, &record, &access);
  *size_in_bytes = record.sizeInBytes;
  return result;
}

int32_t HostFile::CheckTrim() {
  const imFileInfoRec8& info = *info_->record();
  const bool has_video = info.hasVideo != 0;
  const bool has_audio = info.hasAudio != 0;
  int32_t scale = static_cast<int32_t>(info.audInfo.sampleRate);
  int32_t sample_size = 1;
  int32_t duration = static_cast<int32_t>(info.audDuration);
  if (has_video) {
    scale = info.vidScale;
    sample_size = info.vidSampleSize;
    duration = sample_size > 0 ? info.vidDuration / sample_size : 0;
  }
  imCheckTrimRec record = MakeCheckTrimRecord(private_data_, PrefsOrNull(), 0, duration, has_audio,
                                              has_video, scale, sample_size);
  imFileAccessRec8 access = AccessRecord();
  return session_.Call(imCheckTrim8, &record, &access);
}

int32_t HostFile::Trim(int32_t trim_in, int32_t duration, bool keep_audio, bool keep_video,
                       const std::string& destination, int32_t scale, int32_t sample_size,
                       std::function<bool(int32_t part_done, int32_t total)> progress) {
  const std::u16string destination_path = HostWidePath(destination);
  TrimRequest request;
  request.trim_in = trim_in;
  request.duration = duration;
  request.keep_audio = keep_audio;
  request.keep_video = keep_video;
  request.destination = &destination_path;
  request.scale = scale;
  request.sample_size = sample_size;
  if (progress) {
    request.progress = ReportTrimProgress;
    request.progress_id = &progress;
  }
  imFileAccessRec8 source = AccessRecord();
  imTrimFileRec8 record = MakeTrimRecord(private_data_, PrefsOrNull(), request);
  return session_.Call(imTrimFile8, &source, &record);
}

}  // namespace host_sim
