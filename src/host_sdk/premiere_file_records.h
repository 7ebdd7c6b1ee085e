// Records of the selectors that name, open, save, delete, measure and trim files.
#pragma once

#include <cstddef>
#include <cstdint>

#include "host_sdk/premiere_types.h"

extern "C" {
// Answers imProgressContinue to go on, imProgressAbort to stop. Hosts may pass none.
using importProgressFunc = int32_t (*)(int32_t partDone, int32_t totalToDo, void* callbackID);
}

#pragma pack(push, 1)

// imGetInfo8 and imGetPrefs8 (param1), imCalcSize8 and imCheckTrim8 (param2), imTrimFile8
// (param1, the source). Also the head of imFileOpenRec8.
struct imFileAccessRec8 {
  void* importID;  // the host's; leave alone
  int32_t filetype;
  const prUTF16Char* filepath;
  imFileRef fileref;
  PrMemoryPtr newfilename;  // a UTF-16 name buffer, imGetPrefs8 only
};

// imOpenFile8. The importer stores its own file reference both in fileinfo.fileref and through
// the file-reference slot the host passes beside the record (see host_assumptions.h).
struct imFileOpenRec8 {
  imFileAccessRec8 fileinfo;
  void* privatedata;  // reused when already set
  int32_t delegatetype;
  PrFileOpenAccess inReadWrite;
  int32_t inImporterID;
  csSDK_size_t outExtraMemoryUsage;
  int32_t inStreamIdx;
};

// imGetPrefs8, param2. Two calls: with no block yet the importer states prefsLength; the host
// then allocates that many bytes and asks again.
struct imGetPrefsRec {
  char* prefs;
  int32_t prefsLength;
  char firstTime;
  PrTimelineID timelineData;
  int32_t unused;  // once privatedata
  TDB_TimeRecord tdbTimelineLocation;
  int32_t sessionPluginID;
  int32_t imageWidth;
  int32_t imageHeight;
  uint32_t pixelAspectNum;
  uint32_t pixelAspectDen;
  int32_t vidScale;
  int32_t vidSampleSize;
  float sampleRate;
};

// imSaveFile8, param1.
struct imSaveFileRec8 {
  void* privatedata;
  int32_t* prefs;
  const prUTF16Char* sourcePath;
  const prUTF16Char* destPath;
  char move;  // non-zero: move rather than copy
  importProgressFunc progressCallback;
  void* progressCallbackID;
};

// imDeleteFile8, param1.
struct imDeleteFileRec8 {
  int32_t filetype;
  const prUTF16Char* deleteFilePath;
};

// imCalcSize8, param1. trimIn and duration count in units of sampleSize / scale seconds.
struct imCalcSizeRec {
  void* privatedata;
  void* prefs;
  int32_t trimIn;
  int32_t duration;  // 0: the whole file
  int64_t sizeInBytes;
  int32_t scale;
  int32_t sampleSize;
};

// imCheckTrim8, param1. Returning with the bounds untouched accepts them.
struct imCheckTrimRec {
  void* privatedata;
  void* prefs;
  int32_t trimIn;
  int32_t duration;
  int32_t keepAudio;
  int32_t keepVideo;
  int32_t newTrimIn;
  int32_t newDuration;
  int32_t scale;
  int32_t sampleSize;
};

// imTrimFile8, param2. With video present the trim is in the video time base.
struct imTrimFileRec8 {
  void* privatedata;
  void* prefs;
  int32_t trimIn;
  int32_t duration;  // 0: keep the whole clip
  int32_t keepAudio;
  int32_t keepVideo;
  const prUTF16Char* destFilePath;
  int32_t scale;
  int32_t sampleSize;
  importProgressFunc progressCallback;
  void* progressCallbackID;
};

#pragma pack(pop)

static_assert(sizeof(imFileAccessRec8) == 36, "imFileAccessRec8 is 36 bytes");
static_assert(offsetof(imFileAccessRec8, importID) == 0, "imFileAccessRec8 layout");
static_assert(offsetof(imFileAccessRec8, filetype) == 8, "imFileAccessRec8 layout");
static_assert(offsetof(imFileAccessRec8, filepath) == 12, "imFileAccessRec8 layout");
static_assert(offsetof(imFileAccessRec8, fileref) == 20, "imFileAccessRec8 layout");
static_assert(offsetof(imFileAccessRec8, newfilename) == 28, "imFileAccessRec8 layout");

static_assert(sizeof(imFileOpenRec8) == 68, "imFileOpenRec8 is 68 bytes");
static_assert(offsetof(imFileOpenRec8, fileinfo) == 0, "imFileOpenRec8 layout");
static_assert(offsetof(imFileOpenRec8, fileinfo) + offsetof(imFileAccessRec8, filepath) == 12,
              "imFileOpenRec8 fileinfo.filepath");
static_assert(offsetof(imFileOpenRec8, fileinfo) + offsetof(imFileAccessRec8, fileref) == 20,
              "imFileOpenRec8 fileinfo.fileref");
static_assert(offsetof(imFileOpenRec8, privatedata) == 36, "imFileOpenRec8 layout");
static_assert(offsetof(imFileOpenRec8, delegatetype) == 44, "imFileOpenRec8 layout");
static_assert(offsetof(imFileOpenRec8, inReadWrite) == 48, "imFileOpenRec8 layout");
static_assert(offsetof(imFileOpenRec8, inImporterID) == 52, "imFileOpenRec8 layout");
static_assert(offsetof(imFileOpenRec8, outExtraMemoryUsage) == 56, "imFileOpenRec8 layout");
static_assert(offsetof(imFileOpenRec8, inStreamIdx) == 64, "imFileOpenRec8 layout");

static_assert(sizeof(imGetPrefsRec) == 65, "imGetPrefsRec is 65 bytes");
static_assert(offsetof(imGetPrefsRec, prefs) == 0, "imGetPrefsRec layout");
static_assert(offsetof(imGetPrefsRec, prefsLength) == 8, "imGetPrefsRec layout");
static_assert(offsetof(imGetPrefsRec, firstTime) == 12, "imGetPrefsRec layout");
static_assert(offsetof(imGetPrefsRec, timelineData) == 13, "imGetPrefsRec layout");
static_assert(offsetof(imGetPrefsRec, unused) == 17, "imGetPrefsRec layout");
static_assert(offsetof(imGetPrefsRec, tdbTimelineLocation) == 21, "imGetPrefsRec layout");
static_assert(offsetof(imGetPrefsRec, sessionPluginID) == 33, "imGetPrefsRec layout");
static_assert(offsetof(imGetPrefsRec, imageWidth) == 37, "imGetPrefsRec layout");
static_assert(offsetof(imGetPrefsRec, imageHeight) == 41, "imGetPrefsRec layout");
static_assert(offsetof(imGetPrefsRec, pixelAspectNum) == 45, "imGetPrefsRec layout");
static_assert(offsetof(imGetPrefsRec, pixelAspectDen) == 49, "imGetPrefsRec layout");
static_assert(offsetof(imGetPrefsRec, vidScale) == 53, "imGetPrefsRec layout");
static_assert(offsetof(imGetPrefsRec, vidSampleSize) == 57, "imGetPrefsRec layout");
static_assert(offsetof(imGetPrefsRec, sampleRate) == 61, "imGetPrefsRec layout");

static_assert(sizeof(imSaveFileRec8) == 49, "imSaveFileRec8 is 49 bytes");
static_assert(offsetof(imSaveFileRec8, privatedata) == 0, "imSaveFileRec8 layout");
static_assert(offsetof(imSaveFileRec8, prefs) == 8, "imSaveFileRec8 layout");
static_assert(offsetof(imSaveFileRec8, sourcePath) == 16, "imSaveFileRec8 layout");
static_assert(offsetof(imSaveFileRec8, destPath) == 24, "imSaveFileRec8 layout");
static_assert(offsetof(imSaveFileRec8, move) == 32, "imSaveFileRec8 layout");
static_assert(offsetof(imSaveFileRec8, progressCallback) == 33, "imSaveFileRec8 layout");
static_assert(offsetof(imSaveFileRec8, progressCallbackID) == 41, "imSaveFileRec8 layout");

static_assert(sizeof(imDeleteFileRec8) == 12, "imDeleteFileRec8 is 12 bytes");
static_assert(offsetof(imDeleteFileRec8, filetype) == 0, "imDeleteFileRec8 layout");
static_assert(offsetof(imDeleteFileRec8, deleteFilePath) == 4, "imDeleteFileRec8 layout");

static_assert(sizeof(imCalcSizeRec) == 40, "imCalcSizeRec is 40 bytes");
static_assert(offsetof(imCalcSizeRec, privatedata) == 0, "imCalcSizeRec layout");
static_assert(offsetof(imCalcSizeRec, prefs) == 8, "imCalcSizeRec layout");
static_assert(offsetof(imCalcSizeRec, trimIn) == 16, "imCalcSizeRec layout");
static_assert(offsetof(imCalcSizeRec, duration) == 20, "imCalcSizeRec layout");
static_assert(offsetof(imCalcSizeRec, sizeInBytes) == 24, "imCalcSizeRec layout");
static_assert(offsetof(imCalcSizeRec, scale) == 32, "imCalcSizeRec layout");
static_assert(offsetof(imCalcSizeRec, sampleSize) == 36, "imCalcSizeRec layout");

static_assert(sizeof(imCheckTrimRec) == 48, "imCheckTrimRec is 48 bytes");
static_assert(offsetof(imCheckTrimRec, privatedata) == 0, "imCheckTrimRec layout");
static_assert(offsetof(imCheckTrimRec, prefs) == 8, "imCheckTrimRec layout");
static_assert(offsetof(imCheckTrimRec, trimIn) == 16, "imCheckTrimRec layout");
static_assert(offsetof(imCheckTrimRec, duration) == 20, "imCheckTrimRec layout");
static_assert(offsetof(imCheckTrimRec, keepAudio) == 24, "imCheckTrimRec layout");
static_assert(offsetof(imCheckTrimRec, keepVideo) == 28, "imCheckTrimRec layout");
static_assert(offsetof(imCheckTrimRec, newTrimIn) == 32, "imCheckTrimRec layout");
static_assert(offsetof(imCheckTrimRec, newDuration) == 36, "imCheckTrimRec layout");
static_assert(offsetof(imCheckTrimRec, scale) == 40, "imCheckTrimRec layout");
static_assert(offsetof(imCheckTrimRec, sampleSize) == 44, "imCheckTrimRec layout");

static_assert(sizeof(imTrimFileRec8) == 64, "imTrimFileRec8 is 64 bytes");
static_assert(offsetof(imTrimFileRec8, privatedata) == 0, "imTrimFileRec8 layout");
static_assert(offsetof(imTrimFileRec8, prefs) == 8, "imTrimFileRec8 layout");
static_assert(offsetof(imTrimFileRec8, trimIn) == 16, "imTrimFileRec8 layout");
static_assert(offsetof(imTrimFileRec8, duration) == 20, "imTrimFileRec8 layout");
static_assert(offsetof(imTrimFileRec8, keepAudio) == 24, "imTrimFileRec8 layout");
static_assert(offsetof(imTrimFileRec8, keepVideo) == 28, "imTrimFileRec8 layout");
static_assert(offsetof(imTrimFileRec8, destFilePath) == 32, "imTrimFileRec8 layout");
static_assert(offsetof(imTrimFileRec8, scale) == 40, "imTrimFileRec8 layout");
static_assert(offsetof(imTrimFileRec8, sampleSize) == 44, "imTrimFileRec8 layout");
static_assert(offsetof(imTrimFileRec8, progressCallback) == 48, "imTrimFileRec8 layout");
static_assert(offsetof(imTrimFileRec8, progressCallbackID) == 56, "imTrimFileRec8 layout");
