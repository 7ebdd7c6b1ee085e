#include "command_server/command_server.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "command_server/loopback_client.h"
#include "command_server/port_file.h"
#include "command_server/requests.h"
#include "support/temp_folder.h"

namespace {

using command_server::CommandServer;
using Responses = std::vector<std::string>;

constexpr std::chrono::milliseconds kBound = LoopbackClient::kBound;

class ServerFixture : public ::testing::Test {
 protected:
  // A plug-in connection that the server has taken as its current one.
  std::unique_ptr<LoopbackClient> ConnectPlugin() {
    auto plugin = std::make_unique<LoopbackClient>(server_.port());
    EXPECT_TRUE(server_.WaitForConnection(kBound));
    return plugin;
  }

  std::optional<std::string> NextResponse() { return server_.WaitForResponse(kBound); }

  CommandServer server_;
};

class Sending : public ServerFixture {};
class Responding : public ServerFixture {};
class Connections : public ServerFixture {};

TEST_F(Sending, EndsEachRequestWithTheDelimiter) {
  auto plugin = ConnectPlugin();
  ASSERT_TRUE(server_.Send(R"({"a":1})"));
  ASSERT_TRUE(server_.Send(R"({"b":2})"));
  EXPECT_EQ(plugin->Read(20), R"({"a":1}###{"b":2}###)");
}

TEST_F(Sending, PassesRawBytesThroughUnchanged) {
  auto plugin = ConnectPlugin();
  const std::string broken = R"(###{"a":1}######{"b")";
  ASSERT_TRUE(server_.SendRaw(broken));
  EXPECT_EQ(plugin->Read(broken.size()), broken);
}

TEST_F(Sending, FailsWhileNoPluginIsConnected) {
  EXPECT_FALSE(server_.Send(R"({"a":1})"));
  EXPECT_FALSE(server_.SendRaw("###"));
}

TEST_F(Responding, SplitsResponsesThatArriveTogetherAndHandsEachOutOnce) {
  auto plugin = ConnectPlugin();
  plugin->Write(R"({"r":1}###{"r":2}###)");
  EXPECT_EQ(NextResponse(), R"({"r":1})");
  EXPECT_EQ(NextResponse(), R"({"r":2})");
  EXPECT_EQ(server_.WaitForResponse(std::chrono::milliseconds(0)), std::nullopt);
  EXPECT_EQ(server_.ResponsesSoFar(), (Responses{R"({"r":1})", R"({"r":2})"}));
}

TEST_F(Responding, ReassemblesAResponseCutAcrossReceives) {
  auto plugin = ConnectPlugin();
  plugin->Write(R"({"r":1}###{"par)");
  ASSERT_EQ(NextResponse(), R"({"r":1})");
  plugin->Write(R"(tial":2}###)");
  EXPECT_EQ(NextResponse(), R"({"partial":2})");
}

TEST_F(Responding, ReassemblesADelimiterCutAcrossReceives) {
  auto plugin = ConnectPlugin();
  plugin->Write(R"({"r":1}###{"r":2}#)");
  ASSERT_EQ(NextResponse(), R"({"r":1})");
  plugin->Write("#");
  plugin->Write(R"(#{"r":3}###)");
  EXPECT_EQ(NextResponse(), R"({"r":2})");
  EXPECT_EQ(NextResponse(), R"({"r":3})");
}

TEST_F(Responding, KeepsTheEmptyResponseBetweenTwoDelimiters) {
  auto plugin = ConnectPlugin();
  plugin->Write(R"({"r":1}######{"r":2}###)");
  EXPECT_EQ(NextResponse(), R"({"r":1})");
  EXPECT_EQ(NextResponse(), "");
  EXPECT_EQ(NextResponse(), R"({"r":2})");
}

TEST_F(Responding, DropsTheUnfinishedResponseOfAConnectionThatEnded) {
  auto first = ConnectPlugin();
  first->Write(R"({"r":1}###{"unfinished")");
  ASSERT_EQ(NextResponse(), R"({"r":1})");
  first->Close();
  ASSERT_TRUE(server_.WaitForDisconnection(kBound));

  auto second = ConnectPlugin();
  second->Write(R"({"r":2}###)");
  EXPECT_EQ(NextResponse(), R"({"r":2})");
  EXPECT_EQ(server_.ResponsesSoFar(), (Responses{R"({"r":1})", R"({"r":2})"}));
}

TEST_F(Connections, ANewConnectionReplacesTheOld) {
  auto first = ConnectPlugin();
  LoopbackClient second(server_.port());
  EXPECT_TRUE(first->SeesEndOfStream());
  ASSERT_TRUE(server_.Send(R"({"to":2})"));
  EXPECT_EQ(second.Read(11), R"({"to":2}###)");
}

TEST_F(Connections, CloseConnectionEndsTheStreamAndAwaitsAReconnection) {
  auto first = ConnectPlugin();
  server_.CloseConnection();
  EXPECT_TRUE(first->SeesEndOfStream());
  EXPECT_TRUE(server_.WaitForDisconnection(std::chrono::milliseconds(0)));
  EXPECT_FALSE(server_.Send(R"({"a":1})"));

  auto second = ConnectPlugin();
  ASSERT_TRUE(server_.Send(R"({"a":1})"));
  EXPECT_EQ(second->Read(10), R"({"a":1}###)");
}

TEST_F(Connections, NoticesWhenThePluginCloses) {
  auto plugin = ConnectPlugin();
  plugin->Close();
  EXPECT_TRUE(server_.WaitForDisconnection(kBound));
  EXPECT_FALSE(server_.Send(R"({"a":1})"));
}

TEST_F(Connections, StopEndsTheConnectionAndRefusesFurtherWork) {
  auto plugin = ConnectPlugin();
  server_.Stop();
  EXPECT_TRUE(plugin->SeesEndOfStream());
  EXPECT_FALSE(server_.Send(R"({"a":1})"));
  EXPECT_FALSE(server_.WaitForConnection(kBound));
  EXPECT_EQ(server_.WaitForResponse(kBound), std::nullopt);
}

TEST_F(Connections, ANewServerTakesOverThePortOfAStoppedOne) {
  auto plugin = ConnectPlugin();
  const uint16_t port = server_.port();
  server_.Stop();
  ASSERT_TRUE(plugin->SeesEndOfStream());

  CommandServer restarted(port);
  LoopbackClient reconnected(port);
  EXPECT_TRUE(restarted.WaitForConnection(kBound));
}

TEST(PortFile, HoldsThePortAsADecimalLineUnderTheHomeFolder) {
  TempFolder temp;
  CommandServer server;
  ASSERT_TRUE(server.WritePortFile(temp.path().string() + "\\profile"));
  EXPECT_EQ(
      ReadWholeFile(temp.path() / "profile" / "AppData" / "Local" / "quorvel" / "Adobe" / "port"),
      std::to_string(server.port()) + "\n");
}

TEST(PortFile, ReplacesAnOlderFileWhole) {
  TempFolder temp;
  const std::string home = temp.path().string();
  ASSERT_TRUE(command_server::WritePortFile(home, 65535));
  ASSERT_TRUE(command_server::WritePortFile(home, 80));
  EXPECT_EQ(ReadWholeFile(temp.path() / "AppData" / "Local" / "quorvel" / "Adobe" / "port"),
            "80\n");
}

TEST(PortFile, FailsWhenItsFolderCannotBeMade) {
  TempFolder temp;
  temp.WriteFile("profile", "a file where the home folder should be");
  EXPECT_FALSE(command_server::WritePortFile(temp.path().string() + "\\profile", 8040));
}

TEST(Requests, EscapeThePathAsJsonText) {
  EXPECT_EQ(command_server::MediaInfoRequest("1", "D:\\media\\\"shot\"\n"),
            R"({"requestId":"1","type":"get_media_info",)"
            R"("request":{"filepath":"D:\\media\\\"shot\"\n"}})");
  EXPECT_EQ(command_server::UpdateParamRequest("2",
                                               "C:\\M\xC3\xA9"
                                               "dia"),
            R"({"requestId":"2","type":"request_update_param",)"
            "\"request\":{\"filepath\":\"C:\\\\M\xC3\xA9"
            "dia\"}}");
}

}  // namespace
