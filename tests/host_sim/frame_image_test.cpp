// What qvo-host frames writes: host frames turned into RGB pictures, thumbnails, contact sheets and
// PNG files.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "host_sim/contact_sheet.h"
#include "host_sim/frame_image.h"
#include "host_sim/host.h"
#include "host_sim/png_export.h"
#include "support/temp_folder.h"

namespace {

using host_sim::FrameToRgb;
using host_sim::HostFrame;
using host_sim::Rgb;
using host_sim::RgbImage;
using host_sim::YuvToRgb;

constexpr PrPixelFormat kPlanar = PrPixelFormat_YUV_420_MPEG4_FRAME_PICTURE_PLANAR_8u_709_FullRange;

std::vector<uint8_t> Channels(const Rgb& colour) { return {colour.r, colour.g, colour.b}; }

std::vector<uint8_t> PixelAt(const RgbImage& image, int32_t x, int32_t y) {
  const uint8_t* pixel = image.pixels.data() + (static_cast<size_t>(y) * image.width + x) * 3;
  return {pixel[0], pixel[1], pixel[2]};
}

RgbImage Filled(int32_t width, int32_t height, uint8_t r, uint8_t g, uint8_t b) {
  RgbImage image{width, height, {}};
  for (int32_t i = 0; i < width * height; ++i) image.pixels.insert(image.pixels.end(), {r, g, b});
  return image;
}

TEST(YuvToRgbTest, ConvertsBt709FullRangeColours) {
  EXPECT_EQ(Channels(YuvToRgb(128, 128, 128)), (std::vector<uint8_t>{128, 128, 128}));
  EXPECT_EQ(Channels(YuvToRgb(0, 128, 128)), (std::vector<uint8_t>{0, 0, 0}));
  EXPECT_EQ(Channels(YuvToRgb(255, 128, 128)), (std::vector<uint8_t>{255, 255, 255}));
  EXPECT_EQ(Channels(YuvToRgb(54, 99, 255)), (std::vector<uint8_t>{254, 0, 0})) << "red";
  EXPECT_EQ(Channels(YuvToRgb(18, 255, 116)), (std::vector<uint8_t>{0, 0, 254})) << "blue";
  EXPECT_EQ(Channels(YuvToRgb(182, 30, 12)), (std::vector<uint8_t>{0, 255, 0})) << "green";
}

TEST(YuvToRgbTest, ClampsEachChannelToAByte) {
  EXPECT_EQ(Channels(YuvToRgb(255, 255, 255)), (std::vector<uint8_t>{255, 172, 255}));
  EXPECT_EQ(Channels(YuvToRgb(0, 0, 0)), (std::vector<uint8_t>{0, 84, 0}));
}

class FrameToRgbTest : public ::testing::Test {
 protected:
  // The pixels of a host frame are writable through its planes.
  const HostFrame& NewFrame(PrPixelFormat format, int32_t width, int32_t height) {
    return *host_.frames().Find(host_.frames().Create(format, width, height));
  }

  host_sim::Host host_;
};

TEST_F(FrameToRgbTest, ReadsEachPlaneThroughItsOwnStrideAndSharesChromaOverTwoByTwo) {
  host_.frames().set_plane_padding(16);
  const HostFrame& frame = NewFrame(kPlanar, 4, 2);
  for (int32_t row = 0; row < 2; ++row) {
    std::memset(frame.planes[0].bytes + row * frame.planes[0].row_bytes, 128, 4);
  }
  std::memset(frame.planes[1].bytes, 128, 2);
  std::memset(frame.planes[2].bytes, 128, 2);
  frame.planes[1].bytes[1] = 228;  // Cb of the right 2 x 2 block
  frame.planes[0].bytes[frame.planes[0].row_bytes] = 200;

  RgbImage image;
  ASSERT_TRUE(FrameToRgb(frame, &image));
  ASSERT_EQ(image.width, 4);
  ASSERT_EQ(image.height, 2);
  EXPECT_EQ(PixelAt(image, 0, 0), (std::vector<uint8_t>{128, 128, 128}));
  EXPECT_EQ(PixelAt(image, 0, 1), (std::vector<uint8_t>{200, 200, 200}));
  for (int32_t x = 2; x < 4; ++x) {
    for (int32_t y = 0; y < 2; ++y) {
      EXPECT_EQ(PixelAt(image, x, y), (std::vector<uint8_t>{128, 109, 255})) << x << "," << y;
    }
  }
}

TEST_F(FrameToRgbTest, ReordersPackedBgraRowsPastTheirPadding) {
  host_.frames().set_row_padding(8);
  const HostFrame& frame = NewFrame(PrPixelFormat_BGRA_4444_8u, 2, 2);
  const uint8_t rows[2][8] = {{1, 2, 3, 255, 4, 5, 6, 255}, {7, 8, 9, 255, 10, 11, 12, 255}};
  for (int32_t row = 0; row < 2; ++row) {
    std::memcpy(frame.planes[0].bytes + row * frame.planes[0].row_bytes, rows[row], 8);
  }
  RgbImage image;
  ASSERT_TRUE(FrameToRgb(frame, &image));
  EXPECT_EQ(image.pixels, (std::vector<uint8_t>{3, 2, 1, 6, 5, 4, 9, 8, 7, 12, 11, 10}));
}

TEST_F(FrameToRgbTest, LeavesTheFloatFormatAlone) {
  RgbImage image;
  EXPECT_FALSE(FrameToRgb(NewFrame(PrPixelFormat_VUYA_4444_32f, 2, 2), &image));
  EXPECT_TRUE(image.pixels.empty());
}

TEST(ThumbnailTest, AveragesTheSourcePixelsEachThumbnailPixelCovers) {
  RgbImage image = Filled(4, 2, 0, 0, 0);
  for (int32_t y = 0; y < 2; ++y) {
    std::memset(image.pixels.data() + (y * 4 + 2) * 3, 255, 6);
  }
  image.pixels[0] = 100;  // one of the four source pixels of the first thumbnail pixel
  RgbImage thumbnail = host_sim::Thumbnail(image, 2);
  ASSERT_EQ(thumbnail.width, 2);
  ASSERT_EQ(thumbnail.height, 1);
  EXPECT_EQ(thumbnail.pixels, (std::vector<uint8_t>{25, 0, 0, 255, 255, 255}));
}

TEST(ThumbnailTest, KeepsTheAspectRatioAndNeverEnlarges) {
  RgbImage wide = host_sim::Thumbnail(Filled(3840, 1920, 9, 9, 9), 320);
  EXPECT_EQ(wide.width, 320);
  EXPECT_EQ(wide.height, 160);
  EXPECT_EQ(PixelAt(wide, 319, 159), (std::vector<uint8_t>{9, 9, 9}));
  RgbImage small = host_sim::Thumbnail(Filled(100, 100, 1, 2, 3), 320);
  EXPECT_EQ(small.width, 100);
  EXPECT_EQ(small.height, 100);
}

TEST(ContactSheetTest, LaysThumbnailsOutInRowsWithGaps) {
  std::vector<RgbImage> thumbnails(6, Filled(32, 16, 200, 0, 0));
  thumbnails.push_back(Filled(32, 16, 0, 0, 200));
  RgbImage sheet = host_sim::ContactSheet(thumbnails, 6);
  const int32_t gap = host_sim::kContactSheetGap;
  ASSERT_EQ(sheet.width, 6 * (32 + gap) + gap);
  ASSERT_EQ(sheet.height, 2 * (16 + gap) + gap);
  EXPECT_EQ(PixelAt(sheet, gap, gap), (std::vector<uint8_t>{200, 0, 0}));
  EXPECT_EQ(PixelAt(sheet, gap + 31, 2 * gap + 16), (std::vector<uint8_t>{0, 0, 200}));
  EXPECT_EQ(PixelAt(sheet, 2 * gap + 32, 2 * gap + 16), (std::vector<uint8_t>{40, 40, 40}))
      << "no seventh thumbnail in the second cell of the second row";
  EXPECT_TRUE(host_sim::ContactSheet({}, 6).pixels.empty());
}

TEST(PngExportTest, WritesAPngOfTheImagesSize) {
  TempFolder folder;
  const std::string path = folder.Join("picture.png");
  ASSERT_TRUE(host_sim::WritePng(path, Filled(3, 2, 1, 2, 3)));
  const std::string bytes = ReadWholeFile(path);
  ASSERT_GT(bytes.size(), 24u);
  EXPECT_EQ(bytes.substr(0, 8), std::string("\x89PNG\r\n\x1a\n", 8));
  EXPECT_EQ(bytes.substr(12, 4), "IHDR");
  EXPECT_EQ(bytes.substr(16, 8), std::string("\0\0\0\x03\0\0\0\x02", 8)) << "width, height";
  EXPECT_FALSE(host_sim::WritePng(folder.Join("missing/picture.png"), Filled(3, 2, 1, 2, 3)));
}

}  // namespace
