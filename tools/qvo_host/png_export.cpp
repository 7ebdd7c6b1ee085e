#include "qvo_host/png_export.h"

#include <filesystem>
#include <fstream>

// The one definition of the PNG writer in the program.
#define STB_IMAGE_WRITE_IMPLEMENTATION
#include <stb/stb_image_write.h>

namespace host_sim {
namespace {

// No filter and the writer's least match search: on the stand-in's pictures several times faster
// than its defaults for about a fifth more bytes.
constexpr int kPngCompressionLevel = 5;
constexpr int kPngFilter = 0;

// The writer's defaults try five filters on every row and search hard for matches: most of a 4K
// frame's time for a few percent of its size. Its settings are globals, set once before any
// thread encodes.
void UseFastSettings() {
  static const bool set = [] {
    stbi_write_png_compression_level = kPngCompressionLevel;
    stbi_write_force_png_filter = kPngFilter;
    return true;
  }();
  (void)set;
}

void AppendToBytes(void* context, void* data, int size) {
  const auto* begin = static_cast<const uint8_t*>(data);
  static_cast<std::vector<uint8_t>*>(context)->insert(
      static_cast<std::vector<uint8_t>*>(context)->end(), begin, begin + size);
}

}  // namespace

std::vector<uint8_t> EncodePng(const RgbImage& image) {
  std::vector<uint8_t> bytes;
  if (image.width <= 0 || image.height <= 0) return bytes;
  UseFastSettings();
  if (stbi_write_png_to_func(AppendToBytes, &bytes, image.width, image.height, 3,
                             image.pixels.data(), image.width * 3) == 0) {
    bytes.clear();
  }
  return bytes;
}

// The path goes through std::filesystem rather than the writer's own fopen, so that it keeps its
// UTF-8 on every system.
bool WritePngBytes(const std::string& path, const std::vector<uint8_t>& bytes) {
  if (bytes.empty()) return false;
  std::ofstream file(std::filesystem::u8path(path), std::ios::binary | std::ios::trunc);
  if (!file) return false;
  file.write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
  file.close();
  return !file.fail();
}

bool WritePng(const std::string& path, const RgbImage& image) {
  return WritePngBytes(path, EncodePng(image));
}

}  // namespace host_sim
