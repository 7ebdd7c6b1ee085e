#include "qvo_host/check/file_info_checks.h"

#include <cstdio>
#include <vector>

namespace host_sim {
namespace {

constexpr PrPixelFormat kPlanarFormat =
    PrPixelFormat_YUV_420_MPEG4_FRAME_PICTURE_PLANAR_8u_709_FullRange;

std::string Format(const char* format, double a, double b, double c) {
  char text[128];
  std::snprintf(text, sizeof(text), format, a, b, c);
  return text;
}

void CheckPicture(const imFileInfoRec8& info, const std::string& name, CheckJournal* journal) {
  const int32_t width = info.vidInfo.imageWidth;
  const int32_t height = info.vidInfo.imageHeight;
  // The clip's frames come as YUV 4:2:0, whose chroma covers pixels two by two.
  const bool sane =
      info.hasVideo != 0 && width > 0 && height > 0 && width % 2 == 0 && height % 2 == 0;
  journal->Add(name + ": picture size",
               std::to_string(width) + "x" + std::to_string(height) +
                   (info.hasVideo != 0 ? "" : ", no video"),
               sane);
  const int32_t scale = info.vidScale;
  const int32_t sample_size = info.vidSampleSize;
  const double fps = sample_size > 0 ? static_cast<double>(scale) / sample_size : 0;
  journal->Add(name + ": time base",
               std::to_string(scale) + "/" + std::to_string(sample_size) + " = " +
                   Format("%.3f fps", fps, 0, 0),
               scale > 0 && sample_size > 0);
  const double seconds = scale > 0 ? static_cast<double>(info.vidDuration) / scale : 0;
  journal->Add(name + ": duration",
               std::to_string(info.vidDuration) + " = " +
                   Format("%.0f frames, %.3f s", seconds * fps, seconds, 0),
               info.vidDuration > 0 && sample_size > 0 && info.vidDuration % sample_size == 0);
}

void CheckSphericalLayout(const imFileInfoRec8& info, const std::string& name,
                          CheckJournal* journal) {
  const bool sane = info.ivProjectionType == 1 &&
                    (info.ivFrameLayout == 0 || info.ivFrameLayout == 1) &&
                    info.ivHorizontalCapturedView == 360 && info.ivVerticalCapturedView == 180;
  journal->Add(name + ": spherical layout",
               "projection " + std::to_string(info.ivProjectionType) + ", layout " +
                   std::to_string(info.ivFrameLayout) +
                   (info.ivFrameLayout == 1 ? " (stereo)" : " (mono)") + ", view " +
                   std::to_string(info.ivHorizontalCapturedView) + "x" +
                   std::to_string(info.ivVerticalCapturedView),
               sane);
}

void CheckSound(const imFileInfoRec8& info, const std::string& name, CheckJournal* journal) {
  const int32_t channels = info.audInfo.numChannels;
  const float rate = info.audInfo.sampleRate;
  const int64_t frames = info.audDuration;
  if (info.hasAudio == 0) {
    journal->Add(
        name + ": sound",
        "none; channels " + std::to_string(channels) +
            Format(", rate %.0f, sample frames %.0f", rate, static_cast<double>(frames), 0),
        channels == 0 && rate == 0 && frames == 0);
    return;
  }
  journal->Add(name + ": sound",
               std::to_string(channels) + " channels, " +
                   Format("%.0f Hz, %.0f sample frames", rate, static_cast<double>(frames), 0),
               channels > 0 && rate > 0 && frames >= 0);
}

void CheckPixelFormats(HostFile* file, const std::string& name, CheckJournal* journal) {
  int32_t last_result = 0;
  const std::vector<PrPixelFormat> formats = file->PixelFormats(&last_result);
  std::string figure;
  for (PrPixelFormat format : formats) {
    char text[16];
    std::snprintf(text, sizeof(text), "0x%08X ", static_cast<unsigned>(format));
    figure += text;
  }
  figure += "(list ended with " + std::to_string(last_result) + ")";
  journal->Add(
      name + ": pixel formats", figure,
      formats == std::vector<PrPixelFormat>{kPlanarFormat} && last_result == imBadFormatIndex);
}

}  // namespace

void CheckFileInformation(HostFile* file, const std::string& name, CheckJournal* journal) {
  const imFileInfoRec8& info = *file->info().record();
  CheckPicture(info, name, journal);
  CheckSphericalLayout(info, name, journal);
  CheckSound(info, name, journal);
  CheckPixelFormats(file, name, journal);
}

}  // namespace host_sim
