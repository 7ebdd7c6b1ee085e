#include "delivery/audio_delivery.h"

#include <mutex>

#include "logging/log_sites.h"
#include "logging/plugin_log.h"
#include "open_files/context_registry.h"
#include "open_files/source_on_demand.h"
#include "platform/compiler.h"
#include "sample_file/sample_file_helpers.h"

namespace {

// The running position is read and written without a lock, as the design has it: two host threads
// reading one file's sound with negative positions at once may both continue from the same place.
QUORVEL_NOINLINE void NextAudioRange(PrivateFileRecord* record, int64_t position, uint32_t size,
                                     int64_t* start, int64_t* count) {
  int64_t saved_position = record->audio_position;
  ClampAudioRequest(position, size, static_cast<int64_t>(record->header.sample_frames),
                    &saved_position, start, count);
  record->audio_position = saved_position;
}

}  // namespace

ReadOutcome ReadAudio(PrivateFileRecord* record, int64_t position, uint32_t size, float** buffers) {
  // The running position moves before anything else, also for a file without a context.
  int64_t start = 0;
  int64_t count = 0;
  NextAudioRange(record, position, size, &start, &count);

  FileContext* context = record->context;
  if (context == nullptr) {
    PluginLog::Get()->Write(kLogError, kLogSource, log_site::kAudioContextMissing,
                            "FileContext pointer is null.");
    return ReadOutcome::kNoContext;
  }
  std::lock_guard<std::mutex> lock(context->mutex);
  if (!EnsureSource(context, log_site::kAudioSourceRecreateFailed)) return ReadOutcome::kNoSource;
  context->source->GetAudioFrame(start, count, buffers);
  ContextRegistry::Instance().TouchContext(context);
  return ReadOutcome::kDelivered;
}

int32_t ImportAudio(imImportAudioRec7* request) {
  PrivateFileRecord* record = request != nullptr ? RecordOf(request->privateData) : nullptr;
  if (record == nullptr) return HostResultOf(ReadOutcome::kNoContext);
  return HostResultOf(ReadAudio(record, request->position, request->size, request->buffer));
}
