#include "host_sim/frame_cache_suite.h"

#include "host_sdk/premiere_constants.h"
#include "host_sim/host.h"
#include "host_sim/unserved_slots.h"

namespace host_sim {
namespace {

constexpr const char* kPPixCacheFunctions[] = {"AddFrameToCache",
                                               "GetFrameFromCache",
                                               "AddRawPPixToCache",
                                               "GetRawPPixFromCache",
                                               "AddNamedPPixToCache",
                                               "GetNamedPPixFromCache",
                                               "RegisterDependencyOnNamedPPix",
                                               "UnregisterDependencyOnNamedPPix",
                                               "ExpireNamedPPixFromCache",
                                               "ExpireAllPPixesFromCache",
                                               "AddFrameToCacheWithColorProfile",
                                               "GetFrameFromCacheWithColorProfile",
                                               "AddFrameToCacheWithColorProfile2",
                                               "GetFrameFromCacheWithColorProfile2"};
constexpr SuiteFunctions kPPixCache = {kPrSDKPPixCacheSuite, kPPixCacheFunctions};

FrameCache* CurrentCache() {
  Host* host = CurrentHost();
  return host == nullptr ? nullptr : &host->frame_cache();
}

// The preferences are the importer's own and play no part in the host's key.
prSuiteError AddFrameToCache(uint32_t importer_id, int32_t stream, PPixHand frame,
                             int32_t frame_number, void*, int32_t) {
  FrameCache* cache = CurrentCache();
  if (cache == nullptr) return kSuiteFailure;
  if (!cache->Add(importer_id, stream, frame_number, frame)) {
    CurrentHost()->frames().RecordFault("AddFrameToCache with a frame that is not live");
    return kSuiteFailure;
  }
  return suiteError_NoError;
}

// A miss leaves the slot as it was.
prSuiteError GetFrameFromCache(uint32_t importer_id, int32_t stream, int32_t frame_number,
                               int32_t format_count, imFrameFormat* formats, PPixHand* out, void*,
                               int32_t) {
  FrameCache* cache = CurrentCache();
  if (cache == nullptr || out == nullptr) return kSuiteFailure;
  PPixHand frame = cache->Get(importer_id, stream, frame_number, formats, format_count);
  if (frame == nullptr) return kSuiteFailure;
  *out = frame;
  return suiteError_NoError;
}

prSuiteError ExpireAllPPixesFromCache() {
  FrameCache* cache = CurrentCache();
  if (cache == nullptr) return kSuiteFailure;
  cache->ExpireAll();
  return suiteError_NoError;
}

}  // namespace

const PrSDKPPixCacheSuite* FrameCacheSuite() {
  using S = PrSDKPPixCacheSuite;
  static const S suite = {AddFrameToCache,
                          GetFrameFromCache,
                          Unserved<kPPixCache, 2>(&S::AddRawPPixToCache),
                          Unserved<kPPixCache, 3>(&S::GetRawPPixFromCache),
                          Unserved<kPPixCache, 4>(&S::AddNamedPPixToCache),
                          Unserved<kPPixCache, 5>(&S::GetNamedPPixFromCache),
                          Unserved<kPPixCache, 6>(&S::RegisterDependencyOnNamedPPix),
                          Unserved<kPPixCache, 7>(&S::UnregisterDependencyOnNamedPPix),
                          Unserved<kPPixCache, 8>(&S::ExpireNamedPPixFromCache),
                          ExpireAllPPixesFromCache,
                          Unserved<kPPixCache, 10>(&S::AddFrameToCacheWithColorProfile),
                          Unserved<kPPixCache, 11>(&S::GetFrameFromCacheWithColorProfile),
                          Unserved<kPPixCache, 12>(&S::AddFrameToCacheWithColorProfile2),
                          Unserved<kPPixCache, 13>(&S::GetFrameFromCacheWithColorProfile2)};
  return &suite;
}

}  // namespace host_sim
