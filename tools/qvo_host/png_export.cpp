#include "qvo_host/png_export.h"

#include <filesystem>
#include <fstream>

// The one definition of the PNG writer in the program.
#define STB_IMAGE_WRITE_IMPLEMENTATION
#include <stb/stb_image_write.h>

namespace host_sim {
namespace {

// The writer hands its bytes here rather than opening the file itself, so that the path goes
// through std::filesystem and keeps its UTF-8 on every system.
void AppendToStream(void* context, void* data, int size) {
  static_cast<std::ofstream*>(context)->write(static_cast<const char*>(data), size);
}

}  // namespace

bool WritePng(const std::string& path, const RgbImage& image) {
  if (image.width <= 0 || image.height <= 0) return false;
  std::ofstream file(std::filesystem::u8path(path), std::ios::binary | std::ios::trunc);
  if (!file) return false;
  const int written = stbi_write_png_to_func(AppendToStream, &file, image.width, image.height, 3,
                                             image.pixels.data(), image.width * 3);
  file.close();
  return written != 0 && !file.fail();
}

}  // namespace host_sim
