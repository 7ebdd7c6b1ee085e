// PNG files of the host simulator's pictures.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "qvo_host/frame_image.h"

namespace host_sim {

// `image` as the bytes of a PNG file, encoded for speed rather than size (a 4K frame is written
// several times a second); empty when the image is empty or cannot be encoded. Safe to call from
// several threads at once.
std::vector<uint8_t> EncodePng(const RgbImage& image);

// Writes `bytes` to `path` (UTF-8), replacing any file there; false when they cannot be written or
// there are none.
bool WritePngBytes(const std::string& path, const std::vector<uint8_t>& bytes);

// EncodePng and WritePngBytes in one.
bool WritePng(const std::string& path, const RgbImage& image);

}  // namespace host_sim
