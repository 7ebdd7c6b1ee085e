// The size-calculation and trimming requests on a sample file whose 602-byte header, also the
// private record's, holds random values, followed by a random body. The input is the host's
// request values, then the file.
//
// Checked beyond the sanitizers: a size asked with a duration is SampleFileBytes of the header,
// without one it is the file's real size; a trim that fails leaves no target behind.
//
// Trimming copies a frame, or one second of sound, at a time through a buffer of that size, and
// reports progress after each; the host's callback here stops it after a few reports, and files
// whose frame or second of sound would take more than kLargestBuffer are not trimmed: those
// buffers are the design, and the real header's sizes come from the stitching library.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "delivery/size_calculation.h"
#include "delivery/trimming.h"
#include "open_files/private_file_record.h"
#include "platform/file_handles.h"
#include "support/temp_folder.h"

namespace {

constexpr double kLargestBuffer = 4.0 * 1024 * 1024;

#pragma pack(push, 1)
struct HostRequest {
  int32_t trim_in;
  int32_t duration;
  int32_t scale;
  int32_t sample_size;
  uint8_t keep;            // bit 0: audio, bit 1: video
  uint8_t progress_calls;  // reports the host lets through before it stops the trim
};
#pragma pack(pop)

struct ProgressBudget {
  int32_t left;
};

int32_t CountDownProgress(int32_t part_done, int32_t total, void* callback_id) {
  if (part_done < 0 || part_done > total) std::abort();
  auto* budget = static_cast<ProgressBudget*>(callback_id);
  return --budget->left > 0 ? imProgressContinue : imProgressAbort;
}

void Check(bool holds) {
  if (!holds) std::abort();
}

// The frame's bytes as the trim counts them, in 32 bits, and a second of one channel's sound.
bool BuffersStaySmall(const SampleFileHeader& header) {
  const uint32_t frame_bytes =
      static_cast<uint32_t>(header.width) * static_cast<uint32_t>(header.height) * 4;
  const double second_bytes = header.sample_rate * 4;
  return frame_bytes <= kLargestBuffer && !(second_bytes > kLargestBuffer);
}

void CheckSizes(PrivateFileRecord* record, const HostRequest& host, const std::u16string& path,
                size_t file_size) {
  imCalcSizeRec request{};
  auto* record_pointer = reinterpret_cast<char*>(record);
  request.privatedata = &record_pointer;
  request.trimIn = host.trim_in;
  request.duration = host.duration;
  request.scale = host.scale;
  request.sampleSize = host.sample_size;
  imFileAccessRec8 access{};
  access.filepath = path.c_str();
  access.fileref = platform::OpenFileForReading(path.c_str());
  Check(CalculateSize(&request, &access) == imNoErr);
  platform::CloseFileHandle(access.fileref);
  const int64_t expected = host.duration != 0 ? SampleFileBytes(record->header, host.duration,
                                                                host.scale, host.sample_size)
                                              : static_cast<int64_t>(file_size);
  Check(request.sizeInBytes == expected);
}

void CheckTrim(PrivateFileRecord* record, const HostRequest& host, const std::u16string& source,
               const std::u16string& target, const std::filesystem::path& target_file) {
  ProgressBudget budget{1 + host.progress_calls % 16};
  imTrimFileRec8 request{};
  auto* record_pointer = reinterpret_cast<char*>(record);
  request.privatedata = &record_pointer;
  request.trimIn = host.trim_in;
  request.duration = host.duration;
  request.keepAudio = host.keep & 1;
  request.keepVideo = (host.keep >> 1) & 1;
  request.destFilePath = target.c_str();
  request.scale = host.scale;
  request.sampleSize = host.sample_size;
  request.progressCallback = CountDownProgress;
  request.progressCallbackID = &budget;
  imFileAccessRec8 access{};
  access.filepath = source.c_str();
  const int32_t result = TrimFile(&access, &request);
  std::error_code error;
  const bool target_left = std::filesystem::exists(target_file, error);
  std::filesystem::remove(target_file, error);
  Check(result == imNoErr || (result == imDiskErr && !target_left));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const TempFolder folder;
  static const std::string source_file = folder.Join("clip.qvo");
  static const std::filesystem::path target_file = folder.Join("trimmed.qvo");
  static const std::u16string source = HostPath(source_file);
  static const std::u16string target = HostPath(target_file.string());
  if (size < sizeof(HostRequest)) return -1;
  HostRequest host;
  std::memcpy(&host, data, sizeof(host));
  const auto* file = reinterpret_cast<const char*>(data + sizeof(host));
  const size_t file_size = size - sizeof(host);
  std::ofstream(source_file, std::ios::binary | std::ios::trunc).write(file, file_size);

  // The record is zero-filled as the plug-in makes it; its header is the file's.
  PrivateFileRecord record{};
  std::memcpy(&record.header, file, std::min(file_size, kSampleFileHeaderSize));
  CheckSizes(&record, host, source, file_size);
  if (BuffersStaySmall(record.header)) CheckTrim(&record, host, source, target, target_file);
  return 0;
}
