#include "qvo_host/image_drawing.h"

#include <algorithm>

#include "bitmap_font/bitmap_font.h"

namespace host_sim {
namespace {

// One glyph per character: a UTF-8 lead byte stands for its whole sequence, and its continuation
// bytes draw nothing.
bool StartsCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }

int32_t CharacterCount(const std::string& utf8) {
  return static_cast<int32_t>(std::count_if(utf8.begin(), utf8.end(), StartsCharacter));
}

}  // namespace

int32_t TextWidth(const std::string& utf8, int32_t scale) {
  const int32_t characters = CharacterCount(utf8);
  return characters == 0 ? 0 : (characters * bitmap_font::kAdvance - 1) * scale;
}

int32_t TextHeight(int32_t scale) { return bitmap_font::kGlyphHeight * scale; }

void DrawText(const std::string& utf8, int32_t left, int32_t top, int32_t scale, Rgb colour,
              RgbImage* image) {
  int32_t glyph_left = left;
  for (const char byte : utf8) {
    if (!StartsCharacter(byte)) continue;
    const uint8_t* glyph = bitmap_font::Glyph(byte);
    for (int32_t row = 0; row < bitmap_font::kGlyphHeight; ++row) {
      for (int32_t column = 0; column < bitmap_font::kGlyphWidth; ++column) {
        if ((glyph[row] & (0x10 >> column)) == 0) continue;
        const int32_t x = glyph_left + column * scale;
        const int32_t y = top + row * scale;
        FillRect(x, y, x + scale, y + scale, colour, image);
      }
    }
    glyph_left += bitmap_font::kAdvance * scale;
  }
}

void FillRect(int32_t left, int32_t top, int32_t right, int32_t bottom, Rgb colour,
              RgbImage* image) {
  left = std::max(left, 0);
  top = std::max(top, 0);
  right = std::min(right, image->width);
  bottom = std::min(bottom, image->height);
  for (int32_t y = top; y < bottom; ++y) {
    uint8_t* pixel = image->pixels.data() + (static_cast<size_t>(y) * image->width + left) * 3;
    for (int32_t x = left; x < right; ++x, pixel += 3) {
      pixel[0] = colour.r;
      pixel[1] = colour.g;
      pixel[2] = colour.b;
    }
  }
}

}  // namespace host_sim
