// The one bitmap font of the project's pictures: the stand-in's frame numbers and the host
// simulator's plots and contact sheets. 5 x 7 pixels a glyph, printable ASCII.
#pragma once

#include <cstdint>

namespace bitmap_font {

constexpr int32_t kGlyphWidth = 5;
constexpr int32_t kGlyphHeight = 7;
constexpr int32_t kAdvance = kGlyphWidth + 1;  // one blank column between glyphs

// The glyph of `c`: kGlyphHeight bytes, top row first, bit 4 the leftmost column. Characters
// outside printable ASCII get the glyph of '?', so that no character silently disappears.
const uint8_t* Glyph(char c);

}  // namespace bitmap_font
