// The command server talking to the built plug-in file, with the production pause between the
// command thread's passes: a parameter update after which the host re-fetches frames.
#include <gtest/gtest.h>

#include <chrono>
#include <vector>

#include "command_server/requests.h"
#include "integration/plugin_fixture.h"
#include "standin_stitcher/omni_standin_counters.h"

namespace {

using namespace std::chrono_literals;
using host_sim::HostFile;

// A read request is queued every 2.5 s while the server is silent; an answer may wait for one.
constexpr auto kAnswerTime = 10s;

class CommandLinkTest : public PluginTest {
 protected:
  void SetUp() override {
    PluginTest::SetUp();
    ASSERT_TRUE(Server().WaitForConnection(kAnswerTime));
  }

  std::vector<uint8_t> LumaOfFrameZero(HostFile* clip) {
    PPixHand handle = nullptr;
    EXPECT_EQ(clip->RequestFrame(0, {0, 0, kPlanar}, &handle), imNoErr);
    const host_sim::FramePlane& y = host().frames().Find(handle)->planes[0];
    return std::vector<uint8_t>(y.bytes, y.bytes + y.row_bytes * y.rows);
  }
};

TEST_F(CommandLinkTest, AnUpdateMakesTheHostFetchTheOtherFilesFramesAgain) {
  HostFile* named = DescribedClip(R"({"width": 64, "height": 32})");
  HostFile* other = DescribedClip(R"({"width": 64, "height": 32})");
  const std::vector<uint8_t> before = LumaOfFrameZero(other);
  const int64_t expired_before = host().frame_cache().expire_all_calls();

  ASSERT_TRUE(Server().Send(command_server::UpdateParamRequest("2", PathOf(*named))));
  EXPECT_EQ(Server().WaitForResponse(kAnswerTime),
            R"({"requestId":"2","type":"request_update_param","data":{"msg":"success"}})");
  EXPECT_EQ(OmniStandin_CallCount(kOmniStandinUpdate, PathOf(*named).c_str()), 0);
  EXPECT_EQ(OmniStandin_CallCount(kOmniStandinUpdate, PathOf(*other).c_str()), 1);
  EXPECT_EQ(host().frame_cache().expire_all_calls(), expired_before + 1);

  EXPECT_NE(LumaOfFrameZero(other), before) << "fetched anew, with the updated parameters";
}

}  // namespace
