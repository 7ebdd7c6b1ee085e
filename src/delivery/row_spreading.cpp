#include "delivery/row_spreading.h"

#include <cstddef>
#include <cstring>

#include "host_sdk/premiere_constants.h"

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define QUORVEL_STREAMING_STORES 1
#endif

namespace {

#if defined(QUORVEL_STREAMING_STORES)
// Moves `bytes` from `source` to a `destination` above it (the two may overlap) from the end
// backwards, 16 bytes at a time: each piece is read before anything is written over it, and every
// write lands above every read still to come. The stores go around the caches: the host reads the
// frame next, and caching it here would only push out what is worth keeping.
// REQUIRES: destination > source, destination 16-byte aligned.
void MoveUpStreaming(const uint8_t* source, uint8_t* destination, size_t bytes) {
  const size_t whole = bytes / 16 * 16;
  std::memmove(destination + whole, source + whole, bytes - whole);
  for (size_t end = whole; end > 0; end -= 16) {
    const __m128i piece = _mm_loadu_si128(reinterpret_cast<const __m128i*>(source + end - 16));
    _mm_stream_si128(reinterpret_cast<__m128i*>(destination + end - 16), piece);
  }
}
#endif

void MoveRow(const uint8_t* source, uint8_t* destination, size_t bytes) {
#if defined(QUORVEL_STREAMING_STORES)
  if (destination > source && reinterpret_cast<uintptr_t>(destination) % 16 == 0) {
    MoveUpStreaming(source, destination, bytes);
    return;
  }
#endif
  std::memmove(destination, source, bytes);
}

}  // namespace

void SpreadRowsToPitch(const uint8_t* source, uint8_t* destination, uint32_t pitch,
                       uint32_t bytes_per_pixel, uint32_t width, uint32_t height) {
  uint32_t row_bytes = bytes_per_pixel * width;
  if (row_bytes >= pitch) return;
  for (uint32_t row = height; row > 0; --row) {
    size_t r = row - 1;
    MoveRow(source + r * row_bytes, destination + r * pitch, row_bytes);
  }
#if defined(QUORVEL_STREAMING_STORES)
  // Streaming stores are weakly ordered: make them visible before the host reads the frame.
  _mm_sfence();
#endif
}

uint32_t BytesPerPixelForFormat(uint32_t pixel_format) {
  return pixel_format == static_cast<uint32_t>(PrPixelFormat_VUYA_4444_32f) ? 16 : 4;
}
