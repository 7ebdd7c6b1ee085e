// Basic types of the host's importer interface on x64 Windows.
//
// Everything is declared with fixed-width types: the plug-in is built by MSVC and mingw-w64, and
// its tests also run natively on Linux x86-64, where `long` (8 bytes) and `wchar_t` (4 bytes)
// differ from Windows. The host's records are byte-packed, so the small structs here are too.
#pragma once

#include <cstddef>
#include <cstdint>

using csSDK_int8 = int8_t;
using csSDK_uint8 = uint8_t;
using csSDK_int16 = int16_t;
using csSDK_uint16 = uint16_t;
using csSDK_int32 = int32_t;
using csSDK_uint32 = uint32_t;
using csSDK_int64 = int64_t;
using csSDK_size_t = uint64_t;
using prInt64 = int64_t;

using PrTime = int64_t;         // ticks; the tick rate must be asked of the time suite
using PrAudioSample = int64_t;  // a count or position in sample frames

// The host's text is UTF-16 (paths are NUL-terminated). On Windows the same units are wchar_t,
// so a path can be reinterpreted for Win32 calls there.
using prUTF16Char = char16_t;
using prUTF8Char = uint8_t;

using prBool = int32_t;  // four bytes, unlike C++ bool

// Four-character code with the first character in the lowest byte.
using PrPixelFormat = uint32_t;
using PrAudioSampleType = uint32_t;

// The host forces its enumerations to 32 bits; declaring them as integers keeps the size fixed in
// every toolchain.
using PrFileOpenAccess = int32_t;
using PrPPixBufferAccess = int32_t;
using PrRenderQuality = int32_t;
using PrVideoFrameRates = int32_t;
using PrAudioChannelType = int32_t;
using PrIVProjectionType = int32_t;
using PrIVFrameLayout = int32_t;
using imRenderIntent = int32_t;
using prFieldType = int32_t;  // inside imImageInfoRec it is stored in one char
using PrTimelineID = int32_t;

using prSuiteError = int32_t;  // 0 success, negative failure, positive success with a remark
using SPErr = int32_t;         // 0 success

using PrMemoryPtr = char*;
using PrMemoryHandle = char**;  // the block is *handle

// Frames are only ever touched through suites.
struct PPix;
using PPixHand = PPix**;

// A Win32 HANDLE to the host; the host only looks for the closed value -1 (kBadFileRef).
using imFileRef = void*;

// Appear only in utility-table slots the plug-in never calls.
struct prFileSpec;
struct prTimebaseRec;

// Stands in for table slots whose signatures the plug-in does not rely on; never call one.
using OpaqueHostFunction = void (*)();

#pragma pack(push, 1)

// Windows RECT member order.
struct prRect {
  int32_t left;
  int32_t top;
  int32_t right;
  int32_t bottom;
};

// Host-owned string handle; opaque to importers.
struct PrSDKString {
  int64_t opaque[2];
};

struct PrSDKColorSpaceID {
  int64_t opaque[2];
};

// NUL-terminated GUID text; its odd size leaves the fields after it unaligned.
struct prPluginID {
  char guid[37];
};

// Note the order: red, blue, green.
struct matteColRec {
  uint8_t matteRed;
  uint8_t matteBlue;
  uint8_t matteGreen;
};

struct TDB_TimeRecord {
  int32_t value;
  uint32_t scale;
  int32_t sampleSize;
};

#pragma pack(pop)

// The record offsets assume a 64-bit target.
static_assert(sizeof(void*) == 8, "the host interface is 64-bit only");
static_assert(sizeof(prUTF16Char) == 2, "prUTF16Char is two bytes");
static_assert(sizeof(prUTF8Char) == 1, "prUTF8Char is one byte");
static_assert(sizeof(bool) == 1, "imSourceVideoRec.removePulldown is one byte");
static_assert(sizeof(float) == 4 && sizeof(double) == 8, "IEEE single and double");
static_assert(sizeof(csSDK_size_t) == 8, "csSDK_size_t is 64-bit");
static_assert(sizeof(PrTime) == 8, "PrTime is 64-bit");
static_assert(sizeof(PrAudioSample) == 8, "PrAudioSample is 64-bit");
static_assert(sizeof(prBool) == 4, "prBool is 32-bit");
static_assert(sizeof(PrPixelFormat) == 4, "PrPixelFormat is 32-bit");
static_assert(sizeof(imFileRef) == 8, "imFileRef is pointer-sized");
static_assert(sizeof(PPixHand) == 8, "PPixHand is pointer-sized");
static_assert(sizeof(OpaqueHostFunction) == 8, "function pointers are 8 bytes");
static_assert(sizeof(prRect) == 16, "prRect is 16 bytes");
static_assert(offsetof(prRect, left) == 0, "prRect layout");
static_assert(offsetof(prRect, top) == 4, "prRect layout");
static_assert(offsetof(prRect, right) == 8, "prRect layout");
static_assert(offsetof(prRect, bottom) == 12, "prRect layout");
static_assert(sizeof(PrSDKString) == 16, "PrSDKString is two 64-bit words");
static_assert(sizeof(PrSDKColorSpaceID) == 16, "PrSDKColorSpaceID is two 64-bit words");
static_assert(sizeof(prPluginID) == 37, "prPluginID is 37 bytes");
static_assert(sizeof(matteColRec) == 3, "matteColRec is 3 bytes");
static_assert(offsetof(matteColRec, matteRed) == 0, "matteColRec layout");
static_assert(offsetof(matteColRec, matteBlue) == 1, "matteColRec layout");
static_assert(offsetof(matteColRec, matteGreen) == 2, "matteColRec layout");
static_assert(sizeof(TDB_TimeRecord) == 12, "TDB_TimeRecord is 12 bytes");
static_assert(offsetof(TDB_TimeRecord, value) == 0, "TDB_TimeRecord layout");
static_assert(offsetof(TDB_TimeRecord, scale) == 4, "TDB_TimeRecord layout");
static_assert(offsetof(TDB_TimeRecord, sampleSize) == 8, "TDB_TimeRecord layout");
