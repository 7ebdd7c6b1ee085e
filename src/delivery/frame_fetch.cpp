#include "delivery/frame_fetch.h"

#include <mutex>

#include "delivery/stopwatch.h"

#include "logging/log_sites.h"
#include "logging/plugin_log.h"
#include "open_files/context_registry.h"
#include "open_files/source_on_demand.h"

ReadOutcome FetchFrame(const PrivateFileRecord* record, int32_t index, FrameTarget* target) {
  FileContext* context = record->context;
  PluginLog* log = PluginLog::Get();
  log->Write(kLogInfo, kLogSource, log_site::kGetSourceVideo, "get source video:%s",
             context->path.c_str());
  std::lock_guard<std::mutex> lock(context->mutex);
  if (!EnsureSource(context, log_site::kVideoSourceRecreateFailed)) return ReadOutcome::kNoSource;

  const int32_t width = record->header.width;
  const int32_t height = record->header.height;
  Stopwatch stopwatch;
  int32_t result =
      context->source->GetVideoFrame(index, width, height, target->planes, target->strides);
  log->Write(kLogInfo, kLogSource, log_site::kReadFrameConsume, "read frame consume:%d",
             stopwatch.ElapsedMilliseconds());
  log->Write(kLogInfo, kLogSource, log_site::kReadFrameResult, "result:%d", result);

  if (result != 0) {
    // Stitching may have run out of room: free the least recently used half and try once more.
    ContextRegistry::Instance().EvictHalf(context);
    context->source->Update();
    result = context->source->GetVideoFrame(index, width, height, target->planes, target->strides);
    log->Write(kLogInfo, kLogSource, log_site::kSecondTryResult, "second try result:%d", result);
  }
  return result == 0 ? ReadOutcome::kDelivered : ReadOutcome::kFailed;
}
