// Host suites the plug-in acquires through SPBasicSuite::AcquireSuite(name, version, &table).
// A suite the host does not offer in that version comes back null. Every function answers a
// prSuiteError (0 is success). Tables hold function pointers only, so packing cannot move them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "host_sdk/premiere_media_records.h"
#include "host_sdk/premiere_types.h"

constexpr char kPrSDKPPixCreatorSuite[] = "Premiere PPix Creator Suite";
constexpr int32_t kPrSDKPPixCreatorSuiteVersion = 1;
constexpr char kPrSDKPPixCacheSuite[] = "Premiere PPix Cache Suite";
constexpr int32_t kPrSDKPPixCacheSuiteVersion = 6;
constexpr char kPrSDKPPixSuite[] = "Premiere PPix Suite";
constexpr int32_t kPrSDKPPixSuiteVersion = 1;
constexpr char kPrSDKPPix2Suite[] = "Premiere PPix 2 Suite";
constexpr int32_t kPrSDKPPix2SuiteVersion = 3;
constexpr char kPrSDKTimeSuite[] = "Premiere Time Suite";
constexpr int32_t kPrSDKTimeSuiteVersion = 1;
constexpr char kPrSDKAudioSuite[] = "Premiere Audio Suite";
constexpr int32_t kPrSDKAudioSuiteVersion = 1;

extern "C" {

// Frames made here count against the host's media cache and are 16-byte aligned.
struct PrSDKPPixCreatorSuite {
  // Refuses PrPPixBufferAccess_ReadOnly.
  prSuiteError (*CreatePPix)(PPixHand* outPPixHand, PrPPixBufferAccess access, PrPixelFormat format,
                             const prRect* bounds);
  // Accepts only PrPPixBufferAccess_ReadOnly.
  prSuiteError (*ClonePPix)(PPixHand in, PPixHand* out, PrPPixBufferAccess access);
};

// Version 6 layout. The frame number is a 32-bit frame index, not ticks.
struct PrSDKPPixCacheSuite {
  prSuiteError (*AddFrameToCache)(uint32_t importerID, int32_t streamIndex, PPixHand frame,
                                  int32_t frameNumber, void* prefs, int32_t prefsLength);
  // 0 is a hit.
  prSuiteError (*GetFrameFromCache)(uint32_t importerID, int32_t streamIndex, int32_t frameNumber,
                                    int32_t numFormats, imFrameFormat* formats, PPixHand* outFrame,
                                    void* prefs, int32_t prefsLength);
  prSuiteError (*AddRawPPixToCache)(uint32_t importerID, PPixHand frame, int32_t key);
  prSuiteError (*GetRawPPixFromCache)(uint32_t importerID, int32_t key, PPixHand* outFrame);
  prSuiteError (*AddNamedPPixToCache)(const prPluginID* id, PPixHand frame);
  prSuiteError (*GetNamedPPixFromCache)(const prPluginID* id, PPixHand* outFrame);
  prSuiteError (*RegisterDependencyOnNamedPPix)(const prPluginID* id);
  prSuiteError (*UnregisterDependencyOnNamedPPix)(const prPluginID* id);
  prSuiteError (*ExpireNamedPPixFromCache)(const prPluginID* id);
  prSuiteError (*ExpireAllPPixesFromCache)();  // every cached frame, of every importer
  prSuiteError (*AddFrameToCacheWithColorProfile)(uint32_t importerID, int32_t streamIndex,
                                                  PPixHand frame, int32_t frameNumber, void* prefs,
                                                  int32_t prefsLength, PrSDKString* profileName,
                                                  void* profileData, int32_t profileDataLength);
  prSuiteError (*GetFrameFromCacheWithColorProfile)(uint32_t importerID, int32_t streamIndex,
                                                    int32_t frameNumber, int32_t numFormats,
                                                    imFrameFormat* formats, PPixHand* outFrame,
                                                    void* prefs, int32_t prefsLength,
                                                    PrSDKString* profileName, void* profileData,
                                                    int32_t profileDataLength);
  prSuiteError (*AddFrameToCacheWithColorProfile2)(uint32_t importerID, int32_t streamIndex,
                                                   PPixHand frame, int32_t frameNumber,
                                                   PrRenderQuality quality, void* prefs,
                                                   int32_t prefsLength, PrSDKString* profileName,
                                                   void* profileData, int32_t profileDataLength);
  prSuiteError (*GetFrameFromCacheWithColorProfile2)(uint32_t importerID, int32_t streamIndex,
                                                     int32_t frameNumber, int32_t numFormats,
                                                     imFrameFormat* formats, PPixHand* outFrame,
                                                     PrRenderQuality quality, void* prefs,
                                                     int32_t prefsLength, PrSDKString* profileName,
                                                     void* profileData, int32_t profileDataLength);
};

struct PrSDKPPixSuite {
  prSuiteError (*Dispose)(PPixHand frame);
  prSuiteError (*GetPixels)(PPixHand frame, PrPPixBufferAccess access, char** outPixels);
  prSuiteError (*GetBounds)(PPixHand frame, prRect* inoutBounds);
  // May exceed width times pixel size, and may be negative when rows run upwards in memory.
  prSuiteError (*GetRowBytes)(PPixHand frame, int32_t* outRowBytes);
  prSuiteError (*GetPixelAspectRatio)(PPixHand frame, uint32_t* num, uint32_t* den);
  prSuiteError (*GetPixelFormat)(PPixHand frame, PrPixelFormat* outFormat);
  prSuiteError (*GetUniqueKey)(PPixHand frame, uint8_t* buffer, size_t bufferSize);
  prSuiteError (*GetUniqueKeySize)(size_t* outSize);
  prSuiteError (*GetRenderTime)(PPixHand frame, int32_t* outMilliseconds);
};

// Slot 1 exists from version 2 on; slots 2 and 3 from version 3.
struct PrSDKPPix2Suite {
  prSuiteError (*GetSize)(PPixHand frame, size_t* outSize);
  prSuiteError (*GetYUV420PlanarBuffers)(PPixHand frame, PrPPixBufferAccess access, char** outY,
                                         uint32_t* outYRowBytes, char** outU,
                                         uint32_t* outURowBytes, char** outV,
                                         uint32_t* outVRowBytes);
  prSuiteError (*GetOrigin)(PPixHand frame, int32_t* outX, int32_t* outY);
  prSuiteError (*GetFieldOrder)(PPixHand frame, prFieldType* outFieldType);
};

// The tick rate is fixed for the life of the host process but must be asked for.
struct PrSDKTimeSuite {
  prSuiteError (*GetTicksPerSecond)(PrTime* outTicksPerSecond);
  prSuiteError (*GetTicksPerVideoFrame)(PrVideoFrameRates rate, PrTime* outTicksPerFrame);
  // May answer kPrTimeSuite_RoundedAudioRate, a success.
  prSuiteError (*GetTicksPerAudioSample)(float sampleRate, PrTime* outTicksPerSample);
};

// Acquired and released but never called, so its slots stay opaque.
struct PrSDKAudioSuite {
  OpaqueHostFunction ConvertAndInterleaveTo8BitInteger;
  OpaqueHostFunction ConvertAndInterleaveTo16BitInteger;
  OpaqueHostFunction ConvertAndInterleaveTo24BitInteger;
  OpaqueHostFunction ConvertAndInterleaveTo32BitInteger;
  OpaqueHostFunction UninterleaveAndConvertFrom8BitInteger;
  OpaqueHostFunction UninterleaveAndConvertFrom16BitInteger;
  OpaqueHostFunction UninterleaveAndConvertFrom24BitInteger;
  OpaqueHostFunction UninterleaveAndConvertFrom32BitInteger;
};

}  // extern "C"

static_assert(sizeof(PrSDKPPixCreatorSuite) == 2 * 8, "PPix Creator suite v1 has 2 slots");
static_assert(offsetof(PrSDKPPixCreatorSuite, CreatePPix) == 0, "PPix Creator slot 0");

static_assert(sizeof(PrSDKPPixCacheSuite) == 14 * 8, "PPix Cache suite v6 has 14 slots");
static_assert(offsetof(PrSDKPPixCacheSuite, AddFrameToCache) == 0, "PPix Cache slot 0");
static_assert(offsetof(PrSDKPPixCacheSuite, GetFrameFromCache) == 8, "PPix Cache slot 1");
static_assert(offsetof(PrSDKPPixCacheSuite, ExpireAllPPixesFromCache) == 72, "PPix Cache slot 9");

static_assert(sizeof(PrSDKPPixSuite) == 9 * 8, "PPix suite v1 has 9 slots");
static_assert(offsetof(PrSDKPPixSuite, GetPixels) == 8, "PPix slot 1");
static_assert(offsetof(PrSDKPPixSuite, GetRowBytes) == 24, "PPix slot 3");

static_assert(sizeof(PrSDKPPix2Suite) == 4 * 8, "PPix 2 suite v3 has 4 slots");
static_assert(offsetof(PrSDKPPix2Suite, GetYUV420PlanarBuffers) == 8, "PPix 2 slot 1");

static_assert(sizeof(PrSDKTimeSuite) == 3 * 8, "Time suite v1 has 3 slots");
static_assert(offsetof(PrSDKTimeSuite, GetTicksPerSecond) == 0, "Time slot 0");
static_assert(offsetof(PrSDKTimeSuite, GetTicksPerVideoFrame) == 8, "Time slot 1");

static_assert(sizeof(PrSDKAudioSuite) == 8 * 8, "Audio suite v1 has 8 slots");
