#include "delivery/row_spreading.h"

#include <cstddef>
#include <cstring>

#include "host_sdk/premiere_constants.h"

void SpreadRowsToPitch(const uint8_t* source, uint8_t* destination, uint32_t pitch,
                       uint32_t bytes_per_pixel, uint32_t width, uint32_t height) {
  uint32_t row_bytes = bytes_per_pixel * width;
  if (row_bytes >= pitch) return;
  for (uint32_t row = height; row > 0; --row) {
    size_t r = row - 1;
    std::memmove(destination + r * pitch, source + r * row_bytes, row_bytes);
  }
}

uint32_t BytesPerPixelForFormat(uint32_t pixel_format) {
  return pixel_format == static_cast<uint32_t>(PrPixelFormat_VUYA_4444_32f) ? 16 : 4;
}
