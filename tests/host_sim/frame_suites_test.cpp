// The host's frames as the plug-in reaches them: made through the PPix Creator suite, described and
// opened through the PPix and PPix 2 suites.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
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
using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr PrPixelFormat kPlanar = PrPixelFormat_YUV_420_MPEG4_FRAME_PICTURE_PLANAR_8u_709_FullRange;
constexpr PrPixelFormat kBgra = PrPixelFormat_BGRA_4444_8u;

bool Aligned(const void* pointer) { return reinterpret_cast<uintptr_t>(pointer) % 16 == 0; }

// Bytes of picture in a row, rows, and bytes from one row to the next.
std::array<int32_t, 3> Shape(const FramePlane& plane) {
  return {plane.row_length, plane.rows, plane.row_bytes};
}

class FrameSuitesTest : public ::testing::Test {
 protected:
  const PrSDKPPixCreatorSuite& creator() { return *host_sim::PPixCreatorSuite(); }
  const PrSDKPPixSuite& ppix() { return *host_sim::PPixSuite(); }
  const PrSDKPPix2Suite& ppix2() { return *host_sim::PPix2Suite(); }

  PPixHand Create(PrPixelFormat format, int32_t width, int32_t height) {
    return CreateIn({0, 0, width, height}, format);
  }

  PPixHand CreateIn(prRect bounds, PrPixelFormat format = kPlanar,
                    PrPPixBufferAccess access = PrPPixBufferAccess_ReadWrite) {
    PPixHand frame = nullptr;
    EXPECT_EQ(creator().CreatePPix(&frame, access, format, &bounds), suiteError_NoError);
    return frame;
  }

  // The three planes and their row bytes as GetYUV420PlanarBuffers answers them.
  prSuiteError PlanarBuffers(PPixHand frame, char* (&planes)[3], uint32_t (&row_bytes)[3]) {
    return ppix2().GetYUV420PlanarBuffers(frame, PrPPixBufferAccess_ReadWrite, &planes[0],
                                          &row_bytes[0], &planes[1], &row_bytes[1], &planes[2],
                                          &row_bytes[2]);
  }

  const HostFrame& Frame(PPixHand frame) { return *host_.frames().Find(frame); }

  std::vector<std::string> Faults() { return host_.Report().frame_faults; }

  Host host_;
};

// Planar frames have half-size chroma planes, halves rounded up, with strides rounded up to 16
// bytes after the padding; packed rows hold the width times the pixel size (16 bytes for the
// 32-bit float format, 4 for any other) and the padding. Every byte starts fresh.
TEST_F(FrameSuitesTest, LaysOutPlanarAndPackedFramesWithTheirPaddingAndAnswersTheirSize) {
  const struct {
    PrPixelFormat format;
    int32_t width;
    int32_t height;
    int32_t padding;
    std::vector<std::array<int32_t, 3>> planes;
  } cases[] = {{kPlanar, 33, 17, 0, {{33, 17, 48}, {17, 9, 32}, {17, 9, 32}}},
               {kPlanar, 33, 17, 20, {{33, 17, 64}, {17, 9, 48}, {17, 9, 48}}},
               {kBgra, 10, 3, 0, {{40, 3, 40}}},
               {PrPixelFormat_VUYA_4444_32f, 10, 3, 0, {{160, 3, 160}}},
               {0x32315559, 10, 3, 0, {{40, 3, 40}}},
               {kBgra, 10, 3, 6, {{40, 3, 46}}}};
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.format) + ", padding " + std::to_string(c.padding));
    host_.frames().set_row_padding(c.padding);
    host_.frames().set_plane_padding(c.padding);
    PPixHand frame = Create(c.format, c.width, c.height);
    const HostFrame& made = Frame(frame);
    EXPECT_EQ(made.planar, c.format == kPlanar);
    std::vector<std::array<int32_t, 3>> shapes;
    size_t size = 0;
    for (int p = 0; p < made.plane_count; ++p) {
      const FramePlane& plane = made.planes[p];
      shapes.push_back(Shape(plane));
      size += static_cast<size_t>(plane.row_bytes) * plane.rows;
      EXPECT_TRUE(Aligned(plane.bytes));
      const std::vector<uint8_t> bytes(plane.bytes, plane.bytes + plane.row_bytes * plane.rows);
      EXPECT_EQ(bytes, std::vector<uint8_t>(bytes.size(), HostFrames::kFreshByte)) << "plane " << p;
    }
    EXPECT_EQ(shapes, c.planes);
    EXPECT_EQ(made.size, size) << "the planes and their padding, no more";

    size_t answered_size = 0;
    EXPECT_EQ(ppix2().GetSize(frame, &answered_size), suiteError_NoError);
    EXPECT_EQ(answered_size, size);
  }
  EXPECT_EQ(host_.frames().live_count(), 6u);
  EXPECT_TRUE(host_.Report().clean())
      << "frames live at the end are the host's: " << host_.Report().ToString();
}

TEST_F(FrameSuitesTest, APackedFrameHasNoPlanesToGive) {
  char* planes[3] = {};
  uint32_t strides[3] = {};
  EXPECT_NE(PlanarBuffers(Create(kBgra, 10, 3), planes, strides), suiteError_NoError);
  EXPECT_EQ(planes[0], nullptr);
  EXPECT_THAT(Faults(), ElementsAre(HasSubstr("packed")));
}

TEST_F(FrameSuitesTest, RefusesReadOnlyAccessAndFramesWithoutPixels) {
  PPixHand kept = reinterpret_cast<PPixHand>(&kept);
  const prRect bounds = {0, 0, 64, 32};
  const std::tuple<PrPPixBufferAccess, PrPixelFormat, const prRect*> refused[] = {
      {PrPPixBufferAccess_ReadOnly, kPlanar, &bounds},
      {PrPPixBufferAccess_ReadWrite, kPlanar, nullptr},
      {PrPPixBufferAccess_ReadWrite, PrPixelFormat_Any, &bounds}};
  for (const auto& [access, format, rect] : refused) {
    EXPECT_NE(creator().CreatePPix(&kept, access, format, rect), suiteError_NoError) << format;
  }
  for (const prRect& empty : {prRect{0, 0, 0, 32}, prRect{64, 0, 0, 32}}) {
    EXPECT_NE(creator().CreatePPix(&kept, PrPPixBufferAccess_ReadWrite, kPlanar, &empty), 0);
  }
  EXPECT_EQ(kept, reinterpret_cast<PPixHand>(&kept)) << "a refusal leaves the slot alone";
  EXPECT_EQ(host_.frames().live_count(), 0u);
  EXPECT_NE(CreateIn(bounds, kPlanar, PrPPixBufferAccess_WriteOnly), nullptr);
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
  EXPECT_THAT(Faults(),
              ElementsAre(::testing::_, HasSubstr("GetRowBytes with a frame that is not live")));
}

TEST_F(FrameSuitesTest, AWriteJustOutsideAFrameIsAFaultWhenItIsFreedOrReported) {
  PPixHand planar = Create(kPlanar, 7, 5);
  Frame(planar).planes[0].bytes[-1] = 0;
  const HostFrame& packed = Frame(Create(kBgra, 4, 2));
  packed.planes[0].bytes[packed.size] = 0;
  EXPECT_EQ(Faults().size(), 2u) << host_.Report().ToString();
  Create(kPlanar, 7, 5);
  EXPECT_EQ(ppix().Dispose(planar), suiteError_NoError);
  const std::string report = host_.Report().ToString();
  EXPECT_EQ(Faults().size(), 2u);
  EXPECT_THAT(report, HasSubstr("write outside the 7x5 frame of format 1177646681, before it"));
  EXPECT_THAT(report, HasSubstr("write outside the 4x2 frame"));
}

// A host that must catch a write past a frame at its first byte: the frame ends within 16 bytes of
// an inaccessible page, which a fault handler can tell apart from any other address.
TEST_F(FrameSuitesTest, WithGuardPagesAFrameEndsJustBeforeAnInaccessiblePage) {
  host_.frames().set_guard_pages(true);
  const size_t page = platform::PageSize();
  for (const auto& [format, width, height] : std::vector<std::tuple<PrPixelFormat, int, int>>{
           {kPlanar, 7, 5}, {kBgra, 95, 47}, {kPlanar, 3840, 1920}}) {
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
  EXPECT_THAT(Faults(), ElementsAre(HasSubstr("95x47 frame of format 1634887522, after it")))
      << "the write into the slack of the 95x47 frame";
}

}  // namespace
