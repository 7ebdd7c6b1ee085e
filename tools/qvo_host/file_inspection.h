// What the host learns about one file, and the host's sequence of questions that learns it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host_sdk/premiere_importer.h"
#include "host_sim/host_file.h"
#include "host_sim/host_session.h"

namespace host_sim {

// Copied out of the host's records, so nothing here refers to a packed field.
struct ClipFacts {
  std::string file;  // as the user named it
  RegisteredFileType file_type;

  bool has_video = false;
  int32_t width = 0;
  int32_t height = 0;
  int32_t vid_scale = 0;  // the video time base is vid_scale / vid_sample_size
  int32_t vid_sample_size = 0;
  int32_t vid_duration = 0;  // in vid_sample_size units
  int64_t vid_duration_in_frames = 0;
  PrIVProjectionType projection = 0;
  PrIVFrameLayout frame_layout = 0;
  uint32_t horizontal_view = 0;  // degrees
  uint32_t vertical_view = 0;

  bool has_audio = false;
  int32_t channels = 0;
  float sample_rate = 0;
  int64_t sample_frames = 0;

  std::vector<PrPixelFormat> pixel_formats;
  int32_t codec_result = 0;
  std::string codec_text;
  bool has_data_rate = false;
  int32_t data_rate_result = 0;  // meaningful when has_data_rate
  size_t data_rate_entries = 0;
  int32_t header_texts_result = 0;
  HeaderTexts header_texts;
};

// Runs the host's sequence on one file: open, file information, preferences (with a null record,
// then the two-call exchange), pixel formats, codec text, data-rate table (when the information
// announces one), header texts, quiet and close. A file whose open fails is still closed when the
// plug-in left private data, so that it can free it. True when the file was opened and described;
// otherwise `error` names the step that failed and its result.
// REQUIRES: session.FileTypes() has been asked.
bool InspectFile(HostSession& session, const std::string& native_path, ClipFacts* facts,
                 std::string* error);

}  // namespace host_sim
