// The command server talking to the built plug-in file, with the production pause between the
// command thread's passes: a parameter update, after which the host's cached frames are expired.
#include <gtest/gtest.h>

#include <chrono>

#include "command_server/requests.h"
#include "integration/plugin_fixture.h"

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
};

TEST_F(CommandLinkTest, AnUpdateExpiresTheHostsCachedFramesForTheOtherFileOnly) {
  HostFile* named = DescribedClip(R"({"width": 64, "height": 32})");
  DescribedClip(R"({"width": 64, "height": 32})");
  const int64_t expired_before = host().frame_cache().expire_all_calls();

  ASSERT_TRUE(Server().Send(command_server::UpdateParamRequest("2", PathOf(*named))));
  EXPECT_EQ(Server().WaitForResponse(kAnswerTime),
            R"({"requestId":"2","type":"request_update_param","data":{"msg":"success"}})");
  EXPECT_EQ(host().frame_cache().expire_all_calls(), expired_before + 1);
}

}  // namespace
