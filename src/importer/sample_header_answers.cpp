#include "importer/sample_header_answers.h"

#include <algorithm>
#include <cstring>

#include "open_files/private_file_record.h"
#include "sample_file/sample_file_helpers.h"

namespace {

// Copies a terminated text into a field of the same or another capacity, as strcpy_s does: a
// text that does not fit leaves the destination empty.
template <size_t N, size_t M>
void CopyBounded(char (&destination)[N], const char (&source)[M]) {
  size_t length = strnlen(source, M);
  if (length >= N || length == M) {
    destination[0] = '\0';
    return;
  }
  std::memcpy(destination, source, length + 1);
}

const char* CodecTextOf(uint32_t video_codec) {
  if (video_codec == static_cast<uint32_t>(imUncompressed)) return "Uncompressed 8-bit RGB";
  if (video_codec == static_cast<uint32_t>(kQuorvelSubType10yu)) {
    return "Uncompressed 10-bit YUV (v410)";
  }
  return "RLE Compressed 8-bit RGB";
}

// The duration of one frame in the table's time base. Rates that divide the host's tick rate
// count whole frames; the NTSC rates count in thousand-and-first parts of a second.
uint32_t FrameSampleSize(const PrivateFileRecord* record) {
  const PrTime ticks_per_frame = static_cast<PrTime>(record->header.frame_duration);
  PrSDKTimeSuite* time = record->time_suite;
  if (time == nullptr || ticks_per_frame <= 0) return 1;
  PrTime ticks_per_second = 0;
  time->GetTicksPerSecond(&ticks_per_second);
  if (ticks_per_second % ticks_per_frame == 0) return 1;
  for (PrVideoFrameRates rate :
       {kVideoFrameRate_NTSC, kVideoFrameRate_NTSC_HD, kVideoFrameRate_24Drop}) {
    PrTime ntsc_ticks = 0;
    time->GetTicksPerVideoFrame(rate, &ntsc_ticks);
    if (ntsc_ticks == ticks_per_frame) return 1001;
  }
  return 1;
}

}  // namespace

int32_t GetPrefs(const imFileAccessRec8* access, imGetPrefsRec* prefs) {
  if (prefs == nullptr) return imNoErr;
  const int32_t length = prefs->prefsLength;
  if (length == 0) {
    prefs->prefsLength = static_cast<int32_t>(kPrivateFileRecordSize);
    return imNoErr;
  }
  // A block shorter than the one asked for has no room for the path.
  if (length < static_cast<int32_t>(kPrivateFileRecordSize) || prefs->prefs == nullptr ||
      access == nullptr || access->filepath == nullptr) {
    return imNoErr;
  }
  auto* block = reinterpret_cast<PrivateFileRecord*>(prefs->prefs);
  CopyHostPath(access->filepath, block->path);
  return imNoErr;
}

int32_t GetCodecText(imAnalysisRec* record) {
  const PrivateFileRecord* private_record = RecordOf(record->privatedata);
  const uint32_t codec = private_record != nullptr ? private_record->header.video_codec : 0;
  const char* text = CodecTextOf(codec);
  const int32_t capacity = record->buffersize;
  if (record->buffer == nullptr || capacity <= 0) return imNoErr;
  // As wcstombs_s without truncation: a text that does not fit leaves the buffer empty.
  const size_t length = std::strlen(text);
  if (length + 1 > static_cast<size_t>(capacity)) {
    record->buffer[0] = '\0';
  } else {
    std::memcpy(record->buffer, text, length + 1);
  }
  return imNoErr;
}

int32_t GetDataRateTable(imDataRateAnalysisRec* record) {
  const PrivateFileRecord* private_record = RecordOf(record->privatedata);
  if (private_record == nullptr) return imNoErr;
  const SampleFileHeader& header = private_record->header;
  if (record->buffer == nullptr) {
    record->buffersize = static_cast<int32_t>(header.frame_count * sizeof(imDataSample));
    return imNoErr;
  }
  record->baserate = 0;
  imDataSample entry;
  entry.sampledur = FrameSampleSize(private_record) | kDataSampleKeyFrame;
  entry.samplesize = static_cast<uint32_t>(header.width) * static_cast<uint32_t>(header.height) *
                     BytesPerPixelForCodec(header.video_codec);
  // Never more entries than the host's buffer holds.
  const int32_t buffer_size = record->buffersize;
  const uint32_t capacity =
      static_cast<uint32_t>(static_cast<size_t>(std::max(buffer_size, 0)) / sizeof(imDataSample));
  const uint32_t entries = std::min(header.frame_count, capacity);
  for (uint32_t i = 0; i < entries; ++i) {
    std::memcpy(record->buffer + i * sizeof(imDataSample), &entry, sizeof(entry));
  }
  return imNoErr;
}

int32_t GetTimeInfo(imTimeInfoRec8* record) {
  const PrivateFileRecord* private_record = RecordOf(record->privatedata);
  if (private_record == nullptr) return imNoErr;
  const SampleFileHeader& header = private_record->header;
  CopyBounded(record->altreel, header.text_field_4);
  CopyBounded(record->alttime, header.text_field_2);
  CopyBounded(record->orgreel, header.text_field_3);
  CopyBounded(record->orgtime, header.text_field_1);
  CopyBounded(record->logcomment, header.text_field_5);
  return imNoErr;
}

int32_t SetTimeInfo(void* file, imTimeInfoRec8* record) {
  PrivateFileRecord* private_record = RecordOf(record->privatedata);
  if (private_record == nullptr) return imNoErr;
  SampleFileHeader& header = private_record->header;
  CopyBounded(header.text_field_4, record->altreel);
  CopyBounded(header.text_field_2, record->alttime);
  CopyBounded(header.text_field_3, record->orgreel);
  CopyBounded(header.text_field_1, record->orgtime);
  CopyBounded(header.text_field_5, record->logcomment);
  uint32_t count = kSampleFileHeaderSize;
  return static_cast<int32_t>(WriteFileChecked(file, &header, &count));
}
