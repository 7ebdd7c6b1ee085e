#include "qvo_host/file_inspection.h"

#include <memory>

#include "qvo_host/opened_clip.h"

namespace host_sim {
namespace {

void CopyInformation(const imFileInfoRec8& info, ClipFacts* facts) {
  facts->has_video = info.hasVideo != 0;
  facts->width = info.vidInfo.imageWidth;
  facts->height = info.vidInfo.imageHeight;
  facts->vid_scale = info.vidScale;
  facts->vid_sample_size = info.vidSampleSize;
  facts->vid_duration = info.vidDuration;
  facts->vid_duration_in_frames = info.vidDurationInFrames;
  facts->projection = info.ivProjectionType;
  facts->frame_layout = info.ivFrameLayout;
  facts->horizontal_view = info.ivHorizontalCapturedView;
  facts->vertical_view = info.ivVerticalCapturedView;
  facts->has_audio = info.hasAudio != 0;
  facts->channels = info.audInfo.numChannels;
  facts->sample_rate = info.audInfo.sampleRate;
  facts->sample_frames = info.audDuration;
  facts->has_data_rate = info.hasDataRate != 0;
}

// The questions the host asks once it knows the file.
void AskAboutOpenFile(HostFile* file, ClipFacts* facts) {
  file->GetPrefsWithoutRecord();
  file->GetPrefs();
  int32_t last_result = 0;
  facts->pixel_formats = file->PixelFormats(&last_result);
  facts->codec_result = file->CodecText(&facts->codec_text);
  if (facts->has_data_rate) {
    std::vector<imDataSample> samples;
    int32_t base_rate = 0;
    facts->data_rate_result = file->DataRates(&samples, &base_rate);
    facts->data_rate_entries = samples.size();
  }
  facts->header_texts_result = file->ReadHeaderTexts(&facts->header_texts);
}

}  // namespace

bool InspectFile(HostSession& session, const std::string& native_path, ClipFacts* facts,
                 std::string* error) {
  facts->file = native_path;
  std::unique_ptr<HostFile> file = OpenDescribedClip(session, native_path, error);
  if (file == nullptr) return false;
  facts->file_type = *session.FileTypeFor(native_path);
  CopyInformation(*file->info().record(), facts);
  AskAboutOpenFile(file.get(), facts);
  QuietAndClose(file.get());
  return true;
}

}  // namespace host_sim
