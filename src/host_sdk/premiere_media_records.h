// Records of the selectors that deliver a clip's content and description: codec text, data
// rate, metadata, audio, preferred frame size, frames and header text. In all of them param1 is
// the file reference, except imGetPreferredFrameSize, whose record comes in param1.
#pragma once

#include <cstddef>
#include <cstdint>

#include "host_sdk/premiere_types.h"

#pragma pack(push, 1)

// imAnalysis, param2.
struct imAnalysisRec {
  void* privatedata;
  void* prefs;
  int32_t buffersize;  // capacity of buffer
  char* buffer;        // receives the codec text
  int32_t timecodeFormat;
};

// imDataRateAnalysis, param2. With no buffer the importer states the size it needs.
struct imDataRateAnalysisRec {
  void* privatedata;
  void* prefs;
  int32_t buffersize;
  char* buffer;      // an array of imDataSample
  int32_t baserate;  // audio bytes per second
};

struct imDataSample {
  uint32_t sampledur;   // in the video time base; kDataSampleKeyFrame marks a key frame
  uint32_t samplesize;  // bytes
};

// imGetMetaData and imSetMetaData, param2.
struct imMetaDataRec {
  void* privatedata;
  void* prefs;
  int32_t fourCC;
  uint32_t buffersize;
  char* buffer;
};

// imImportAudio7, param2. Always 32-bit float, one host-allocated buffer per channel.
struct imImportAudioRec7 {
  PrAudioSample position;  // negative: continue after the last read
  uint32_t size;           // sample frames wanted
  float** buffer;
  void* privateData;
  void* prefs;
};

// imGetPreferredFrameSize, param1 (param2 unused).
struct imPreferredFrameSizeRec {
  void* inPrivateData;
  void* inPrefs;
  PrPixelFormat inPixelFormat;
  int32_t inIndex;
  int32_t outWidth;
  int32_t outHeight;
};

// A 0 in any member accepts any value.
struct imFrameFormat {
  int32_t inFrameWidth;
  int32_t inFrameHeight;
  PrPixelFormat inPixelFormat;
};

struct imRenderContext {
  imRenderIntent inIntent;
  double inPlaybackRatio;
  double inPlaybackRate;
};

// imGetSourceVideo, param2. Declared in its newest form (112 bytes); hosts before 13.0 pass 96
// bytes, without opaqueColorSpaceIdentifier, so that field must not be touched.
struct imSourceVideoRec {
  void* inPrivateData;
  int32_t currentStreamIdx;
  PrTime inFrameTime;             // ticks
  imFrameFormat* inFrameFormats;  // in order of preference; null accepts any format
  int32_t inNumFrameFormats;
  bool removePulldown;
  char unused2[3];     // the host's padding; without it outFrame would sit three bytes early
  PPixHand* outFrame;  // receives the frame
  void* prefs;
  int32_t prefsSize;
  PrSDKString selectedColorProfileName;
  PrRenderQuality inQuality;
  imRenderContext inRenderContext;
  PrSDKColorSpaceID opaqueColorSpaceIdentifier;
};

// imGetTimeInfo8 and imSetTimeInfo8, param2.
struct imTimeInfoRec8 {
  void* privatedata;
  void* prefs;
  char orgtime[18];
  int32_t orgScale;
  int32_t orgSampleSize;
  char alttime[18];
  int32_t altScale;
  int32_t altSampleSize;
  char orgreel[40];
  char altreel[40];
  char logcomment[256];
  int32_t dataType;  // 1: SMPTE timecode
};

#pragma pack(pop)

static_assert(sizeof(imAnalysisRec) == 32, "imAnalysisRec is 32 bytes");
static_assert(offsetof(imAnalysisRec, privatedata) == 0, "imAnalysisRec layout");
static_assert(offsetof(imAnalysisRec, prefs) == 8, "imAnalysisRec layout");
static_assert(offsetof(imAnalysisRec, buffersize) == 16, "imAnalysisRec layout");
static_assert(offsetof(imAnalysisRec, buffer) == 20, "imAnalysisRec layout");
static_assert(offsetof(imAnalysisRec, timecodeFormat) == 28, "imAnalysisRec layout");

static_assert(sizeof(imDataRateAnalysisRec) == 32, "imDataRateAnalysisRec is 32 bytes");
static_assert(offsetof(imDataRateAnalysisRec, privatedata) == 0, "imDataRateAnalysisRec layout");
static_assert(offsetof(imDataRateAnalysisRec, prefs) == 8, "imDataRateAnalysisRec layout");
static_assert(offsetof(imDataRateAnalysisRec, buffersize) == 16, "imDataRateAnalysisRec layout");
static_assert(offsetof(imDataRateAnalysisRec, buffer) == 20, "imDataRateAnalysisRec layout");
static_assert(offsetof(imDataRateAnalysisRec, baserate) == 28, "imDataRateAnalysisRec layout");

static_assert(sizeof(imDataSample) == 8, "imDataSample is 8 bytes");
static_assert(offsetof(imDataSample, sampledur) == 0, "imDataSample layout");
static_assert(offsetof(imDataSample, samplesize) == 4, "imDataSample layout");

static_assert(sizeof(imMetaDataRec) == 32, "imMetaDataRec is 32 bytes");
static_assert(offsetof(imMetaDataRec, privatedata) == 0, "imMetaDataRec layout");
static_assert(offsetof(imMetaDataRec, prefs) == 8, "imMetaDataRec layout");
static_assert(offsetof(imMetaDataRec, fourCC) == 16, "imMetaDataRec layout");
static_assert(offsetof(imMetaDataRec, buffersize) == 20, "imMetaDataRec layout");
static_assert(offsetof(imMetaDataRec, buffer) == 24, "imMetaDataRec layout");

static_assert(sizeof(imImportAudioRec7) == 36, "imImportAudioRec7 is 36 bytes");
static_assert(offsetof(imImportAudioRec7, position) == 0, "imImportAudioRec7 layout");
static_assert(offsetof(imImportAudioRec7, size) == 8, "imImportAudioRec7 layout");
static_assert(offsetof(imImportAudioRec7, buffer) == 12, "imImportAudioRec7 layout");
static_assert(offsetof(imImportAudioRec7, privateData) == 20, "imImportAudioRec7 layout");
static_assert(offsetof(imImportAudioRec7, prefs) == 28, "imImportAudioRec7 layout");

static_assert(sizeof(imPreferredFrameSizeRec) == 32, "imPreferredFrameSizeRec is 32 bytes");
static_assert(offsetof(imPreferredFrameSizeRec, inPrivateData) == 0, "imPreferredFrameSizeRec");
static_assert(offsetof(imPreferredFrameSizeRec, inPrefs) == 8, "imPreferredFrameSizeRec");
static_assert(offsetof(imPreferredFrameSizeRec, inPixelFormat) == 16, "imPreferredFrameSizeRec");
static_assert(offsetof(imPreferredFrameSizeRec, inIndex) == 20, "imPreferredFrameSizeRec");
static_assert(offsetof(imPreferredFrameSizeRec, outWidth) == 24, "imPreferredFrameSizeRec");
static_assert(offsetof(imPreferredFrameSizeRec, outHeight) == 28, "imPreferredFrameSizeRec");

static_assert(sizeof(imFrameFormat) == 12, "imFrameFormat arrays have a 12-byte stride");
static_assert(offsetof(imFrameFormat, inFrameWidth) == 0, "imFrameFormat layout");
static_assert(offsetof(imFrameFormat, inFrameHeight) == 4, "imFrameFormat layout");
static_assert(offsetof(imFrameFormat, inPixelFormat) == 8, "imFrameFormat layout");

static_assert(sizeof(imRenderContext) == 20, "imRenderContext is 20 bytes");
static_assert(offsetof(imRenderContext, inIntent) == 0, "imRenderContext layout");
static_assert(offsetof(imRenderContext, inPlaybackRatio) == 4, "imRenderContext layout");
static_assert(offsetof(imRenderContext, inPlaybackRate) == 12, "imRenderContext layout");

static_assert(sizeof(imSourceVideoRec) == 112, "imSourceVideoRec is 112 bytes in its newest form");
static_assert(offsetof(imSourceVideoRec, inPrivateData) == 0, "imSourceVideoRec layout");
static_assert(offsetof(imSourceVideoRec, currentStreamIdx) == 8, "imSourceVideoRec layout");
static_assert(offsetof(imSourceVideoRec, inFrameTime) == 12, "imSourceVideoRec layout");
static_assert(offsetof(imSourceVideoRec, inFrameFormats) == 20, "imSourceVideoRec layout");
static_assert(offsetof(imSourceVideoRec, inNumFrameFormats) == 28, "imSourceVideoRec layout");
static_assert(offsetof(imSourceVideoRec, removePulldown) == 32, "imSourceVideoRec layout");
static_assert(offsetof(imSourceVideoRec, unused2) == 33, "imSourceVideoRec layout");
static_assert(offsetof(imSourceVideoRec, outFrame) == 36, "imSourceVideoRec layout");
static_assert(offsetof(imSourceVideoRec, prefs) == 44, "imSourceVideoRec layout");
static_assert(offsetof(imSourceVideoRec, prefsSize) == 52, "imSourceVideoRec layout");
static_assert(offsetof(imSourceVideoRec, selectedColorProfileName) == 56, "imSourceVideoRec");
static_assert(offsetof(imSourceVideoRec, inQuality) == 72, "imSourceVideoRec layout");
static_assert(offsetof(imSourceVideoRec, inRenderContext) == 76, "imSourceVideoRec layout");
static_assert(offsetof(imSourceVideoRec, inRenderContext) +
                      offsetof(imRenderContext, inPlaybackRatio) ==
                  80,
              "imSourceVideoRec inRenderContext.inPlaybackRatio");
static_assert(offsetof(imSourceVideoRec, inRenderContext) +
                      offsetof(imRenderContext, inPlaybackRate) ==
                  88,
              "imSourceVideoRec inRenderContext.inPlaybackRate");
static_assert(offsetof(imSourceVideoRec, opaqueColorSpaceIdentifier) == 96, "imSourceVideoRec");

static_assert(sizeof(imTimeInfoRec8) == 408, "imTimeInfoRec8 is 408 bytes");
static_assert(offsetof(imTimeInfoRec8, privatedata) == 0, "imTimeInfoRec8 layout");
static_assert(offsetof(imTimeInfoRec8, prefs) == 8, "imTimeInfoRec8 layout");
static_assert(offsetof(imTimeInfoRec8, orgtime) == 16, "imTimeInfoRec8 layout");
static_assert(offsetof(imTimeInfoRec8, orgScale) == 34, "imTimeInfoRec8 layout");
static_assert(offsetof(imTimeInfoRec8, orgSampleSize) == 38, "imTimeInfoRec8 layout");
static_assert(offsetof(imTimeInfoRec8, alttime) == 42, "imTimeInfoRec8 layout");
static_assert(offsetof(imTimeInfoRec8, altScale) == 60, "imTimeInfoRec8 layout");
static_assert(offsetof(imTimeInfoRec8, altSampleSize) == 64, "imTimeInfoRec8 layout");
static_assert(offsetof(imTimeInfoRec8, orgreel) == 68, "imTimeInfoRec8 layout");
static_assert(offsetof(imTimeInfoRec8, altreel) == 108, "imTimeInfoRec8 layout");
static_assert(offsetof(imTimeInfoRec8, logcomment) == 148, "imTimeInfoRec8 layout");
static_assert(offsetof(imTimeInfoRec8, dataType) == 404, "imTimeInfoRec8 layout");
