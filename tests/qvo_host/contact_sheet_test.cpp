// The contact sheet: each clip on rows of its own, named in the margin at the start of its first.
#include <gtest/gtest.h>

#include <vector>

#include "qvo_host/contact_sheet.h"

namespace {

using host_sim::RgbImage;

constexpr int32_t kCellWidth = 40;
constexpr int32_t kCellHeight = 20;

// A dark thumbnail, so that the labels' light pixels are told apart from it.
RgbImage DarkThumbnail() {
  RgbImage image;
  image.width = kCellWidth;
  image.height = kCellHeight;
  image.pixels.assign(static_cast<size_t>(kCellWidth) * kCellHeight * 3, 60);
  return image;
}

bool HasLightPixels(const RgbImage& sheet, int32_t right, int32_t top, int32_t bottom) {
  for (int32_t y = top; y < bottom; ++y) {
    for (int32_t x = 0; x < right; ++x) {
      if (sheet.pixels[(static_cast<size_t>(y) * sheet.width + x) * 3] > 200) return true;
    }
  }
  return false;
}

TEST(ContactSheetTest, StartsEachClipOnANewRowWithItsNameInTheMargin) {
  const RgbImage dark = DarkThumbnail();
  const RgbImage sheet = host_sim::ContactSheet(
      {{"first.qvo", {dark, dark, dark}}, {"no frames", {}}, {"second.qvo", {dark}}}, 2);
  constexpr int32_t kGap = host_sim::kContactSheetGap;
  ASSERT_EQ(sheet.height, 3 * (kCellHeight + kGap) + kGap) << "two rows, none, one row";
  const int32_t margin = sheet.width - (2 * (kCellWidth + kGap) + kGap);
  const bool labelled[] = {true, false, true};
  for (int32_t row = 0; row < 3; ++row) {
    SCOPED_TRACE(row);
    const int32_t top = kGap + row * (kCellHeight + kGap);
    EXPECT_EQ(HasLightPixels(sheet, margin, top, top + kCellHeight), labelled[row]);
  }

  EXPECT_EQ(host_sim::ContactSheet({{"second.qvo", {dark}}}, 2).width,
            host_sim::ContactSheet({{"", {dark}}}, 2).width + margin)
      << "the margin as wide as the longest label, none without one";
  EXPECT_EQ(host_sim::ContactSheet({{"no frames", {}}}, 2).width, 0);
}

}  // namespace
