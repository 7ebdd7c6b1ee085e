#include "host_sim/failing_suites.h"

#include "host_sim/host.h"

namespace host_sim {
namespace {

struct SuiteFunctions {
  const char* suite;
  const char* const* functions;  // in slot order
};

template <const SuiteFunctions& kSuite, int kSlot, typename... Args>
prSuiteError AnswerFailure(Args...) {
  if (Host* host = CurrentHost()) {
    host->suites().RecordFailedCall(kSuite.suite, kSuite.functions[kSlot]);
  }
  return kSuiteFailure;
}

// The failing function for slot `kSlot`, with the slot's own parameters.
template <const SuiteFunctions& kSuite, int kSlot, typename Suite, typename... Args>
auto Failing(prSuiteError (*Suite::*)(Args...)) -> prSuiteError (*)(Args...) {
  return &AnswerFailure<kSuite, kSlot, Args...>;
}

constexpr const char* kPPixCreatorFunctions[] = {"CreatePPix", "ClonePPix"};
constexpr SuiteFunctions kPPixCreator = {kPrSDKPPixCreatorSuite, kPPixCreatorFunctions};

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

constexpr const char* kPPixFunctions[] = {"Dispose",      "GetPixels",           "GetBounds",
                                          "GetRowBytes",  "GetPixelAspectRatio", "GetPixelFormat",
                                          "GetUniqueKey", "GetUniqueKeySize",    "GetRenderTime"};
constexpr SuiteFunctions kPPix = {kPrSDKPPixSuite, kPPixFunctions};

constexpr const char* kPPix2Functions[] = {"GetSize", "GetYUV420PlanarBuffers", "GetOrigin",
                                           "GetFieldOrder"};
constexpr SuiteFunctions kPPix2 = {kPrSDKPPix2Suite, kPPix2Functions};

constexpr const char* kAudioFunctions[] = {
    "ConvertAndInterleaveTo8BitInteger",      "ConvertAndInterleaveTo16BitInteger",
    "ConvertAndInterleaveTo24BitInteger",     "ConvertAndInterleaveTo32BitInteger",
    "UninterleaveAndConvertFrom8BitInteger",  "UninterleaveAndConvertFrom16BitInteger",
    "UninterleaveAndConvertFrom24BitInteger", "UninterleaveAndConvertFrom32BitInteger"};
constexpr SuiteFunctions kAudio = {kPrSDKAudioSuite, kAudioFunctions};

// The Audio suite's slots are opaque in the importer's declarations; each conversion takes
// (source, destination, channel count, sample-frame count).
template <int kSlot>
OpaqueHostFunction FailingAudioSlot() {
  return reinterpret_cast<OpaqueHostFunction>(
      &AnswerFailure<kAudio, kSlot, void*, void*, unsigned int, unsigned int>);
}

}  // namespace

const PrSDKPPixCreatorSuite* FailingPPixCreatorSuite() {
  using S = PrSDKPPixCreatorSuite;
  static const S suite = {Failing<kPPixCreator, 0>(&S::CreatePPix),
                          Failing<kPPixCreator, 1>(&S::ClonePPix)};
  return &suite;
}

const PrSDKPPixCacheSuite* FailingPPixCacheSuite() {
  using S = PrSDKPPixCacheSuite;
  static const S suite = {Failing<kPPixCache, 0>(&S::AddFrameToCache),
                          Failing<kPPixCache, 1>(&S::GetFrameFromCache),
                          Failing<kPPixCache, 2>(&S::AddRawPPixToCache),
                          Failing<kPPixCache, 3>(&S::GetRawPPixFromCache),
                          Failing<kPPixCache, 4>(&S::AddNamedPPixToCache),
                          Failing<kPPixCache, 5>(&S::GetNamedPPixFromCache),
                          Failing<kPPixCache, 6>(&S::RegisterDependencyOnNamedPPix),
                          Failing<kPPixCache, 7>(&S::UnregisterDependencyOnNamedPPix),
                          Failing<kPPixCache, 8>(&S::ExpireNamedPPixFromCache),
                          Failing<kPPixCache, 9>(&S::ExpireAllPPixesFromCache),
                          Failing<kPPixCache, 10>(&S::AddFrameToCacheWithColorProfile),
                          Failing<kPPixCache, 11>(&S::GetFrameFromCacheWithColorProfile),
                          Failing<kPPixCache, 12>(&S::AddFrameToCacheWithColorProfile2),
                          Failing<kPPixCache, 13>(&S::GetFrameFromCacheWithColorProfile2)};
  return &suite;
}

const PrSDKPPixSuite* FailingPPixSuite() {
  using S = PrSDKPPixSuite;
  static const S suite = {Failing<kPPix, 0>(&S::Dispose),
                          Failing<kPPix, 1>(&S::GetPixels),
                          Failing<kPPix, 2>(&S::GetBounds),
                          Failing<kPPix, 3>(&S::GetRowBytes),
                          Failing<kPPix, 4>(&S::GetPixelAspectRatio),
                          Failing<kPPix, 5>(&S::GetPixelFormat),
                          Failing<kPPix, 6>(&S::GetUniqueKey),
                          Failing<kPPix, 7>(&S::GetUniqueKeySize),
                          Failing<kPPix, 8>(&S::GetRenderTime)};
  return &suite;
}

const PrSDKPPix2Suite* FailingPPix2Suite() {
  using S = PrSDKPPix2Suite;
  static const S suite = {Failing<kPPix2, 0>(&S::GetSize),
                          Failing<kPPix2, 1>(&S::GetYUV420PlanarBuffers),
                          Failing<kPPix2, 2>(&S::GetOrigin), Failing<kPPix2, 3>(&S::GetFieldOrder)};
  return &suite;
}

const PrSDKAudioSuite* FailingAudioSuite() {
  static const PrSDKAudioSuite suite = {
      FailingAudioSlot<0>(), FailingAudioSlot<1>(), FailingAudioSlot<2>(), FailingAudioSlot<3>(),
      FailingAudioSlot<4>(), FailingAudioSlot<5>(), FailingAudioSlot<6>(), FailingAudioSlot<7>()};
  return &suite;
}

}  // namespace host_sim
