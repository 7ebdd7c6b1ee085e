// The file-information record of imGetInfo8 (param2) and the video and audio descriptions nested
// in it.
//
// Declared in its CC 2017 form, which ends after ivVerticalCapturedView (5373 bytes). Newer hosts
// pass a slightly longer record (5376 bytes), older ones a shorter one, so never write past byte
// 5372 and never treat sizeof(imFileInfoRec8) as the size the host allocated.
#pragma once

#include <cstddef>
#include <cstdint>

#include "host_sdk/premiere_types.h"

#pragma pack(push, 1)

struct imImageInfoRec {
  int32_t imageWidth;
  int32_t imageHeight;
  uint16_t pixelAspectV1;  // obsolete
  int16_t depth;           // bits per pixel
  int32_t subType;
  char fieldType;  // a prFieldType value in one byte
  char fieldsStacked;
  char reserved_1;
  char reserved_2;
  char alphaType;  // alphaStraight, alphaNone, ...
  matteColRec matteColor;
  char alphaInverted;
  char isVectors;
  char drawsExternal;
  char canForceInternalDraw;
  char dontObscure;
  char isStill;
  char noDuration;
  char reserved_3;
  uint32_t pixelAspectNum;
  uint32_t pixelAspectDen;
  char isRollCrawl;
  char reservedc[3];
  int32_t importerID;  // the host's key for this clip in the frame cache
  int32_t supportsAsyncIO;
  int32_t supportsGetSourceVideo;  // enables imGetSourceVideo
  int32_t hasPulldown;
  int32_t pulldownCadence;
  int32_t posterFrame;
  int32_t canTransform;
  int32_t interpretationUncertain;
  int32_t colorProfileSupport;
  PrSDKString codecDescription;
  // Reserved in CC 2017 hosts; later ones carved these fields out of it. None is touched.
  int32_t colorSpaceSupport;
  PrTime frameRate;
  prBool hasEmbeddedLUT;
  int32_t bitDepth;
  int32_t reserved[11];
};

struct imAudioInfoRec7 {
  int32_t numChannels;  // up to kMaxAudioChannelCount
  float sampleRate;
  PrAudioSampleType sampleType;
};

struct imFileInfoRec8 {
  char hasVideo;
  char hasAudio;
  imImageInfoRec vidInfo;
  int32_t vidScale;  // the video time base is vidScale / vidSampleSize
  int32_t vidSampleSize;
  int32_t vidDuration;  // in vidSampleSize units
  imAudioInfoRec7 audInfo;
  PrAudioSample audDuration;
  int32_t accessModes;
  void* privatedata;  // the importer's handle from the host's memory functions
  void* prefs;
  char hasDataRate;  // enables imDataRateAnalysis
  int32_t streamIdx;
  char streamsAsComp;
  prUTF16Char streamName[256];
  int32_t sessionPluginID;
  char alwaysUnquiet;
  char unused;
  prUTF16Char filePath[2048];
  char canProvidePeakData;
  char mayBeGrowing;
  char ignoreGrowing;
  prUTF16Char sourceSettingsMatchName[256];
  int64_t vidDurationInFrames;  // when non-zero the host ignores vidDuration
  PrIVProjectionType ivProjectionType;
  PrIVFrameLayout ivFrameLayout;
  uint32_t ivHorizontalCapturedView;  // degrees
  uint32_t ivVerticalCapturedView;    // degrees
};

#pragma pack(pop)

static_assert(sizeof(imImageInfoRec) == 160, "imImageInfoRec is 160 bytes");
static_assert(offsetof(imImageInfoRec, imageWidth) == 0, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, imageHeight) == 4, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, pixelAspectV1) == 8, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, depth) == 10, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, subType) == 12, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, fieldType) == 16, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, fieldsStacked) == 17, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, reserved_1) == 18, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, reserved_2) == 19, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, alphaType) == 20, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, matteColor) == 21, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, alphaInverted) == 24, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, isVectors) == 25, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, drawsExternal) == 26, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, canForceInternalDraw) == 27, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, dontObscure) == 28, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, isStill) == 29, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, noDuration) == 30, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, reserved_3) == 31, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, pixelAspectNum) == 32, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, pixelAspectDen) == 36, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, isRollCrawl) == 40, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, reservedc) == 41, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, importerID) == 44, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, supportsAsyncIO) == 48, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, supportsGetSourceVideo) == 52, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, hasPulldown) == 56, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, pulldownCadence) == 60, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, posterFrame) == 64, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, canTransform) == 68, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, interpretationUncertain) == 72, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, colorProfileSupport) == 76, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, codecDescription) == 80, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, colorSpaceSupport) == 96, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, frameRate) == 100, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, hasEmbeddedLUT) == 108, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, bitDepth) == 112, "imImageInfoRec layout");
static_assert(offsetof(imImageInfoRec, reserved) == 116, "imImageInfoRec layout");

static_assert(sizeof(imAudioInfoRec7) == 12, "imAudioInfoRec7 is 12 bytes");
static_assert(offsetof(imAudioInfoRec7, numChannels) == 0, "imAudioInfoRec7 layout");
static_assert(offsetof(imAudioInfoRec7, sampleRate) == 4, "imAudioInfoRec7 layout");
static_assert(offsetof(imAudioInfoRec7, sampleType) == 8, "imAudioInfoRec7 layout");

static_assert(sizeof(imFileInfoRec8) == 5373, "imFileInfoRec8 is 5373 bytes in its CC 2017 form");
static_assert(offsetof(imFileInfoRec8, hasVideo) == 0, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, hasAudio) == 1, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, vidInfo) == 2, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, vidScale) == 162, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, vidSampleSize) == 166, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, vidDuration) == 170, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, audInfo) == 174, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, audDuration) == 186, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, accessModes) == 194, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, privatedata) == 198, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, prefs) == 206, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, hasDataRate) == 214, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, streamIdx) == 215, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, streamsAsComp) == 219, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, streamName) == 220, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, sessionPluginID) == 732, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, alwaysUnquiet) == 736, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, unused) == 737, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, filePath) == 738, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, canProvidePeakData) == 4834, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, mayBeGrowing) == 4835, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, ignoreGrowing) == 4836, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, sourceSettingsMatchName) == 4837, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, vidDurationInFrames) == 5349, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, ivProjectionType) == 5357, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, ivFrameLayout) == 5361, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, ivHorizontalCapturedView) == 5365, "imFileInfoRec8 layout");
static_assert(offsetof(imFileInfoRec8, ivVerticalCapturedView) == 5369, "imFileInfoRec8 layout");

// The nested fields at the positions the host reads them.
static_assert(offsetof(imFileInfoRec8, vidInfo) + offsetof(imImageInfoRec, imageWidth) == 2,
              "vidInfo.imageWidth");
static_assert(offsetof(imFileInfoRec8, vidInfo) + offsetof(imImageInfoRec, imageHeight) == 6,
              "vidInfo.imageHeight");
static_assert(offsetof(imFileInfoRec8, vidInfo) + offsetof(imImageInfoRec, depth) == 12,
              "vidInfo.depth");
static_assert(offsetof(imFileInfoRec8, vidInfo) + offsetof(imImageInfoRec, subType) == 14,
              "vidInfo.subType");
static_assert(offsetof(imFileInfoRec8, vidInfo) + offsetof(imImageInfoRec, fieldType) == 18,
              "vidInfo.fieldType");
static_assert(offsetof(imFileInfoRec8, vidInfo) + offsetof(imImageInfoRec, alphaType) == 22,
              "vidInfo.alphaType");
static_assert(offsetof(imFileInfoRec8, vidInfo) + offsetof(imImageInfoRec, matteColor) == 23,
              "vidInfo.matteColor");
static_assert(offsetof(imFileInfoRec8, vidInfo) + offsetof(imImageInfoRec, pixelAspectNum) == 34,
              "vidInfo.pixelAspectNum");
static_assert(offsetof(imFileInfoRec8, vidInfo) + offsetof(imImageInfoRec, pixelAspectDen) == 38,
              "vidInfo.pixelAspectDen");
static_assert(offsetof(imFileInfoRec8, vidInfo) + offsetof(imImageInfoRec, importerID) == 46,
              "vidInfo.importerID");
static_assert(offsetof(imFileInfoRec8, vidInfo) + offsetof(imImageInfoRec, supportsAsyncIO) == 50,
              "vidInfo.supportsAsyncIO");
static_assert(offsetof(imFileInfoRec8, vidInfo) +
                      offsetof(imImageInfoRec, supportsGetSourceVideo) ==
                  54,
              "vidInfo.supportsGetSourceVideo");
static_assert(offsetof(imFileInfoRec8, vidInfo) + offsetof(imImageInfoRec, hasPulldown) == 58,
              "vidInfo.hasPulldown");
static_assert(offsetof(imFileInfoRec8, vidInfo) + offsetof(imImageInfoRec, codecDescription) == 82,
              "vidInfo.codecDescription");
static_assert(offsetof(imFileInfoRec8, vidInfo) + offsetof(imImageInfoRec, hasEmbeddedLUT) == 110,
              "vidInfo.hasEmbeddedLUT");
static_assert(offsetof(imFileInfoRec8, audInfo) + offsetof(imAudioInfoRec7, numChannels) == 174,
              "audInfo.numChannels");
static_assert(offsetof(imFileInfoRec8, audInfo) + offsetof(imAudioInfoRec7, sampleRate) == 178,
              "audInfo.sampleRate");
static_assert(offsetof(imFileInfoRec8, audInfo) + offsetof(imAudioInfoRec7, sampleType) == 182,
              "audInfo.sampleType");
