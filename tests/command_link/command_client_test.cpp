// The CommandClient thread against a real loopback command server, in-process, with a short
// pause between passes so that several read requests are queued before data arrives.
#include "command_link/command_client.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <thread>

#include "command_link/message_reception.h"
#include "command_server/command_server.h"
#include "command_server/port_file.h"
#include "command_server/requests.h"
#include "open_files/media_info_cache.h"
#include "platform/c_runtime_files.h"
#include "platform/environment.h"
#include "support/environment.h"
#include "support/plugin_log_file.h"
#include "support/temp_folder.h"

namespace {

using namespace std::chrono_literals;
using command_server::CommandServer;

constexpr char kPing[] = R"({"requestId":"1","type":"ping"})";
constexpr char kPingAnswer[] = R"({"requestId":"1","type":"ping","data":{"msg":"success"}})";
constexpr char kPong[] = R"({"requestId":"2","type":"pong"})";

class CommandClientTest : public ::testing::Test {
 protected:
  void SetUp() override {
    SetHomeDriveAndPath(home_.path().string());
    log_start_ = PluginLogText(CurrentProfile()).size();
  }

  void TearDown() override { StopClient(); }

  void WritePortLine(const std::string& line) {
    const std::string path = command_server::PortFilePath(home_.path().string());
    std::filesystem::create_directories(
        std::filesystem::path(platform::NativePath(path)).parent_path());
    std::ofstream(platform::NativePath(path), std::ios::binary) << line;
  }

  void StartClient() {
    StopFlag = false;
    SetCommandLoopPauseForTesting(10);
    thread_ = std::thread(CommandClient);
  }

  void StopClient() {
    StopFlag = true;
    if (thread_.joinable()) thread_.join();
  }

  // A server whose port is in the port file, and the client connected to it with read requests
  // already queued.
  CommandServer& ConnectedServer() {
    server_.emplace();
    server_->WritePortFile(home_.path().string());
    StartClient();
    EXPECT_TRUE(server_->WaitForConnection(5s));
    std::this_thread::sleep_for(100ms);
    return *server_;
  }

  // Occurrences of `text` in the log lines written since the test began.
  size_t LoggedSinceStart(const std::string& text) const {
    const std::string written = PluginLogText(CurrentProfile()).substr(log_start_);
    size_t count = 0;
    for (size_t at = written.find(text); at != std::string::npos; at = written.find(text, at + 1)) {
      ++count;
    }
    return count;
  }

  // How often the log lines written since the test began hold `text`, once they hold it `times`
  // times or a bound has passed.
  size_t WaitForLogged(const std::string& text, size_t times) const {
    const auto give_up = std::chrono::steady_clock::now() + 5s;
    while (LoggedSinceStart(text) < times && std::chrono::steady_clock::now() < give_up) {
      std::this_thread::sleep_for(10ms);
    }
    return LoggedSinceStart(text);
  }

  TempFolder home_;
  std::optional<CommandServer> server_;
  std::thread thread_;
  size_t log_start_ = 0;
  SavedEnvironment saved_{{"HOMEDRIVE", "HOMEPATH"}, false};
};

TEST_F(CommandClientTest, HandlesEachReceiveByItselfUpToItsFirstBrokenPiece) {
  CommandServer& server = ConnectedServer();
  server.SendRaw(std::string(kPing) + "###{\"broken###" + kPong + "###");
  EXPECT_EQ(server.WaitForResponse(5s), kPingAnswer);
  EXPECT_EQ(server.WaitForResponse(300ms), std::nullopt);
  EXPECT_EQ(LoggedSinceStart("ERROR Invalid json format: {\"broken SDK_File_Import:"), 1u);

  const std::string request = kPing;
  server.SendRaw(request.substr(0, 10));
  std::this_thread::sleep_for(200ms);
  server.SendRaw(request.substr(10) + "###");
  EXPECT_EQ(server.WaitForResponse(300ms), std::nullopt) << "a request cut in two is lost";
  for (const std::string& piece : {request.substr(0, 10), request.substr(10)}) {
    EXPECT_EQ(LoggedSinceStart("ERROR Invalid json format: " + piece + " SDK_File_Import:"), 1u);
  }
}

TEST_F(CommandClientTest, HandlesTheRestOfAReceiveWhenTheConnectionIsGoneBeforeItsAnswers) {
  command_link::TcpClient gone;
  const std::string text = std::string(kPing) + "###" + kPong;
  command_link::TcpClient::ReadResult result{true, {text.begin(), text.end()}};
  EXPECT_NO_THROW(OnReadComplete(gone, result));
  EXPECT_EQ(LoggedSinceStart("Received json: "), 2u);
}

TEST_F(CommandClientTest, AnswersMediaInfoAndLogsEachRequestAndItsResponse) {
  MediaInfoCache()["D:\\logged"] =
      MediaInfo{0, 0, 0, 30.0, 900, 120000000, 0, 0, 0, 0, 0, "0.5,0,0"};
  CommandServer& server = ConnectedServer();
  const std::string request = command_server::MediaInfoRequest("7", "D:\\logged");
  server.Send(request);
  const std::optional<std::string> response = server.WaitForResponse(5s);
  ASSERT_EQ(response, R"({"requestId":"7","type":"get_media_info","data":{"duration":30.0,)"
                      R"("bitrate":120000000,"fps":30.0,"offset":"0.5,0,0"}})");
  EXPECT_EQ(LoggedSinceStart("INFO  Received json: " + request + " SDK_File_Import:2527"), 1u);
  EXPECT_EQ(LoggedSinceStart("INFO  Request ID: 7 SDK_File_Import:731"), 1u);
  EXPECT_EQ(LoggedSinceStart("INFO  Request Type: get_media_info SDK_File_Import:737"), 1u);
  EXPECT_EQ(LoggedSinceStart("INFO  Request File Path: D:\\logged SDK_File_Import:745"), 1u);
  EXPECT_EQ(LoggedSinceStart("INFO  Size of map: " + std::to_string(MediaInfoCache().size()) +
                             " SDK_File_Import:760"),
            1u);
  EXPECT_EQ(LoggedSinceStart("INFO  Response: " + *response + " SDK_File_Import:798"), 1u);

  server.Send(command_server::MediaInfoRequest("8", "D:\\unknown"));
  ASSERT_TRUE(server.WaitForResponse(5s).has_value());
  EXPECT_EQ(LoggedSinceStart("ERROR Request file path is invalid! SDK_File_Import:779"), 1u);
}

TEST_F(CommandClientTest, KeepsThePortOfTheFirstLineItReadsAndNeverConnectsToPortZero) {
  server_.emplace();
  WritePortLine("0\n");
  StartClient();
  EXPECT_FALSE(server_->WaitForConnection(300ms));
  StopClient();
  WritePortLine(std::to_string(server_->port()) + "\r\n");
  StartClient();
  EXPECT_TRUE(server_->WaitForConnection(5s)) << "despite the carriage return";

  const uint16_t first_port = server_->port();
  server_.reset();
  CommandServer moved;
  moved.WritePortFile(home_.path().string());
  EXPECT_FALSE(moved.WaitForConnection(300ms));
  CommandServer back(first_port);
  EXPECT_TRUE(back.WaitForConnection(5s));
}

TEST_F(CommandClientTest, TriesTheDefaultPortAndSaysSoWithoutAHomeDrive) {
  platform::UnsetEnvironment("HOMEDRIVE");
  std::optional<CommandServer> default_server;
  try {
    default_server.emplace(8038);
  } catch (const std::exception&) {
    GTEST_SKIP() << "port 8038 is taken on this machine";
  }
  StartClient();
  // Every plug-in without a port file tries this port, those of other test programs too: the
  // line, not the connection, says that this one did.
  EXPECT_GE(WaitForLogged("ERROR Can't get home drive! SDK_File_Import:", 1), 1u);
  EXPECT_TRUE(default_server->WaitForConnection(5s));
}

TEST_F(CommandClientTest, SaysSoOnEveryPassWithoutAHomePath) {
  platform::UnsetEnvironment("HOMEPATH");
  const std::string line = "ERROR Can't get home path! SDK_File_Import:2438";
  StartClient();
  EXPECT_GE(WaitForLogged(line, 2), 2u);
}

using CommandClientDeathTest = CommandClientTest;

TEST_F(CommandClientDeathTest, EndsTheProcessOnAPortLineThatIsNotA32BitNumber) {
  for (const std::string& line : {std::string("no number\n"), std::string(40, '9') + "\n"}) {
    SCOPED_TRACE(line);
    WritePortLine(line);
    // The first pass reads the line; a client that lives on fails the test within a bound.
    EXPECT_DEATH(
        {
          StartClient();
          std::this_thread::sleep_for(10s);
          std::_Exit(0);
        },
        "");
  }
}

}  // namespace
