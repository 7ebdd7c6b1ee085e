#include "host_sim/media_request_records.h"

namespace host_sim {

imSourceVideoRec MakeSourceVideoRecord(void* private_data, void* prefs, int32_t prefs_size,
                                       PrTime time, imFrameFormat* format, PPixHand* slot) {
  imSourceVideoRec record{};
  record.inPrivateData = private_data;
  record.currentStreamIdx = 0;
  record.inFrameTime = time;
  record.inFrameFormats = format;
  record.inNumFrameFormats = 1;
  record.outFrame = slot;
  record.prefs = prefs;
  record.prefsSize = prefs_size;
  return record;
}

imPreferredFrameSizeRec MakePreferredFrameSizeRecord(void* private_data, void* prefs,
                                                     int32_t index) {
  imPreferredFrameSizeRec record{};
  record.inPrivateData = private_data;
  record.inPrefs = prefs;
  record.inPixelFormat = PrPixelFormat_Any;
  record.inIndex = index;
  return record;
}

imImportAudioRec7 MakeAudioRecord(void* private_data, void* prefs, PrAudioSample position,
                                  uint32_t size, float** buffers) {
  imImportAudioRec7 record{};
  record.position = position;
  record.size = size;
  record.buffer = buffers;
  record.privateData = private_data;
  record.prefs = prefs;
  return record;
}

imCalcSizeRec MakeCalcSizeRecord(void* private_data, void* prefs, int32_t trim_in, int32_t duration,
                                 int32_t scale, int32_t sample_size) {
  imCalcSizeRec record{};
  record.privatedata = private_data;
  record.prefs = prefs;
  record.trimIn = trim_in;
  record.duration = duration;
  record.scale = scale;
  record.sampleSize = sample_size;
  return record;
}

imCheckTrimRec MakeCheckTrimRecord(void* private_data, void* prefs, int32_t trim_in,
                                   int32_t duration, bool keep_audio, bool keep_video,
                                   int32_t scale, int32_t sample_size) {
  imCheckTrimRec record{};
  record.privatedata = private_data;
  record.prefs = prefs;
  record.trimIn = trim_in;
  record.duration = duration;
  record.keepAudio = keep_audio ? 1 : 0;
  record.keepVideo = keep_video ? 1 : 0;
  record.newTrimIn = trim_in;
  record.newDuration = duration;
  record.scale = scale;
  record.sampleSize = sample_size;
  return record;
}

imTrimFileRec8 MakeTrimRecord(void* private_data, void* prefs, const TrimRequest& request) {
  imTrimFileRec8 record{};
  record.privatedata = private_data;
  record.prefs = prefs;
  record.trimIn = request.trim_in;
  record.duration = request.duration;
  record.keepAudio = request.keep_audio ? 1 : 0;
  record.keepVideo = request.keep_video ? 1 : 0;
  record.destFilePath = request.destination == nullptr ? nullptr : request.destination->c_str();
  record.scale = request.scale;
  record.sampleSize = request.sample_size;
  record.progressCallback = request.progress;
  record.progressCallbackID = request.progress_id;
  return record;
}

}  // namespace host_sim
