// The picture of a planar frame: every colour (each chroma pair with every luma) comes out as the
// conversion's exact sums give it.
#include <gtest/gtest.h>

#include <vector>

#include "host_sdk/premiere_constants.h"
#include "qvo_host/frame_image.h"

namespace {

TEST(FrameImageTest, PlanarPictureHasTheExactColourOfEveryColour) {
  constexpr int32_t kSide = 512;  // 256 x 256 chroma samples: Cb across, Cr down
  std::vector<uint8_t> luma(kSide * kSide);
  std::vector<uint8_t> blue(kSide / 2 * kSide / 2);
  std::vector<uint8_t> red(blue.size());
  for (int32_t i = 0; i < kSide / 2 * kSide / 2; ++i) {
    blue[i] = static_cast<uint8_t>(i % (kSide / 2));
    red[i] = static_cast<uint8_t>(i / (kSide / 2));
  }
  host_sim::HostFrame frame;
  frame.format = PrPixelFormat_YUV_420_MPEG4_FRAME_PICTURE_PLANAR_8u_709_FullRange;
  frame.width = kSide;
  frame.height = kSide;
  frame.planar = true;
  frame.plane_count = 3;
  frame.planes[0] = {luma.data(), kSide, kSide, kSide};
  frame.planes[1] = {blue.data(), kSide / 2, kSide / 2, kSide / 2};
  frame.planes[2] = {red.data(), kSide / 2, kSide / 2, kSide / 2};
  // The four pixels of a chroma sample take lumas 4 * shift + 0, 1, 2 and 3.
  int64_t wrong = 0;
  for (int32_t shift = 0; shift < 64; ++shift) {
    for (int32_t i = 0; i < kSide * kSide; ++i) {
      luma[i] = static_cast<uint8_t>(4 * shift + i % 2 + 2 * (i / kSide % 2));
    }
    host_sim::RgbImage image;
    ASSERT_TRUE(host_sim::FrameToRgb(frame, &image));
    for (int32_t y = 0; y < kSide; ++y) {
      for (int32_t x = 0; x < kSide; ++x) {
        const int32_t chroma = y / 2 * kSide / 2 + x / 2;
        const host_sim::Rgb expected =
            host_sim::YuvToRgb(luma[y * kSide + x], blue[chroma], red[chroma]);
        const uint8_t* pixel = &image.pixels[(static_cast<size_t>(y) * kSide + x) * 3];
        wrong += pixel[0] != expected.r || pixel[1] != expected.g || pixel[2] != expected.b;
      }
    }
  }
  EXPECT_EQ(wrong, 0);
}

}  // namespace
