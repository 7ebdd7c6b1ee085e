#include "stitcher_api/path_conversion.h"

#include <algorithm>
#include <vector>

#include "platform/text_encoding.h"

namespace {

constexpr size_t kDroppedBytes = 4;

std::string ConvertDroppingPrefix(platform::CodePage code_page, const char16_t* wide) {
  int needed = platform::WideToMultiByte(code_page, wide, nullptr, 0);
  // Zero-filled and never shorter than the dropped prefix plus a terminator, so that a path of
  // fewer than four characters reads no byte outside the buffer.
  std::vector<char> converted(std::max<size_t>(static_cast<size_t>(needed) + 1, kDroppedBytes + 1));
  platform::WideToMultiByte(code_page, wide, converted.data(), needed);
  return std::string(converted.data() + kDroppedBytes);
}

}  // namespace

std::string NarrowPath(const char16_t* wide) {
  return ConvertDroppingPrefix(platform::CodePage::kSystemAnsi, wide);
}

std::string Utf8Path(const char16_t* wide) {
  return ConvertDroppingPrefix(platform::CodePage::kUtf8, wide);
}
