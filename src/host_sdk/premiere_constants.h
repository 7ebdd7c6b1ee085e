// Numbers exchanged with the host: selectors, result codes, pixel formats, audio and clip codes,
// and the plug-in's own four-character codes.
#pragma once

#include <cstdint>

#include "host_sdk/premiere_types.h"

// Interface versions reported in imStdParms::imInterfaceVer (IMPORTMOD_VERSION_n is n).
constexpr int32_t IMPORTMOD_VERSION_6 = 6;    // Premiere Elements 1.0: audio conform, access modes
constexpr int32_t IMPORTMOD_VERSION_9 = 9;    // CS4, the oldest host the plug-in serves
constexpr int32_t IMPORTMOD_VERSION_18 = 18;  // CC 2017, which added the VR fields

constexpr prBool kPrFalse = 0;
constexpr prBool kPrTrue = 1;

// Selectors.
constexpr int32_t imInit = 0;
constexpr int32_t imShutdown = 1;
constexpr int32_t imQuietFile = 8;
constexpr int32_t imCloseFile = 9;
constexpr int32_t imAnalysis = 12;
constexpr int32_t imDataRateAnalysis = 13;
constexpr int32_t imGetIndFormat = 14;
constexpr int32_t imGetMetaData = 23;
constexpr int32_t imSetMetaData = 24;
constexpr int32_t imImportAudio7 = 25;
constexpr int32_t imGetIndPixelFormat = 27;
constexpr int32_t imGetSupports8 = 36;
constexpr int32_t imGetInfo8 = 37;
constexpr int32_t imGetPrefs8 = 38;
constexpr int32_t imOpenFile8 = 39;
constexpr int32_t imSaveFile8 = 40;
constexpr int32_t imDeleteFile8 = 41;
constexpr int32_t imCalcSize8 = 42;
constexpr int32_t imCheckTrim8 = 43;
constexpr int32_t imTrimFile8 = 44;
constexpr int32_t imGetPreferredFrameSize = 45;
constexpr int32_t imCreateAsyncImporter = 46;
constexpr int32_t imGetSourceVideo = 47;
constexpr int32_t imGetTimeInfo8 = 52;
constexpr int32_t imSetTimeInfo8 = 53;

// Result codes. imIsCacheable (400) is deliberately absent: answering it at start-up lets the
// host skip imInit on later launches, and the plug-in starts its command thread there.
constexpr int32_t imNoErr = 0;
constexpr int32_t imBadFile = 2;
constexpr int32_t imUnsupported = 3;
constexpr int32_t imMemErr = 4;
constexpr int32_t imOtherErr = 5;
constexpr int32_t imNoContent = 6;
constexpr int32_t imSaveErr = 14;
constexpr int32_t imDeleteErr = 15;
constexpr int32_t imDiskErr = 22;
constexpr int32_t malUnknownError = 99;
constexpr int32_t malSupports8 = 101;      // the one answer to imGetSupports8
constexpr int32_t imBadFormatIndex = 301;  // ends the host's walk over format indices

// Pixel formats; neighbouring codes differ only in letter case, so compare all four bytes.
constexpr PrPixelFormat PrPixelFormat_Any = 0;
constexpr PrPixelFormat PrPixelFormat_YUV_420_MPEG4_FRAME_PICTURE_PLANAR_8u_709_FullRange =
    0x46317659;                                                    // "Yv1F" in memory
constexpr PrPixelFormat PrPixelFormat_VUYA_4444_32f = 0x61795556;  // "VUya", 16 bytes per pixel
constexpr PrPixelFormat PrPixelFormat_BGRA_4444_8u = 0x61726762;   // "bgra", 4 bytes per pixel

// CreatePPix refuses read-only access.
constexpr PrPPixBufferAccess PrPPixBufferAccess_ReadOnly = 0;
constexpr PrPPixBufferAccess PrPPixBufferAccess_WriteOnly = 1;
constexpr PrPPixBufferAccess PrPPixBufferAccess_ReadWrite = 2;

constexpr PrFileOpenAccess PrFileOpenAccess_ReadOnly = 0;
constexpr PrFileOpenAccess PrFileOpenAccess_ReadWrite = 1;

// Audio. The host's audio is always 32-bit float, one buffer per channel.
constexpr PrAudioSampleType kPrAudioSampleType_8BitInt = 1;
constexpr PrAudioSampleType kPrAudioSampleType_8BitTwosInt = 2;
constexpr PrAudioSampleType kPrAudioSampleType_16BitInt = 3;
constexpr PrAudioSampleType kPrAudioSampleType_24BitInt = 4;
constexpr PrAudioSampleType kPrAudioSampleType_32BitInt = 5;
constexpr PrAudioSampleType kPrAudioSampleType_32BitFloat = 6;
constexpr PrAudioSampleType kPrAudioSampleType_64BitFloat = 7;

constexpr PrAudioChannelType kPrAudioChannelType_Mono = 1;
constexpr PrAudioChannelType kPrAudioChannelType_Stereo = 2;
constexpr PrAudioChannelType kPrAudioChannelType_51 = 3;  // L, R, Ls, Rs, C, LFE
constexpr PrAudioChannelType kPrAudioChannelType_MaxChannel = 4;
constexpr int32_t kMaxAudioChannelCount = 32;

// Field order, as an integer type; imImageInfoRec stores it in one char.
constexpr prFieldType prFieldsInvalid = -1;
constexpr prFieldType prFieldsNone = 0;
constexpr prFieldType prFieldsUpperFirst = 1;
constexpr prFieldType prFieldsLowerFirst = 2;
constexpr prFieldType prFieldsUnknown = 3;
constexpr prFieldType prFieldsAny = 4;

// imImageInfoRec::alphaType values (a char field). The list order in the host's documentation is
// not the numbering: "no alpha" is alphaNone, not alphaOpaque.
constexpr char alphaUnknown = 0;
constexpr char alphaStraight = 1;
constexpr char alphaBlackMatte = 2;
constexpr char alphaWhiteMatte = 3;
constexpr char alphaArbitrary = 4;
constexpr char alphaNone = 5;
constexpr char alphaOpaque = 6;
constexpr char alphaIgnore = 7;

// imFileInfoRec8::accessModes.
constexpr int32_t kRandomAccessImport = 0;
constexpr int32_t kSequentialAudioOnly = 1;
constexpr int32_t kSequentialVideoOnly = 2;
constexpr int32_t kSequentialOnly = 3;
constexpr int32_t kSeparateSequentialAudio = 4;

// VR description in imFileInfoRec8.
constexpr PrIVProjectionType kPrIVProjectionType_None = 0;
constexpr PrIVProjectionType kPrIVProjectionType_Equirectangular = 1;
constexpr PrIVFrameLayout kPrIVFrameLayout_Monoscopic = 0;
constexpr PrIVFrameLayout kPrIVFrameLayout_StereoscopicOverUnder = 1;  // left eye above right
constexpr uint32_t kFullHorizontalCapturedView = 360;                  // degrees
constexpr uint32_t kFullVerticalCapturedView = 180;                    // degrees

// Time suite frame rates.
constexpr PrVideoFrameRates kVideoFrameRate_24Drop = 1;  // 24000/1001
constexpr PrVideoFrameRates kVideoFrameRate_24 = 2;
constexpr PrVideoFrameRates kVideoFrameRate_PAL = 3;   // 25
constexpr PrVideoFrameRates kVideoFrameRate_NTSC = 4;  // 30000/1001
constexpr PrVideoFrameRates kVideoFrameRate_30 = 5;
constexpr PrVideoFrameRates kVideoFrameRate_PAL_HD = 6;   // 50
constexpr PrVideoFrameRates kVideoFrameRate_NTSC_HD = 7;  // 60000/1001
constexpr PrVideoFrameRates kVideoFrameRate_60 = 8;

constexpr prSuiteError suiteError_NoError = 0;
// GetTicksPerAudioSample's answer when the rate does not divide the tick rate: still a success.
constexpr prSuiteError suiteError_TimeRoundedAudioRate = 0x00020000;
constexpr prSuiteError kPrTimeSuite_RoundedAudioRate = suiteError_TimeRoundedAudioRate;
constexpr SPErr kSPNoError = 0;

// Answers of importProgressFunc.
constexpr int32_t imProgressAbort = 0;
constexpr int32_t imProgressContinue = 1;

// The file-reference value that marks a file closed, as an integer because a pointer constant
// cannot be constexpr: compare with reinterpret_cast<intptr_t>(ref).
constexpr intptr_t imInvalidHandleValue = -1;
constexpr intptr_t kBadFileRef = imInvalidHandleValue;

// High bit of imDataSample::sampledur.
constexpr uint32_t kDataSampleKeyFrame = 0x80000000u;

constexpr int32_t kMaxAlternateTypes = 50;

// The plug-in's four-character codes, as big-endian integers.
constexpr int32_t kQuorvelFileType = 0x0071766F;     // "qvo"
constexpr int32_t kQuorvelSubTypeRle = 0x524C455F;   // "RLE_", video and audio subtype
constexpr int32_t imUncompressed = 0x52415720;       // "RAW ", picks the codec text only
constexpr int32_t kQuorvelSubType10yu = 0x31307975;  // "10yu", picks the codec text only

// The host finds importers by an IMPT resource (id 1000) holding one unique code; it names the
// file type. A resource script needs the value with an L suffix (0x0071766FL), otherwise the
// resource compiler stores only 16 bits.
constexpr int32_t kImptResourceId = 1000;
constexpr int32_t kQuorvelImptCode = kQuorvelFileType;
