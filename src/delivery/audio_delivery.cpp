#include "delivery/audio_delivery.h"

#include <mutex>

#include "open_files/context_registry.h"
#include "open_files/private_file_record.h"
#include "open_files/source_on_demand.h"
#include "logging/log_sites.h"
#include "logging/plugin_log.h"
#include "sample_file/sample_file_helpers.h"

int32_t ImportAudio(imImportAudioRec7* request) {
  PrivateFileRecord* record = request != nullptr ? RecordOf(request->privateData) : nullptr;
  if (record == nullptr) return imNoContent;
  // The running position moves before anything else, also for a file without a context.
  int64_t saved_position = record->audio_position;
  int64_t start = 0;
  int64_t count = 0;
  ClampAudioRequest(request->position, request->size,
                    static_cast<int64_t>(record->header.sample_frames), &saved_position, &start,
                    &count);
  record->audio_position = saved_position;

  FileContext* context = record->context;
  if (context == nullptr) {
    PluginLog::Get()->Write(kLogError, kLogSource, log_site::kAudioContextMissing,
                            "FileContext pointer is null.");
    return imNoContent;
  }
  std::lock_guard<std::mutex> lock(context->mutex);
  if (!EnsureSource(context, log_site::kAudioSourceRecreateFailed)) return imNoContent;
  context->source->GetAudioFrame(start, count, request->buffer);
  ContextRegistry::Instance().TouchContext(context);
  return imNoErr;
}
