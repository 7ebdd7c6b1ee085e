// The file-information and frame selectors with the host's records filled with random values
// wherever a host writes before the call: every byte of the information record and of each frame
// request, the wanted formats, the interface version, the importer ID and the preferred-size
// question. Pointers stay the host's real ones: the private data the plug-in handed out, the
// frame slot, the formats array and its count. Each input opens one of a few stand-in projects
// through the plug-in's own selectors under a fresh host, asks for its information, up to four
// frames and a preferred size, and closes it; the host must then have seen no misused frame, no
// write outside one and no misuse of its memory functions.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "fuzz_profile.h"
#include "host_sdk/premiere_importer.h"
#include "host_sim/host.h"
#include "host_sim/host_records.h"
#include "host_sim/media_request_records.h"

extern "C" int32_t xImportEntry(int32_t selector, imStdParms* std_parms, void* param1,
                                void* param2);

namespace {

constexpr int32_t kMostFrameRequests = 4;
constexpr int32_t kMostFrameFormats = 4;

// Small pictures, so that a frame costs little: mono with sound, stereo without, an odd size with
// six channels, one whose first fetch of frame 0 fails, and a single frame of 2 x 2 at 1 fps.
const char* const kProjects[] = {
    R"({"width": 64, "height": 32, "fps": 29.97, "frames": 30})",
    R"({"width": 48, "height": 48, "fps": 25, "frames": 10, "stereo": true, "audio": null})",
    R"({"width": 33, "height": 17, "fps": 23.976, "frames": 5, "audio": {"rate": 44100, "channels": 6}})",
    R"({"width": 16, "height": 8, "fps": 60, "frames": 3, "faults": {"video_fail_once": [0]}})",
    R"({"width": 2, "height": 2, "fps": 1, "frames": 1, "audio": null})",
};
constexpr size_t kProjectCount = sizeof(kProjects) / sizeof(kProjects[0]);

void Check(bool holds) {
  if (!holds) std::abort();
}

// The bytes of `record` from the input, as far as it reaches; zero beyond.
template <typename Record>
void FillFromInput(FuzzedDataProvider& input, Record* record, size_t size = sizeof(Record)) {
  std::vector<uint8_t> bytes = input.ConsumeBytes<uint8_t>(size);
  bytes.resize(size, 0);
  std::memcpy(static_cast<void*>(record), bytes.data(), size);
}

const std::vector<std::u16string>& ProjectPaths() {
  static FuzzProfile* const profile = new FuzzProfile();
  static const std::vector<std::u16string> paths = [] {
    std::vector<std::u16string> written;
    for (size_t i = 0; i < kProjectCount; ++i) {
      const std::string name = "clip" + std::to_string(i) + ".qvo";
      std::ofstream(profile->adobe_folder() / name) << kProjects[i];
      written.push_back(host_sim::HostWidePath((profile->adobe_folder() / name).string()));
    }
    return written;
  }();
  return paths;
}

class OpenedFile {
 public:
  OpenedFile(host_sim::Host& host, const std::u16string& path, int32_t importer_id)
      : host_(host), path_(path) {
    imFileAccessRec8 access = host_sim::MakeAccessRecord(this, 0, path_, file_ref_);
    imFileOpenRec8 record = host_sim::MakeOpenRecord(access, nullptr, importer_id);
    opened_ = Call(imOpenFile8, &file_ref_, &record) == imNoErr;
    private_data_ = record.privatedata;
  }

  ~OpenedFile() {
    if (opened_) Call(imCloseFile, &file_ref_, private_data_);
  }

  bool opened() const { return opened_; }

  void AskForInformation(FuzzedDataProvider& input) {
    host_sim::FileInfoBlock block(0, nullptr);
    FillFromInput(input, block.record());
    block.record()->privatedata = private_data_;
    block.record()->prefs = nullptr;
    imFileAccessRec8 access = host_sim::MakeAccessRecord(this, 0, path_, file_ref_);
    Call(imGetInfo8, &access, block.record());
    private_data_ = block.record()->privatedata;
  }

  void AskForFrame(FuzzedDataProvider& input) {
    std::vector<imFrameFormat> formats(input.ConsumeIntegralInRange(0, kMostFrameFormats));
    for (imFrameFormat& format : formats) FillFromInput(input, &format);
    PPixHand frame = nullptr;
    imSourceVideoRec request;
    FillFromInput(input, &request);
    request.inPrivateData = private_data_;
    request.inFrameFormats = formats.empty() ? nullptr : formats.data();
    request.inNumFrameFormats = static_cast<int32_t>(formats.size());
    request.outFrame = &frame;
    request.prefs = nullptr;
    request.prefsSize = 0;
    Call(imGetSourceVideo, file_ref_, &request);
  }

  void AskForPreferredSize(FuzzedDataProvider& input) {
    imPreferredFrameSizeRec request = host_sim::MakePreferredFrameSizeRecord(
        private_data_, nullptr, input.ConsumeIntegral<int32_t>());
    request.inPixelFormat = input.ConsumeIntegral<PrPixelFormat>();
    Call(imGetPreferredFrameSize, &request, nullptr);
  }

 private:
  int32_t Call(int32_t selector, void* param1, void* param2) {
    return xImportEntry(selector, host_.std_parms(), param1, param2);
  }

  host_sim::Host& host_;
  const std::u16string path_;
  imFileRef file_ref_ = reinterpret_cast<imFileRef>(kBadFileRef);
  void* private_data_ = nullptr;
  bool opened_ = false;
};

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  ProjectPaths();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider input(data, size);
  const std::u16string& path =
      ProjectPaths()[input.ConsumeIntegralInRange<size_t>(0, kProjectCount - 1)];
  host_sim::Host host(input.ConsumeIntegral<int32_t>());
  {
    OpenedFile file(host, path, input.ConsumeIntegral<int32_t>());
    Check(file.opened());
    file.AskForInformation(input);
    const int32_t frame_requests = input.ConsumeIntegralInRange(0, kMostFrameRequests);
    for (int32_t i = 0; i < frame_requests; ++i) file.AskForFrame(input);
    file.AskForPreferredSize(input);
  }
  const host_sim::HostReport report = host.Report();
  if (!report.frame_faults.empty() || !report.memory_faults.empty()) {
    std::fprintf(stderr, "%s\n", report.ToString().c_str());
    std::abort();
  }
  return 0;
}
