#include "host_sim/ppix_suites.h"

#include <string>

#include "host_sdk/premiere_constants.h"
#include "host_sim/host.h"
#include "host_sim/unserved_slots.h"

namespace host_sim {
namespace {

constexpr const char* kPPixCreatorFunctions[] = {"CreatePPix", "ClonePPix"};
constexpr SuiteFunctions kPPixCreator = {kPrSDKPPixCreatorSuite, kPPixCreatorFunctions};

constexpr const char* kPPixFunctions[] = {"Dispose",      "GetPixels",           "GetBounds",
                                          "GetRowBytes",  "GetPixelAspectRatio", "GetPixelFormat",
                                          "GetUniqueKey", "GetUniqueKeySize",    "GetRenderTime"};
constexpr SuiteFunctions kPPix = {kPrSDKPPixSuite, kPPixFunctions};

HostFrames* CurrentFrames() {
  Host* host = CurrentHost();
  return host == nullptr ? nullptr : &host->frames();
}

// The live frame behind `handle`; null, with the plug-in's fault recorded, when there is none.
const HostFrame* FrameFor(PPixHand handle, const char* function) {
  HostFrames* frames = CurrentFrames();
  if (frames == nullptr) return nullptr;
  const HostFrame* frame = frames->Find(handle);
  if (frame == nullptr)
    frames->RecordFault(std::string(function) + " with a frame that is not live");
  return frame;
}

bool KnownAccess(PrPPixBufferAccess access) {
  return access == PrPPixBufferAccess_ReadOnly || access == PrPPixBufferAccess_WriteOnly ||
         access == PrPPixBufferAccess_ReadWrite;
}

// The host makes frames to be written into, so read-only access is refused.
prSuiteError CreatePPix(PPixHand* out, PrPPixBufferAccess access, PrPixelFormat format,
                        const prRect* bounds) {
  HostFrames* frames = CurrentFrames();
  if (frames == nullptr || out == nullptr || bounds == nullptr || !KnownAccess(access) ||
      access == PrPPixBufferAccess_ReadOnly) {
    return kSuiteFailure;
  }
  const int64_t width = static_cast<int64_t>(bounds->right) - bounds->left;
  const int64_t height = static_cast<int64_t>(bounds->bottom) - bounds->top;
  if (width > HostFrames::kLargestSide || height > HostFrames::kLargestSide) return kSuiteFailure;
  PPixHand frame =
      frames->Create(format, static_cast<int32_t>(width), static_cast<int32_t>(height));
  if (frame == nullptr) return kSuiteFailure;
  *out = frame;
  return suiteError_NoError;
}

prSuiteError Dispose(PPixHand handle) {
  HostFrames* frames = CurrentFrames();
  return frames != nullptr && frames->Dispose(handle) ? suiteError_NoError : kSuiteFailure;
}

// Planar frames answer their Y plane.
prSuiteError GetPixels(PPixHand handle, PrPPixBufferAccess access, char** pixels) {
  const HostFrame* frame = FrameFor(handle, "GetPixels");
  if (frame == nullptr || pixels == nullptr || !KnownAccess(access)) return kSuiteFailure;
  *pixels = reinterpret_cast<char*>(frame->planes[0].bytes);
  return suiteError_NoError;
}

prSuiteError GetBounds(PPixHand handle, prRect* bounds) {
  const HostFrame* frame = FrameFor(handle, "GetBounds");
  if (frame == nullptr || bounds == nullptr) return kSuiteFailure;
  bounds->left = 0;
  bounds->top = 0;
  bounds->right = frame->width;
  bounds->bottom = frame->height;
  return suiteError_NoError;
}

prSuiteError GetRowBytes(PPixHand handle, int32_t* row_bytes) {
  const HostFrame* frame = FrameFor(handle, "GetRowBytes");
  if (frame == nullptr || row_bytes == nullptr) return kSuiteFailure;
  *row_bytes = frame->planes[0].row_bytes;
  return suiteError_NoError;
}

prSuiteError GetPixelAspectRatio(PPixHand handle, uint32_t* numerator, uint32_t* denominator) {
  const HostFrame* frame = FrameFor(handle, "GetPixelAspectRatio");
  if (frame == nullptr || numerator == nullptr || denominator == nullptr) return kSuiteFailure;
  *numerator = 1;
  *denominator = 1;
  return suiteError_NoError;
}

prSuiteError GetPixelFormat(PPixHand handle, PrPixelFormat* format) {
  const HostFrame* frame = FrameFor(handle, "GetPixelFormat");
  if (frame == nullptr || format == nullptr) return kSuiteFailure;
  *format = frame->format;
  return suiteError_NoError;
}

prSuiteError GetSize(PPixHand handle, size_t* size) {
  const HostFrame* frame = FrameFor(handle, "GetSize");
  if (frame == nullptr || size == nullptr) return kSuiteFailure;
  *size = frame->size;
  return suiteError_NoError;
}

// Packed frames have no planes to give; asking for them is the plug-in's fault.
prSuiteError GetYUV420PlanarBuffers(PPixHand handle, PrPPixBufferAccess access, char** y,
                                    uint32_t* y_row_bytes, char** u, uint32_t* u_row_bytes,
                                    char** v, uint32_t* v_row_bytes) {
  const HostFrame* frame = FrameFor(handle, "GetYUV420PlanarBuffers");
  if (frame == nullptr || !KnownAccess(access)) return kSuiteFailure;
  if (!frame->planar) {
    CurrentFrames()->RecordFault("GetYUV420PlanarBuffers with a packed frame");
    return kSuiteFailure;
  }
  char** planes[3] = {y, u, v};
  uint32_t* row_bytes[3] = {y_row_bytes, u_row_bytes, v_row_bytes};
  for (int p = 0; p < 3; ++p) {
    if (planes[p] == nullptr || row_bytes[p] == nullptr) return kSuiteFailure;
  }
  for (int p = 0; p < 3; ++p) {
    *planes[p] = reinterpret_cast<char*>(frame->planes[p].bytes);
    *row_bytes[p] = static_cast<uint32_t>(frame->planes[p].row_bytes);
  }
  return suiteError_NoError;
}

prSuiteError GetOrigin(PPixHand handle, int32_t* x, int32_t* y) {
  const HostFrame* frame = FrameFor(handle, "GetOrigin");
  if (frame == nullptr || x == nullptr || y == nullptr) return kSuiteFailure;
  *x = 0;
  *y = 0;
  return suiteError_NoError;
}

prSuiteError GetFieldOrder(PPixHand handle, prFieldType* field_type) {
  const HostFrame* frame = FrameFor(handle, "GetFieldOrder");
  if (frame == nullptr || field_type == nullptr) return kSuiteFailure;
  *field_type = prFieldsNone;
  return suiteError_NoError;
}

}  // namespace

const PrSDKPPixCreatorSuite* PPixCreatorSuite() {
  using S = PrSDKPPixCreatorSuite;
  static const S suite = {CreatePPix, Unserved<kPPixCreator, 1>(&S::ClonePPix)};
  return &suite;
}

const PrSDKPPixSuite* PPixSuite() {
  using S = PrSDKPPixSuite;
  static const S suite = {Dispose,
                          GetPixels,
                          GetBounds,
                          GetRowBytes,
                          GetPixelAspectRatio,
                          GetPixelFormat,
                          Unserved<kPPix, 6>(&S::GetUniqueKey),
                          Unserved<kPPix, 7>(&S::GetUniqueKeySize),
                          Unserved<kPPix, 8>(&S::GetRenderTime)};
  return &suite;
}

const PrSDKPPix2Suite* PPix2Suite() {
  static const PrSDKPPix2Suite suite = {GetSize, GetYUV420PlanarBuffers, GetOrigin, GetFieldOrder};
  return &suite;
}

}  // namespace host_sim
