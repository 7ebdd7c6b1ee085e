#include "command_server/command_server.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "command_server/loopback_client.h"
#include "command_server/port_file.h"
#include "command_server/requests.h"
#include "support/temp_folder.h"

namespace {

using command_server::CommandServer;
using Responses = std::vector<std::string>;

constexpr std::chrono::milliseconds kBound = LoopbackClient::kBound;

class CommandServerTest : public ::testing::Test {
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

TEST_F(CommandServerTest, SendsOnlyToAConnectedPluginAndFramesAllButRawBytes) {
  EXPECT_FALSE(server_.Send(R"({"a":1})"));
  auto plugin = ConnectPlugin();
  ASSERT_TRUE(server_.Send(R"({"a":1})"));
  ASSERT_TRUE(server_.Send(R"({"b":2})"));
  const std::string broken = R"(###{"a":1}######{"b")";
  ASSERT_TRUE(server_.SendRaw(broken));
  EXPECT_EQ(plugin->Read(20 + broken.size()), R"({"a":1}###{"b":2}###)" + broken);
}

TEST_F(CommandServerTest, SplitsResponsesWhereverReceivesCutThemAndHandsEachOutOnce) {
  auto plugin = ConnectPlugin();
  plugin->Write(R"({"r":1}###{"r":2}###)");
  EXPECT_EQ(NextResponse(), R"({"r":1})");
  EXPECT_EQ(NextResponse(), R"({"r":2})");
  EXPECT_EQ(server_.WaitForResponse(std::chrono::milliseconds(0)), std::nullopt);
  plugin->Write(R"({"r":3}######{"par)");
  EXPECT_EQ(NextResponse(), R"({"r":3})");
  EXPECT_EQ(NextResponse(), "") << "the empty response between two delimiters";
  plugin->Write(R"(tial":4}###{"r":5}#)");
  EXPECT_EQ(NextResponse(), R"({"partial":4})");
  plugin->Write("#");
  plugin->Write(R"(#{"r":6}###)");
  EXPECT_EQ(NextResponse(), R"({"r":5})");
  EXPECT_EQ(NextResponse(), R"({"r":6})");
}

TEST_F(CommandServerTest, NoticesThePluginClosingAndDropsItsUnfinishedResponse) {
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

TEST_F(CommandServerTest, ANewConnectionReplacesTheOldAndCloseConnectionAwaitsTheNext) {
  auto first = ConnectPlugin();
  LoopbackClient second(server_.port());
  EXPECT_TRUE(first->SeesEndOfStream());
  ASSERT_TRUE(server_.Send(R"({"to":2})"));
  EXPECT_EQ(second.Read(11), R"({"to":2}###)");

  server_.CloseConnection();
  EXPECT_TRUE(second.SeesEndOfStream());
  EXPECT_TRUE(server_.WaitForDisconnection(std::chrono::milliseconds(0)));
  auto third = ConnectPlugin();
  ASSERT_TRUE(server_.Send(R"({"a":1})"));
  EXPECT_EQ(third->Read(10), R"({"a":1}###)");
}

TEST_F(CommandServerTest, StopEndsTheConnectionAndRefusesFurtherWork) {
  auto plugin = ConnectPlugin();
  server_.Stop();
  EXPECT_TRUE(plugin->SeesEndOfStream());
  EXPECT_FALSE(server_.Send(R"({"a":1})"));
}

TEST(PortFileTest, HoldsThePortAsADecimalLineUnderTheHomeFolderOrSaysItCannot) {
  TempFolder temp;
  ASSERT_TRUE(command_server::WritePortFile(temp.path().string() + "\\profile", 80));
  EXPECT_EQ(
      ReadWholeFile(temp.path() / "profile" / "AppData" / "Local" / "quorvel" / "Adobe" / "port"),
      "80\n");

  temp.WriteFile("file", "a file where the home folder should be");
  EXPECT_FALSE(command_server::WritePortFile(temp.path().string() + "\\file", 8040));
}

// The plug-in may read the file at any moment, and takes an empty line for the end of the host.
// On Windows the file cannot be opened at the instant it is moved, which the plug-in takes for a
// missing file and reads again; a file it opens must hold a whole line.
TEST(PortFileTest, AReaderFindsAWholeLineWhileTheFileIsRewritten) {
  TempFolder temp;
  const std::string home = temp.path().string();
  ASSERT_TRUE(command_server::WritePortFile(home, 80));
  std::atomic<bool> writing{true};
  std::thread writer([&home, &writing] {
    for (int i = 0; i < 200; ++i) {
      EXPECT_TRUE(command_server::WritePortFile(home, i % 2 == 0 ? 8040 : 80));
    }
    writing = false;
  });
  const std::filesystem::path file =
      temp.path() / "AppData" / "Local" / "quorvel" / "Adobe" / "port";
  std::optional<std::string> torn;
  while (writing && !torn) {
    std::ifstream reader(file, std::ios::binary);
    if (!reader.is_open()) continue;
    const std::string text{std::istreambuf_iterator<char>(reader), {}};
    if (text != "80\n" && text != "8040\n") torn = text;
    reader.close();
    // The plug-in reads it once a pass; back-to-back reads could hold it open past the writer's
    // retries on a loaded machine.
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  writer.join();
  EXPECT_EQ(torn, std::nullopt) << "read \"" << *torn << '"';
}

TEST(RequestsTest, EscapeThePathAsJsonText) {
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
