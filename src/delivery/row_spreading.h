// Packed frames: the stitched source writes their rows tightly packed at the start of the host's
// buffer, and they are then spread out to the host's row bytes.
#pragma once

#include <cstdint>

// Spreads `height` packed rows of `bytes_per_pixel` * `width` bytes out to rows of `pitch`
// bytes, moving exactly the packed row length and leaving the rest of each destination row
// untouched. Rows go last to first, so `source` and `destination` may be the same buffer (the
// frame path spreads a host frame in place). Copies nothing at all unless the packed row length
// is strictly less than `pitch`: in place, rows of exactly the pitch are already where they
// belong.
void SpreadRowsToPitch(const uint8_t* source, uint8_t* destination, uint32_t pitch,
                       uint32_t bytes_per_pixel, uint32_t width, uint32_t height);

// 16 for PrPixelFormat_VUYA_4444_32f, 4 for every other host pixel-format code.
uint32_t BytesPerPixelForFormat(uint32_t pixel_format);
