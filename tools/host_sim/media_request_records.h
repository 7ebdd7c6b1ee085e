// The host's records of the content requests: frames, preferred sizes, sound, size calculation
// and trimming, zero-filled with what the host fills in (see host_records.h). The caller keeps
// every buffer, path and slot a record points at alive while the plug-in may read it.
#pragma once

#include <cstdint>
#include <string>

#include "host_sdk/premiere_importer.h"

namespace host_sim {

// Stream 0, one wanted format (`format`, which the plug-in may complete), the host's frame slot.
imSourceVideoRec MakeSourceVideoRecord(void* private_data, void* prefs, int32_t prefs_size,
                                       PrTime time, imFrameFormat* format, PPixHand* slot);

// Asks about any pixel format.
imPreferredFrameSizeRec MakePreferredFrameSizeRecord(void* private_data, void* prefs,
                                                     int32_t index);

// `buffers` holds one host buffer of at least `size` floats per channel.
imImportAudioRec7 MakeAudioRecord(void* private_data, void* prefs, PrAudioSample position,
                                  uint32_t size, float** buffers);

imCalcSizeRec MakeCalcSizeRecord(void* private_data, void* prefs, int32_t trim_in, int32_t duration,
                                 int32_t scale, int32_t sample_size);

// The proposed bounds stand in newTrimIn and newDuration as well, so that a plug-in that keeps
// them leaves the record as it was.
imCheckTrimRec MakeCheckTrimRecord(void* private_data, void* prefs, int32_t trim_in,
                                   int32_t duration, bool keep_audio, bool keep_video,
                                   int32_t scale, int32_t sample_size);

// The part to keep and where to write it. `progress` may be null; `progress_id` comes back with
// every progress call.
struct TrimRequest {
  int32_t trim_in = 0;
  int32_t duration = 0;
  bool keep_audio = true;
  bool keep_video = true;
  const std::u16string* destination = nullptr;  // the host's wide path
  int32_t scale = 0;
  int32_t sample_size = 0;
  importProgressFunc progress = nullptr;
  void* progress_id = nullptr;
};
imTrimFileRec8 MakeTrimRecord(void* private_data, void* prefs, const TrimRequest& request);

}  // namespace host_sim
