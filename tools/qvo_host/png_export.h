// PNG files of the host simulator's pictures.
#pragma once

#include <string>

#include "qvo_host/frame_image.h"

namespace host_sim {

// Writes `image` to `path` (UTF-8), replacing any file there; false when it cannot be written or
// the image is empty.
bool WritePng(const std::string& path, const RgbImage& image);

}  // namespace host_sim
