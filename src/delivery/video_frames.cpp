#include "delivery/video_frames.h"

#include <mutex>

#include "delivery/frame_fetch.h"
#include "delivery/read_outcome.h"
#include "delivery/row_spreading.h"
#include "delivery/stopwatch.h"
#include "host_sdk/host_assumptions.h"
#include "logging/log_sites.h"
#include "logging/plugin_log.h"
#include "open_files/context_registry.h"
#include "open_files/host_suites.h"

namespace {

constexpr int32_t kStream = 0;

// The frame that contains `time`; the cache knows frames by this index, never by ticks.
int32_t FrameIndexOf(PrTime time, const SampleFileHeader& header) {
  const auto ticks_per_frame = static_cast<PrTime>(header.frame_duration);
  if (ticks_per_frame <= 0) return 0;
  return static_cast<int32_t>(time / ticks_per_frame);
}

bool FoundInCache(const PrivateFileRecord* record, int32_t index, imFrameFormat* format,
                  PPixHand* slot) {
  PrSDKPPixCacheSuite* cache = record->cache_suite;
  return cache != nullptr &&
         cache->GetFrameFromCache(record->importer_id, kStream, index, 1, format, slot, nullptr,
                                  0) == suiteError_NoError;
}

// Acquired once per file, however many host threads race for its first frame.
PrSDKPPix2Suite* PPix2SuiteOf(const imStdParms* std_parms, FileContext* context) {
  std::lock_guard<std::mutex> lock(context->mutex);
  if (context->ppix2_suite == nullptr) {
    context->ppix2_suite = AcquireSuite<PrSDKPPix2Suite>(BasicSuiteOf(std_parms), kPrSDKPPix2Suite,
                                                         kPrSDKPPix2SuiteVersion);
  }
  return context->ppix2_suite;
}

ReadOutcome FetchIntoPlanes(const PrivateFileRecord* record, PrSDKPPix2Suite* ppix2, PPixHand frame,
                            int32_t index) {
  Stopwatch stopwatch;
  char* planes[3] = {nullptr, nullptr, nullptr};
  uint32_t row_bytes[3] = {0, 0, 0};
  ppix2->GetYUV420PlanarBuffers(frame, PrPPixBufferAccess_ReadWrite, &planes[0], &row_bytes[0],
                                &planes[1], &row_bytes[1], &planes[2], &row_bytes[2]);
  PluginLog::Get()->Write(kLogInfo, kLogSource, log_site::kGetBuffer, "get buffer:%d",
                          stopwatch.ElapsedMilliseconds());
  FrameTarget target;
  for (int p = 0; p < 3; ++p) {
    target.planes[p] = reinterpret_cast<uint8_t*>(planes[p]);
    target.strides[p] = static_cast<int>(row_bytes[p]);
  }
  stopwatch.Restart();
  const ReadOutcome result = FetchFrame(record, index, &target);
  // The words time the fetch, not an allocation; they have always read so.
  PluginLog::Get()->Write(kLogInfo, kLogSource, log_site::kAllocateBuffer, "allocate buffer:%d",
                          stopwatch.ElapsedMilliseconds());
  return result;
}

// The source writes rows tightly packed at the start of the host's buffer; they are then spread
// in place to the host's row bytes, last row first, top row staying on top.
ReadOutcome FetchPacked(const PrivateFileRecord* record, const imFrameFormat& format,
                        PPixHand frame, int32_t index) {
  static_assert(kPackedFramesTopRowFirst, "packed frames are delivered without a flip");
  PrSDKPPixSuite* ppix = record->ppix_suite;
  char* pixels = nullptr;
  ppix->GetPixels(frame, PrPPixBufferAccess_ReadWrite, &pixels);
  FrameTarget target;
  target.planes[0] = reinterpret_cast<uint8_t*>(pixels);
  const ReadOutcome result = FetchFrame(record, index, &target);
  int32_t row_bytes = 0;
  ppix->GetRowBytes(frame, &row_bytes);
  SpreadRowsToPitch(target.planes[0], target.planes[0], static_cast<uint32_t>(row_bytes),
                    BytesPerPixelForFormat(format.inPixelFormat),
                    static_cast<uint32_t>(format.inFrameWidth),
                    static_cast<uint32_t>(format.inFrameHeight));
  return result;
}

ReadOutcome DeliverFrame(const imStdParms* std_parms, imSourceVideoRec* request,
                         const PrivateFileRecord* record, int32_t index) {
  imFrameFormat any_format = {0, 0, kAnnouncedPixelFormat};
  imFrameFormat* format =
      request->inFrameFormats != nullptr ? request->inFrameFormats : &any_format;
  PPixHand* slot = request->outFrame;
  if (FoundInCache(record, index, format, slot)) return ReadOutcome::kDelivered;

  FileContext* context = record->context;
  if (context == nullptr) {
    // Nothing to stitch from: answered before any host frame is made for it.
    PluginLog::Get()->Write(kLogError, kLogSource, log_site::kVideoContextMissing,
                            "FileContext pointer is null.");
    return ReadOutcome::kNoContext;
  }
  PrSDKPPix2Suite* ppix2 = PPix2SuiteOf(std_parms, context);
  // The stitcher writes the clip's own size whatever the host wants, so the host's frame is made
  // at that size, never smaller, and the host learns it from its format entry, as it does when it
  // asks for 0 x 0.
  format->inFrameWidth = record->header.width;
  format->inFrameHeight = record->header.height;
  const PrPixelFormat pixel_format = format->inPixelFormat;
  const bool planar = pixel_format == kAnnouncedPixelFormat;
  // Without the host's frame suites (its information was never asked) or a frame it agreed to
  // make, there is nothing the stitcher could write into.
  if (record->creator_suite == nullptr ||
      (planar ? ppix2 == nullptr : record->ppix_suite == nullptr)) {
    return ReadOutcome::kFailed;
  }
  const prRect bounds = {0, 0, format->inFrameWidth, format->inFrameHeight};
  if (record->creator_suite->CreatePPix(slot, PrPPixBufferAccess_ReadWrite, pixel_format,
                                        &bounds) != suiteError_NoError ||
      *slot == nullptr) {
    return ReadOutcome::kFailed;
  }

  const ReadOutcome result = planar ? FetchIntoPlanes(record, ppix2, *slot, index)
                                    : FetchPacked(record, *format, *slot, index);
  if (result == ReadOutcome::kDelivered && record->cache_suite != nullptr) {
    record->cache_suite->AddFrameToCache(record->importer_id, kStream, *slot, index, nullptr, 0);
  }
  return result;
}

}  // namespace

int32_t GetSourceVideo(const imStdParms* std_parms, imSourceVideoRec* request) {
  auto handle = request != nullptr ? static_cast<PrMemoryHandle>(request->inPrivateData) : nullptr;
  if (handle == nullptr || request->outFrame == nullptr) {
    return HostResultOf(ReadOutcome::kNoContext);
  }
  const PlugMemoryFuncs* memory = std_parms->piSuites->memFuncs;
  memory->lockHandle(handle);
  const PrivateFileRecord* record = RecordOf(handle);
  if (record->context != nullptr) ContextRegistry::Instance().TouchContext(record->context);
  const int32_t index = FrameIndexOf(request->inFrameTime, record->header);
  const ReadOutcome outcome = DeliverFrame(std_parms, request, record, index);
  memory->unlockHandle(handle);
  return HostResultOf(outcome);
}

int32_t GetPreferredFrameSize(imPreferredFrameSizeRec* request) {
  if (request->inIndex != 0) return imOtherErr;
  const PrivateFileRecord* record = RecordOf(request->inPrivateData);
  request->outWidth = record->header.width;
  request->outHeight = record->header.height;
  return imNoErr;
}
