#include "qvo_host/frames_command.h"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>
#include <vector>

#include "qvo_host/contact_sheet.h"
#include "qvo_host/opened_clip.h"
#include "qvo_host/png_export.h"
#include "qvo_host/progress_line.h"

namespace host_sim {
namespace {

constexpr int32_t kThumbnailWidth = 320;
constexpr int32_t kThumbnailsPerRow = 6;

std::string FramePath(const std::string& folder, int32_t index) {
  char name[32];
  std::snprintf(name, sizeof(name), "frame_%05d.png", static_cast<int>(index));
  return (std::filesystem::u8path(folder) / name).u8string();
}

// Writes the frame the plug-in handed over and adds its thumbnail; false, saying why, when it
// cannot be read or written.
bool WriteFrame(const HostFrame* frame, const std::string& path,
                std::vector<RgbImage>* thumbnails) {
  RgbImage image;
  if (frame == nullptr || !FrameToRgb(*frame, &image)) {
    std::fprintf(stderr, "\nqvo-host: %s: the host cannot show this frame\n", path.c_str());
    return false;
  }
  if (!WritePng(path, image)) {
    std::fprintf(stderr, "\nqvo-host: cannot write %s\n", path.c_str());
    return false;
  }
  thumbnails->push_back(Thumbnail(image, kThumbnailWidth));
  return true;
}

// Asks for frame `index` and writes it; the host then lets its reference go.
bool ExportFrame(HostSession& session, HostFile* file, int32_t index, const FramesExport& request,
                 std::vector<RgbImage>* thumbnails) {
  PPixHand frame = nullptr;
  const int32_t result =
      file->RequestFrame(index * file->TicksPerFrame(), {0, 0, request.pixel_format}, &frame);
  bool written = false;
  if (result != imNoErr) {
    std::fprintf(stderr, "\nqvo-host: frame %d: result %d\n", static_cast<int>(index), result);
  } else {
    written = WriteFrame(session.host().frames().Find(frame), FramePath(request.folder, index),
                         thumbnails);
  }
  if (frame != nullptr) session.host().frames().Dispose(frame);
  return written;
}

bool WriteContactSheet(const std::vector<RgbImage>& thumbnails, const std::string& folder) {
  if (thumbnails.empty()) return true;
  const std::string path = (std::filesystem::u8path(folder) / "contact_sheet.png").u8string();
  if (WritePng(path, ContactSheet(thumbnails, kThumbnailsPerRow))) return true;
  std::fprintf(stderr, "qvo-host: cannot write %s\n", path.c_str());
  return false;
}

}  // namespace

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
  std::vector<RgbImage> thumbnails;
  bool all_written = true;
  ProgressLine progress("frame", request.end_frame - request.first_frame);
  for (int32_t index = request.first_frame; index < request.end_frame; ++index) {
    all_written = ExportFrame(session, file.get(), index, request, &thumbnails) && all_written;
    progress.Update(index - request.first_frame + 1);
  }
  progress.Finish();
  QuietAndClose(file.get());
  return WriteContactSheet(thumbnails, request.folder) && all_written;
}

}  // namespace host_sim
