#include "qvo_host/frames_command.h"

#include <algorithm>
#include <cstdio>
#include <deque>
#include <filesystem>
#include <future>
#include <memory>
#include <system_error>
#include <thread>
#include <utility>

#include "qvo_host/contact_sheet.h"
#include "qvo_host/opened_clip.h"
#include "qvo_host/png_export.h"

namespace host_sim {
namespace {

constexpr int32_t kThumbnailWidth = 320;
constexpr int32_t kThumbnailsPerRow = 6;

std::string FramePath(const std::string& folder, int32_t index) {
  char name[32];
  std::snprintf(name, sizeof(name), "frame_%05d.png", static_cast<int>(index));
  return (std::filesystem::u8path(folder) / name).u8string();
}

// Asks for frame `index` and takes its picture; the host then lets its reference go. False, saying
// why, when the frame is not delivered or cannot be shown.
bool TakePicture(HostSession& session, HostFile* clip, int32_t index, PrPixelFormat format,
                 RgbImage* image) {
  PPixHand frame = nullptr;
  const int32_t result = clip->RequestFrame(index * clip->TicksPerFrame(), {0, 0, format}, &frame);
  bool taken = false;
  if (result != imNoErr) {
    std::fprintf(stderr, "\nqvo-host: frame %d: result %d\n", static_cast<int>(index), result);
  } else {
    const HostFrame* picture = session.host().frames().Find(frame);
    taken = picture != nullptr && FrameToRgb(*picture, image);
    if (!taken) {
      std::fprintf(stderr, "\nqvo-host: frame %d: the host cannot show this frame\n",
                   static_cast<int>(index));
    }
  }
  if (frame != nullptr) session.host().frames().Dispose(frame);
  return taken;
}

struct EncodedFrame {
  std::string path;
  std::vector<uint8_t> png;  // empty when it could not be encoded
  RgbImage thumbnail;
  // Given back for a later frame: converting into memory already in use spares the system
  // handing out 22 MB of fresh pages a frame.
  RgbImage picture;
};

EncodedFrame Encode(RgbImage picture, std::string path) {
  EncodedFrame encoded{std::move(path), EncodePng(picture), Thumbnail(picture, kThumbnailWidth),
                       RgbImage()};
  encoded.picture = std::move(picture);
  return encoded;
}

bool WriteEncoded(EncodedFrame&& frame, std::vector<RgbImage>* thumbnails) {
  if (!WritePngBytes(frame.path, frame.png)) {
    std::fprintf(stderr, "\nqvo-host: cannot write %s\n", frame.path.c_str());
    return false;
  }
  thumbnails->push_back(std::move(frame.thumbnail));
  return true;
}

bool WriteContactSheet(const LabelledThumbnails& clip, const std::string& folder) {
  if (clip.thumbnails.empty()) return true;
  const std::string path = (std::filesystem::u8path(folder) / "contact_sheet.png").u8string();
  if (WritePng(path, ContactSheet({clip}, kThumbnailsPerRow))) return true;
  std::fprintf(stderr, "qvo-host: cannot write %s\n", path.c_str());
  return false;
}

}  // namespace

bool ExportFrameRange(HostSession& session, HostFile* clip, const FramesExport& request,
                      ProgressLine* progress, std::vector<RgbImage>* thumbnails) {
  // Each frame waiting here holds its RGB picture (22 MB at 4K): no more wait than can be encoded
  // at once.
  const size_t encoders = std::max(1u, std::thread::hardware_concurrency());
  std::deque<std::future<EncodedFrame>> encoding;
  std::vector<RgbImage> spare_pictures;
  bool all_written = true;
  int64_t done = 0;
  const auto write_oldest = [&] {
    EncodedFrame oldest = encoding.front().get();
    encoding.pop_front();
    spare_pictures.push_back(std::move(oldest.picture));
    all_written = WriteEncoded(std::move(oldest), thumbnails) && all_written;
    progress->Update(++done);
  };
  for (int32_t index = request.first_frame; index < request.end_frame; ++index) {
    RgbImage image;
    if (!spare_pictures.empty()) {
      image = std::move(spare_pictures.back());
      spare_pictures.pop_back();
    }
    if (TakePicture(session, clip, index, request.pixel_format, &image)) {
      encoding.push_back(std::async(std::launch::async, Encode, std::move(image),
                                    FramePath(request.folder, index)));
    } else {
      all_written = false;
      progress->Update(++done);
    }
    if (encoding.size() >= encoders) write_oldest();
  }
  while (!encoding.empty()) write_oldest();
  return all_written;
}

bool ExportFrames(HostSession& session, const FramesExport& request) {
  std::string error;
  std::unique_ptr<HostFile> file = OpenDescribedClip(session, request.file, &error);
  if (file == nullptr) {
    std::fprintf(stderr, "qvo-host: %s: %s\n", request.file.c_str(), error.c_str());
    return false;
  }
  std::error_code folder_error;
  std::filesystem::create_directories(std::filesystem::u8path(request.folder), folder_error);
  if (file->info().record()->hasVideo == 0 || file->TicksPerFrame() <= 0 || folder_error) {
    std::fprintf(stderr, "qvo-host: %s: %s\n", request.file.c_str(),
                 folder_error ? "cannot make the output folder" : "the clip has no frames");
    QuietAndClose(file.get());
    return false;
  }
  LabelledThumbnails clip;
  clip.label = std::filesystem::u8path(request.file).filename().u8string();
  ProgressLine progress("frame", request.end_frame - request.first_frame);
  const bool all_written =
      ExportFrameRange(session, file.get(), request, &progress, &clip.thumbnails);
  progress.Finish();
  QuietAndClose(file.get());
  return WriteContactSheet(clip, request.folder) && all_written;
}

}  // namespace host_sim
