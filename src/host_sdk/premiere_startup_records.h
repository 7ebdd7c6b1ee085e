// Records of the start-up selectors: capabilities (imInit), file types (imGetIndFormat) and pixel
// formats (imGetIndPixelFormat). Byte-packed like every host record.
#pragma once

#include <cstddef>
#include <cstdint>

#include "host_sdk/premiere_constants.h"
#include "host_sdk/premiere_types.h"

#pragma pack(push, 1)

// imInit, param1. The host presets every option to false before the call. Words 0..18 are
// 32-bit; from byte 76 on only byte packing puts the fields where the host expects them.
struct imImportInfoRec {
  uint32_t importerType;  // filled by the host from the IMPT resource; leave alone
  int32_t unused1;        // once canOpen: importers always open their own files now
  int32_t canSave;
  int32_t canDelete;
  int32_t canResize;
  int32_t canDoSubsize;
  int32_t canDoContinuousTime;
  int32_t noFile;
  int32_t addToMenu;
  int32_t hasSetup;  // enables imGetPrefs8
  int32_t dontCache;
  int32_t setupOnDblClk;
  int32_t keepLoaded;
  int32_t priority;
  int32_t canAsync;
  int32_t canCreate;
  int32_t canCalcSizes;  // enables imCalcSize8
  int32_t canTrim;       // enables imCheckTrim8 and imTrimFile8
  int32_t avoidAudioConform;
  prUTF16Char* acceleratorFileExt;
  int32_t canCopy;
  int32_t canSupplyMetadataClipName;
  int32_t canValidatePrefs;
  int32_t canProvidePeakAudio;
  int32_t canProvideFileList;
  int32_t canProvideClosedCaptions;
  prPluginID fileInfoVersion;
  int32_t hasSourceSettingsEffect;
  int32_t hasPersistentData;
  int32_t reserved[10];
};

// imGetIndFormat, param2 (param1 is the index). Asked with rising indices until the importer
// answers imBadFormatIndex.
struct imIndFormatRec {
  int32_t filetype;
  int32_t flags;  // legacy
  int32_t canWriteTimecode;
  char FormatName[256];
  char FormatShortName[32];
  char PlatformExtension[256];  // several extensions are separated by NUL characters
  prBool hasAlternateTypes;
  int32_t alternateTypes[kMaxAlternateTypes];  // deprecated
  int32_t canWriteMetaData;
};

// imGetIndPixelFormat, param2 (param1 is the index).
struct imIndPixelFormatRec {
  void* privatedata;
  PrPixelFormat outPixelFormat;
  const void* prefs;
};

#pragma pack(pop)

static_assert(sizeof(imImportInfoRec) == 193, "imImportInfoRec is 193 bytes");
static_assert(offsetof(imImportInfoRec, importerType) == 0, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, unused1) == 4, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, canSave) == 8, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, canDelete) == 12, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, canResize) == 16, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, canDoSubsize) == 20, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, canDoContinuousTime) == 24, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, noFile) == 28, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, addToMenu) == 32, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, hasSetup) == 36, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, dontCache) == 40, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, setupOnDblClk) == 44, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, keepLoaded) == 48, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, priority) == 52, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, canAsync) == 56, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, canCreate) == 60, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, canCalcSizes) == 64, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, canTrim) == 68, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, avoidAudioConform) == 72, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, acceleratorFileExt) == 76, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, canCopy) == 84, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, canSupplyMetadataClipName) == 88, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, canValidatePrefs) == 92, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, canProvidePeakAudio) == 96, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, canProvideFileList) == 100, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, canProvideClosedCaptions) == 104, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, fileInfoVersion) == 108, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, hasSourceSettingsEffect) == 145, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, hasPersistentData) == 149, "imImportInfoRec layout");
static_assert(offsetof(imImportInfoRec, reserved) == 153, "imImportInfoRec layout");

static_assert(sizeof(imIndFormatRec) == 764, "imIndFormatRec is 764 bytes");
static_assert(offsetof(imIndFormatRec, filetype) == 0, "imIndFormatRec layout");
static_assert(offsetof(imIndFormatRec, flags) == 4, "imIndFormatRec layout");
static_assert(offsetof(imIndFormatRec, canWriteTimecode) == 8, "imIndFormatRec layout");
static_assert(offsetof(imIndFormatRec, FormatName) == 12, "imIndFormatRec layout");
static_assert(offsetof(imIndFormatRec, FormatShortName) == 268, "imIndFormatRec layout");
static_assert(offsetof(imIndFormatRec, PlatformExtension) == 300, "imIndFormatRec layout");
static_assert(offsetof(imIndFormatRec, hasAlternateTypes) == 556, "imIndFormatRec layout");
static_assert(offsetof(imIndFormatRec, alternateTypes) == 560, "imIndFormatRec layout");
static_assert(offsetof(imIndFormatRec, canWriteMetaData) == 760, "imIndFormatRec layout");

static_assert(sizeof(imIndPixelFormatRec) == 20, "imIndPixelFormatRec is 20 bytes");
static_assert(offsetof(imIndPixelFormatRec, privatedata) == 0, "imIndPixelFormatRec layout");
static_assert(offsetof(imIndPixelFormatRec, outPixelFormat) == 8, "imIndPixelFormatRec layout");
static_assert(offsetof(imIndPixelFormatRec, prefs) == 12, "imIndPixelFormatRec layout");
