// Text and rectangles drawn into the host simulator's pictures: plot titles, axis numbers, legends
// and the contact sheet's clip names, with the project's bitmap font.
#pragma once

#include <cstdint>
#include <string>

#include "qvo_host/frame_image.h"

namespace host_sim {

// Pixels across and down of `utf8` drawn at `scale` (each font pixel a `scale` x `scale` square),
// one glyph per character; characters the font lacks show as '?'.
int32_t TextWidth(const std::string& utf8, int32_t scale);
int32_t TextHeight(int32_t scale);

// Draws `utf8` with its top-left corner at (left, top); whatever falls outside the image is cut.
void DrawText(const std::string& utf8, int32_t left, int32_t top, int32_t scale, Rgb colour,
              RgbImage* image);

// Fills the rectangle [left, right) x [top, bottom), cut to the image.
void FillRect(int32_t left, int32_t top, int32_t right, int32_t bottom, Rgb colour,
              RgbImage* image);

}  // namespace host_sim
