// The host's frames as the plug-in reaches them: made through the PPix Creator suite, described and
// opened through the PPix and PPix 2 suites.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "host_sim/host.h"
#include "host_sim/ppix_suites.h"
#include "platform/guarded_memory.h"
#include "platform/pages.h"

namespace {

using host_sim::FramePlane;
using host_sim::Host;
using host_sim::HostFrame;
using host_sim::HostFrames;
using host_sim::HostReport;

constexpr PrPixelFormat kPlanar = PrPixelFormat_YUV_420_MPEG4_FRAME_PICTURE_PLANAR_8u_709_FullRange;

bool Aligned(const void* pointer) { return reinterpret_cast<uintptr_t>(pointer) % 16 == 0; }

class FrameSuitesTest : public ::testing::Test {
 protected:
  const PrSDKPPixCreatorSuite& creator() { return *host_sim::PPixCreatorSuite(); }
  const PrSDKPPixSuite& ppix() { return *host_sim::PPixSuite(); }
  const PrSDKPPix2Suite& ppix2() { return *host_sim::PPix2Suite(); }

  PPixHand Create(PrPixelFormat format, int32_t width, int32_t height) {
    PPixHand frame = nullptr;
    const prRect bounds = {0, 0, width, height};
    EXPECT_EQ(creator().CreatePPix(&frame, PrPPixBufferAccess_ReadWrite, format, &bounds),
              suiteError_NoError);
    return frame;
  }

  const HostFrame& Frame(PPixHand frame) { return *host_.frames().Find(frame); }

  Host host_;
};

TEST_F(FrameSuitesTest, PlanarFramesHaveHalfSizeChromaPlanesWithSixteenByteStrides) {
  PPixHand frame = Create(kPlanar, 33, 17);
  const HostFrame& made = Frame(frame);
  ASSERT_TRUE(made.planar);
  ASSERT_EQ(made.plane_count, 3);
  EXPECT_EQ(made.planes[0].row_length, 33);
  EXPECT_EQ(made.planes[0].rows, 17);
  EXPECT_EQ(made.planes[0].row_bytes, 48);
  for (int p = 1; p < 3; ++p) {
    EXPECT_EQ(made.planes[p].row_length, 17) << "half of 33, rounded up";
    EXPECT_EQ(made.planes[p].rows, 9) << "half of 17, rounded up";
    EXPECT_EQ(made.planes[p].row_bytes, 32);
  }
  for (const FramePlane& plane : made.planes) EXPECT_TRUE(Aligned(plane.bytes));

  char* planes[3] = {};
  uint32_t row_bytes[3] = {};
  ASSERT_EQ(
      ppix2().GetYUV420PlanarBuffers(frame, PrPPixBufferAccess_ReadWrite, &planes[0], &row_bytes[0],
                                     &planes[1], &row_bytes[1], &planes[2], &row_bytes[2]),
      suiteError_NoError);
  for (int p = 0; p < 3; ++p) {
    EXPECT_EQ(reinterpret_cast<uint8_t*>(planes[p]), made.planes[p].bytes);
    EXPECT_EQ(row_bytes[p], static_cast<uint32_t>(made.planes[p].row_bytes));
  }
  char* pixels = nullptr;
  int32_t y_row_bytes = 0;
  size_t size = 0;
  EXPECT_EQ(ppix().GetPixels(frame, PrPPixBufferAccess_ReadWrite, &pixels), suiteError_NoError);
  EXPECT_EQ(pixels, planes[0]) << "GetPixels answers the Y plane";
  EXPECT_EQ(ppix().GetRowBytes(frame, &y_row_bytes), suiteError_NoError);
  EXPECT_EQ(y_row_bytes, 48);
  EXPECT_EQ(ppix2().GetSize(frame, &size), suiteError_NoError);
  EXPECT_EQ(size, 48u * 17 + 2 * 32u * 9);
}

TEST_F(FrameSuitesTest, PlanePaddingWidensEveryStrideBeforeRoundingAndEveryByteStartsFresh) {
  host_.frames().set_plane_padding(20);
  const HostFrame& made = Frame(Create(kPlanar, 33, 17));
  EXPECT_EQ(made.planes[0].row_bytes, 64);
  EXPECT_EQ(made.planes[1].row_bytes, 48);
  EXPECT_EQ(made.planes[2].row_bytes, 48);
  for (int p = 0; p < made.plane_count; ++p) {
    const FramePlane& plane = made.planes[p];
    const size_t bytes = static_cast<size_t>(plane.row_bytes) * plane.rows;
    for (size_t i = 0; i < bytes; ++i) {
      ASSERT_EQ(plane.bytes[i], HostFrames::kFreshByte) << "plane " << p << ", byte " << i;
    }
  }
}

TEST_F(FrameSuitesTest, PackedRowsHoldWidthTimesPixelSizeAndThePaddingAndHaveNoPlanes) {
  EXPECT_EQ(Frame(Create(PrPixelFormat_BGRA_4444_8u, 10, 3)).planes[0].row_bytes, 40);
  EXPECT_EQ(Frame(Create(PrPixelFormat_VUYA_4444_32f, 10, 3)).planes[0].row_bytes, 160);
  EXPECT_EQ(Frame(Create(0x32315559, 10, 3)).planes[0].row_bytes, 40) << "any other format: 4";

  host_.frames().set_row_padding(6);
  PPixHand padded = Create(PrPixelFormat_BGRA_4444_8u, 10, 3);
  const HostFrame& made = Frame(padded);
  EXPECT_FALSE(made.planar);
  EXPECT_EQ(made.plane_count, 1);
  EXPECT_EQ(made.planes[0].row_length, 40);
  EXPECT_EQ(made.planes[0].row_bytes, 46);
  EXPECT_EQ(made.size, 46u * 3);
  EXPECT_TRUE(Aligned(made.planes[0].bytes));
  int32_t row_bytes = 0;
  EXPECT_EQ(ppix().GetRowBytes(padded, &row_bytes), suiteError_NoError);
  EXPECT_EQ(row_bytes, 46);
  EXPECT_EQ(host_.frames().live_count(), 4u);
  EXPECT_TRUE(host_.Report().clean())
      << "frames live at the end are the host's: " << host_.Report().ToString();

  char* planes[3] = {};
  uint32_t strides[3] = {};
  EXPECT_NE(
      ppix2().GetYUV420PlanarBuffers(padded, PrPPixBufferAccess_ReadWrite, &planes[0], &strides[0],
                                     &planes[1], &strides[1], &planes[2], &strides[2]),
      suiteError_NoError);
  EXPECT_EQ(planes[0], nullptr);
  HostReport report = host_.Report();
  ASSERT_EQ(report.frame_faults.size(), 1u);
  EXPECT_NE(report.frame_faults[0].find("packed"), std::string::npos);
}

TEST_F(FrameSuitesTest, RefusesReadOnlyAccessAndFramesWithoutPixels) {
  PPixHand kept = reinterpret_cast<PPixHand>(&kept);
  const prRect bounds = {0, 0, 64, 32};
  EXPECT_NE(creator().CreatePPix(&kept, PrPPixBufferAccess_ReadOnly, kPlanar, &bounds),
            suiteError_NoError);
  EXPECT_EQ(kept, reinterpret_cast<PPixHand>(&kept)) << "a refusal leaves the slot alone";

  const prRect empty = {0, 0, 0, 32};
  const prRect inverted = {64, 0, 0, 32};
  EXPECT_NE(creator().CreatePPix(&kept, PrPPixBufferAccess_ReadWrite, kPlanar, &empty), 0);
  EXPECT_NE(creator().CreatePPix(&kept, PrPPixBufferAccess_ReadWrite, kPlanar, &inverted), 0);
  EXPECT_NE(creator().CreatePPix(&kept, PrPPixBufferAccess_ReadWrite, kPlanar, nullptr), 0);
  EXPECT_NE(creator().CreatePPix(&kept, PrPPixBufferAccess_ReadWrite, PrPixelFormat_Any, &bounds),
            0);
  EXPECT_EQ(host_.frames().live_count(), 0u);

  PPixHand written = nullptr;
  EXPECT_EQ(creator().CreatePPix(&written, PrPPixBufferAccess_WriteOnly, kPlanar, &bounds),
            suiteError_NoError);
  EXPECT_NE(written, nullptr);
}

TEST_F(FrameSuitesTest, DescribesAFrameFromTheOriginOfItsBounds) {
  PPixHand frame = nullptr;
  const prRect bounds = {10, 20, 74, 52};
  ASSERT_EQ(creator().CreatePPix(&frame, PrPPixBufferAccess_ReadWrite, kPlanar, &bounds),
            suiteError_NoError);
  prRect answered = {-1, -1, -1, -1};
  EXPECT_EQ(ppix().GetBounds(frame, &answered), suiteError_NoError);
  EXPECT_EQ(std::vector<int32_t>({answered.left, answered.top, answered.right, answered.bottom}),
            std::vector<int32_t>({0, 0, 64, 32}));

  PrPixelFormat format = 0;
  uint32_t numerator = 0;
  uint32_t denominator = 0;
  int32_t x = -1;
  int32_t y = -1;
  prFieldType fields = prFieldsInvalid;
  EXPECT_EQ(ppix().GetPixelFormat(frame, &format), suiteError_NoError);
  EXPECT_EQ(format, kPlanar);
  EXPECT_EQ(ppix().GetPixelAspectRatio(frame, &numerator, &denominator), suiteError_NoError);
  EXPECT_EQ(numerator, 1u);
  EXPECT_EQ(denominator, 1u);
  EXPECT_EQ(ppix2().GetOrigin(frame, &x, &y), suiteError_NoError);
  EXPECT_EQ(x, 0);
  EXPECT_EQ(y, 0);
  EXPECT_EQ(ppix2().GetFieldOrder(frame, &fields), suiteError_NoError);
  EXPECT_EQ(fields, prFieldsNone);
}

TEST_F(FrameSuitesTest, DisposingTheLastReferenceFreesTheFrameAndLaterUseIsAFault) {
  PPixHand frame = Create(kPlanar, 16, 16);
  EXPECT_EQ(host_.frames().References(frame), 1);
  EXPECT_EQ(ppix().Dispose(frame), suiteError_NoError);
  EXPECT_EQ(host_.frames().Find(frame), nullptr);
  EXPECT_EQ(host_.frames().live_count(), 0u);
  EXPECT_TRUE(host_.Report().clean()) << host_.Report().ToString();

  int32_t row_bytes = 0;
  EXPECT_NE(ppix().Dispose(frame), suiteError_NoError);
  EXPECT_NE(ppix().GetRowBytes(frame, &row_bytes), suiteError_NoError);
  HostReport report = host_.Report();
  EXPECT_EQ(report.frame_faults.size(), 2u);
  EXPECT_NE(report.ToString().find("GetRowBytes with a frame that is not live"), std::string::npos)
      << report.ToString();
}

TEST_F(FrameSuitesTest, AWriteJustOutsideAFrameIsAFaultWhenItIsFreedOrReported) {
  PPixHand planar = Create(kPlanar, 7, 5);
  Frame(planar).planes[0].bytes[-1] = 0;
  const HostFrame& packed = Frame(Create(PrPixelFormat_BGRA_4444_8u, 4, 2));
  packed.planes[0].bytes[packed.size] = 0;
  EXPECT_EQ(host_.Report().frame_faults.size(), 2u) << host_.Report().ToString();
  Create(kPlanar, 7, 5);
  EXPECT_EQ(ppix().Dispose(planar), suiteError_NoError);
  HostReport report = host_.Report();
  EXPECT_EQ(report.frame_faults.size(), 2u);
  EXPECT_NE(report.ToString().find("write outside the 7x5 frame of format 1177646681, before it"),
            std::string::npos)
      << report.ToString();
  EXPECT_NE(report.ToString().find("write outside the 4x2 frame"), std::string::npos);
}

// A host that must catch a write past a frame at its first byte: the frame ends within 16 bytes of
// an inaccessible page, which a fault handler can tell apart from any other address.
TEST_F(FrameSuitesTest, WithGuardPagesAFrameEndsJustBeforeAnInaccessiblePage) {
  host_.frames().set_guard_pages(true);
  const size_t page = platform::PageSize();
  for (const auto& [format, width, height] :
       std::vector<std::tuple<PrPixelFormat, int32_t, int32_t>>{
           {kPlanar, 7, 5}, {PrPixelFormat_BGRA_4444_8u, 95, 47}, {kPlanar, 3840, 1920}}) {
    SCOPED_TRACE(std::to_string(width) + "x" + std::to_string(height));
    PPixHand handle = Create(format, width, height);
    const HostFrame& frame = Frame(handle);
    EXPECT_TRUE(Aligned(frame.planes[0].bytes));
    const uintptr_t end = reinterpret_cast<uintptr_t>(frame.planes[0].bytes) + frame.size;
    const uintptr_t guard = (end + page - 1) / page * page;
    EXPECT_LT(guard - end, 16u);
    EXPECT_EQ(platform::BytesPastGuardedBlock(guard), static_cast<int64_t>(guard - end));
    EXPECT_EQ(platform::BytesPastGuardedBlock(guard + page - 1),
              static_cast<int64_t>(guard + page - 1 - end));
    EXPECT_EQ(platform::BytesPastGuardedBlock(end - 1), -1);
    EXPECT_EQ(platform::BytesPastGuardedBlock(guard + page), -1);
    if (guard != end) frame.planes[0].bytes[frame.size] = 0;
    EXPECT_EQ(ppix().Dispose(handle), suiteError_NoError);
    EXPECT_EQ(platform::BytesPastGuardedBlock(guard), -1) << "a freed frame's page is forgotten";
  }
  HostReport report = host_.Report();
  ASSERT_EQ(report.frame_faults.size(), 1u) << "the write into the slack of the 95x47 frame";
  EXPECT_NE(report.frame_faults[0].find("95x47 frame of format 1634887522, after it"),
            std::string::npos)
      << report.frame_faults[0];
}

// Benchmarks recycle frame buffers; a recycled buffer keeps its bytes but is guarded afresh.
TEST_F(FrameSuitesTest, ARecycledBufferKeepsItsBytesAndIsGuardedAgain) {
  host_.frames().set_recycling(true);
  PPixHand first = Create(kPlanar, 7, 5);
  uint8_t* bytes = Frame(first).planes[0].bytes;
  bytes[0] = 0x42;
  bytes[-1] = 0;
  EXPECT_EQ(ppix().Dispose(first), suiteError_NoError);
  const HostFrame& again = Frame(Create(kPlanar, 7, 5));
  EXPECT_EQ(again.planes[0].bytes, bytes);
  EXPECT_EQ(again.planes[0].bytes[0], 0x42);
  EXPECT_EQ(host_.Report().frame_faults.size(), 1u) << "only the first frame was written outside";
}

TEST(FrameSuitesWithoutHostTest, AnswerFailureWithNoHostCurrent) {
  PPixHand frame = nullptr;
  const prRect bounds = {0, 0, 8, 8};
  EXPECT_NE(host_sim::PPixCreatorSuite()->CreatePPix(&frame, PrPPixBufferAccess_ReadWrite, kPlanar,
                                                     &bounds),
            suiteError_NoError);
  EXPECT_EQ(frame, nullptr);
}

}  // namespace
