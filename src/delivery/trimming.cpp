#include "delivery/trimming.h"

#include <algorithm>
#include <vector>

#include "delivery/saturating_arithmetic.h"
#include "open_files/private_file_record.h"
#include "platform/file_handles.h"
#include "sample_file/sample_file_helpers.h"

namespace {

constexpr int32_t kProgressTotal = 100;

// The part of the clip to keep, in frames (or, without video, in sample frames).
struct TrimRange {
  int64_t first_frame = 0;
  int64_t frame_count = 0;
  int64_t first_sample = 0;
  int64_t sample_count = 0;
};

class Progress {
 public:
  explicit Progress(const imTrimFileRec8* request)
      : callback_(request->progressCallback), id_(request->progressCallbackID) {}

  // False when the host asks to stop.
  bool Report(int64_t done_in_half, int64_t half_total, int32_t half_start) const {
    if (callback_ == nullptr) return true;
    const int64_t half = kProgressTotal / 2;
    int32_t part =
        half_start + static_cast<int32_t>(half_total > 0 ? done_in_half * half / half_total : half);
    return callback_(part, kProgressTotal, id_) != imProgressAbort;
  }

 private:
  importProgressFunc callback_;
  void* id_;
};

int64_t SampleOfFrame(int64_t frame, const SampleFileHeader& header, int32_t scale,
                      int32_t sample_size) {
  if (scale == 0) return 0;
  return SaturatingFromDouble(static_cast<double>(frame) * header.sample_rate * sample_size /
                              scale);
}

// The length of the clip in the trim's units: frames, or sample frames without video.
int64_t ClipUnits(const SampleFileHeader& header) {
  return header.has_video != 0 ? header.frame_count : static_cast<int64_t>(header.sample_frames);
}

// False when the range is empty or starts outside the clip.
bool RangeOf(const SampleFileHeader& header, const imTrimFileRec8* request, TrimRange* range) {
  const int64_t trim_in = request->trimIn;
  const int64_t duration = request->duration;
  const int64_t units = ClipUnits(header);
  if (trim_in < 0 || duration < 0 || trim_in >= units) return false;
  const int64_t end = duration == 0 ? units : std::min(units, trim_in + duration);
  if (header.has_video == 0) {
    range->first_sample = trim_in;
    range->sample_count = end - trim_in;
    return true;
  }
  range->first_frame = trim_in;
  range->frame_count = end - trim_in;
  const int64_t total_samples = static_cast<int64_t>(header.sample_frames);
  range->first_sample =
      std::min(total_samples, SampleOfFrame(trim_in, header, request->scale, request->sampleSize));
  const int64_t end_sample =
      end == units ? total_samples
                   : std::min(total_samples,
                              SampleOfFrame(end, header, request->scale, request->sampleSize));
  range->sample_count = std::max<int64_t>(0, SaturatingSubtract(end_sample, range->first_sample));
  return true;
}

// How a copy ended: a stop by the host is not a failure.
enum class CopyOutcome { kDone, kStopped, kFailed };

bool WriteAll(platform::FileHandle file, const void* bytes, uint32_t count) {
  uint32_t written = count;
  return WriteFileChecked(file, bytes, &written) == 0;
}

class TrimWriter {
 public:
  TrimWriter(platform::FileHandle source, platform::FileHandle target,
             const SampleFileHeader& header, const Progress& progress)
      : source_(source), target_(target), header_(header), progress_(progress) {}

  // The header, the frames, then the sound. When the host stops the copy, the frames copied so
  // far are kept and the header is written again to describe just them: the sound, which comes
  // after every frame, is then incomplete or missing.
  CopyOutcome Copy(const TrimRange& range, bool keep_video, bool keep_audio) {
    if (!WriteHeader(range.frame_count, keep_video, range.sample_count, keep_audio)) {
      return CopyOutcome::kFailed;
    }
    int64_t frames_copied = 0;
    CopyOutcome outcome = keep_video ? CopyFrames(range, &frames_copied) : CopyOutcome::kDone;
    if (outcome == CopyOutcome::kDone && keep_audio) outcome = CopyAudio(range);
    if (outcome != CopyOutcome::kStopped) return outcome;
    return platform::SeekFromStart64(target_, 0) && WriteHeader(frames_copied, keep_video, 0, false)
               ? CopyOutcome::kStopped
               : CopyOutcome::kFailed;
  }

 private:
  bool WriteHeader(int64_t frame_count, bool keep_video, int64_t sample_count, bool keep_audio) {
    SampleFileHeader trimmed = header_;
    trimmed.frame_count = keep_video ? static_cast<uint32_t>(frame_count) : 0;
    trimmed.has_video = keep_video ? header_.has_video : 0;
    trimmed.sample_frames = keep_audio ? static_cast<uint64_t>(sample_count) : 0;
    trimmed.has_audio = keep_audio ? header_.has_audio : 0;
    return WriteAll(target_, &trimmed, kSampleFileHeaderSize);
  }

  CopyOutcome CopyFrames(const TrimRange& range, int64_t* frames_copied) {
    const uint32_t frame_bytes = FrameBytes();
    std::vector<uint8_t> frame(frame_bytes);
    for (int64_t k = 0; k < range.frame_count; ++k) {
      const auto index = static_cast<uint32_t>(range.first_frame + k);
      if (ReadSampleFrame(source_, frame_bytes, index, frame.data()) != 0) {
        return CopyOutcome::kFailed;
      }
      if (!WriteAll(target_, frame.data(), frame_bytes) ||
          !WriteAll(target_, kFrameSeparator, kFrameSeparatorSize)) {
        return CopyOutcome::kFailed;
      }
      *frames_copied = k + 1;
      if (!progress_.Report(k + 1, range.frame_count, 0)) return CopyOutcome::kStopped;
    }
    return CopyOutcome::kDone;
  }

  // Channel after channel, in blocks of at most one second.
  CopyOutcome CopyAudio(const TrimRange& range) {
    const int32_t channels = ChannelCountOfType(header_.channel_type);
    if (channels <= 0 || range.sample_count <= 0) return CopyOutcome::kDone;
    const int64_t block_samples = std::max<int64_t>(1, SaturatingFromDouble(header_.sample_rate));
    const int64_t blocks_per_channel =
        range.sample_count / block_samples + (range.sample_count % block_samples != 0 ? 1 : 0);
    const int64_t total_blocks = SaturatingMultiply(blocks_per_channel, channels);
    std::vector<float> block(static_cast<size_t>(std::min(block_samples, range.sample_count)));
    int64_t done = 0;
    for (int32_t channel = 0; channel < channels; ++channel) {
      for (int64_t first = 0; first < range.sample_count;
           first = SaturatingAdd(first, block_samples)) {
        const int64_t samples = std::min(block_samples, range.sample_count - first);
        const auto bytes = static_cast<uint32_t>(samples * sizeof(float));
        const int64_t offset = AudioOffset(channel, range.first_sample + first);
        uint32_t read = 0;
        if (!platform::SeekFromStart64(source_, offset) ||
            !platform::ReadFromFile(source_, block.data(), bytes, &read) ||
            !WriteAll(target_, block.data(), bytes)) {
          return CopyOutcome::kFailed;
        }
        if (!progress_.Report(++done, total_blocks, kProgressTotal / 2)) {
          return CopyOutcome::kStopped;
        }
      }
    }
    return CopyOutcome::kDone;
  }

  uint32_t FrameBytes() const {
    return static_cast<uint32_t>(header_.width) * static_cast<uint32_t>(header_.height) *
           BytesPerPixelForCodec(header_.video_codec);
  }

  // Where a channel's sample lies in the source: after every frame and its separator, the
  // channels one after another.
  int64_t AudioOffset(int32_t channel, int64_t sample) const {
    const int64_t frames_end =
        SaturatingAdd(static_cast<int64_t>(kSampleFileHeaderSize),
                      SaturatingMultiply(header_.frame_count,
                                         static_cast<int64_t>(FrameBytes()) + kFrameSeparatorSize));
    const auto total = static_cast<int64_t>(header_.sample_frames);
    const int64_t channel_start = SaturatingMultiply(channel, total);
    return SaturatingAdd(frames_end, SaturatingMultiply(SaturatingAdd(channel_start, sample),
                                                        static_cast<int64_t>(sizeof(float))));
  }

  platform::FileHandle source_;
  platform::FileHandle target_;
  const SampleFileHeader& header_;
  const Progress& progress_;
};

bool CoversWholeClip(const SampleFileHeader& header, const imTrimFileRec8* request) {
  const int64_t units = ClipUnits(header);
  const int32_t duration = request->duration;
  return request->trimIn == 0 && (duration == 0 || duration >= units);
}

}  // namespace

int32_t TrimFile(const imFileAccessRec8* source, const imTrimFileRec8* request) {
  const PrivateFileRecord* record = RecordOf(request->privatedata);
  const SampleFileHeader& header = record->header;
  const char16_t* source_path = source->filepath;
  const char16_t* target_path = request->destFilePath;
  if (CoversWholeClip(header, request)) {
    return platform::CopyFileNoReplace(source_path, target_path) ? imNoErr : imDiskErr;
  }
  TrimRange range;
  if (!RangeOf(header, request, &range)) return imDiskErr;

  platform::FileHandle source_file = platform::OpenFileForReading(source_path);
  if (source_file == platform::InvalidFileHandle()) return imDiskErr;
  platform::FileHandle target_file = platform::CreateNewFileForWriting(target_path);
  if (target_file == platform::InvalidFileHandle()) {
    platform::CloseFileHandle(source_file);
    return imDiskErr;
  }
  const Progress progress(request);
  TrimWriter writer(source_file, target_file, header, progress);
  const bool keep_video = request->keepVideo != 0 && header.has_video != 0;
  const bool keep_audio = request->keepAudio != 0 && header.has_audio != 0;
  const CopyOutcome outcome = writer.Copy(range, keep_video, keep_audio);
  platform::CloseFileHandle(target_file);
  platform::CloseFileHandle(source_file);
  if (outcome == CopyOutcome::kFailed) {
    platform::DeleteFileAt(target_path);
    return imDiskErr;
  }
  return imNoErr;
}
