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

#include "command_server/command_server.h"
#include "command_server/port_file.h"
#include "command_server/requests.h"
#include "host_sim/host.h"
#include "host_sim/host_records.h"
#include "importer/file_info.h"
#include "importer/file_lifecycle.h"
#include "logging/plugin_log.h"
#include "open_files/media_info_cache.h"
#include "platform/c_runtime_files.h"
#include "platform/environment.h"
#include "standin_stitcher/omni_standin_counters.h"
#include "support/environment.h"
#include "support/plugin_log_file.h"
#include "support/temp_folder.h"

namespace {

using namespace std::chrono_literals;
using command_server::CommandServer;

constexpr char kPing[] = R"({"requestId":"1","type":"ping"})";
constexpr char kPingAnswer[] = R"({"requestId":"1","type":"ping","data":{"msg":"success"}})";
constexpr char kPong[] = R"({"requestId":"2","type":"pong"})";
constexpr char kPongAnswer[] = R"({"requestId":"2","type":"pong","data":{"msg":"success"}})";

class CommandClientTest : public ::testing::Test {
 protected:
  void SetUp() override {
    SetHomeDriveAndPath(home_.path().string());
    log_start_ = LogText().size();
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

  static std::string LogText() { return PluginLogText(CurrentProfile()); }

  // Occurrences of `text` in the log lines written since the test began.
  size_t LoggedSinceStart(const std::string& text) const {
    const std::string written = LogText().substr(log_start_);
    size_t count = 0;
    for (size_t at = written.find(text); at != std::string::npos; at = written.find(text, at + 1)) {
      ++count;
    }
    return count;
  }

  TempFolder home_;
  std::optional<CommandServer> server_;
  std::thread thread_;
  size_t log_start_ = 0;
  SavedEnvironment saved_{{"HOMEDRIVE", "HOMEPATH"}, false};
};

TEST_F(CommandClientTest, AnswersTwoRequestsOfOneReceiveInOrder) {
  CommandServer& server = ConnectedServer();
  server.SendRaw(std::string(kPing) + "###" + kPong + "###");
  EXPECT_EQ(server.WaitForResponse(5s), kPingAnswer);
  EXPECT_EQ(server.WaitForResponse(5s), kPongAnswer);
}

TEST_F(CommandClientTest, AnswersALastRequestWithoutItsDelimiter) {
  CommandServer& server = ConnectedServer();
  server.SendRaw(kPing);
  EXPECT_EQ(server.WaitForResponse(5s), kPingAnswer);
}

TEST_F(CommandClientTest, DropsTheRestOfAReceiveAfterABrokenPiece) {
  CommandServer& server = ConnectedServer();
  server.SendRaw(std::string(kPing) + "###{\"broken###" + kPong + "###");
  EXPECT_EQ(server.WaitForResponse(5s), kPingAnswer);
  EXPECT_EQ(server.WaitForResponse(300ms), std::nullopt);
  EXPECT_EQ(LoggedSinceStart("ERROR Invalid json format: {\"broken SDK_File_Import:"), 1u);
}

TEST_F(CommandClientTest, AnswersNothingInAReceiveThatBeginsWithTheDelimiter) {
  CommandServer& server = ConnectedServer();
  server.SendRaw(std::string("###") + kPing + "###");
  EXPECT_EQ(server.WaitForResponse(300ms), std::nullopt);
  EXPECT_EQ(LoggedSinceStart("ERROR Invalid json format:  SDK_File_Import:"), 1u);
}

TEST_F(CommandClientTest, LosesARequestCutIntoTwoReceives) {
  CommandServer& server = ConnectedServer();
  const std::string request = kPing;
  server.SendRaw(request.substr(0, 10));
  std::this_thread::sleep_for(200ms);
  server.SendRaw(request.substr(10) + "###");
  EXPECT_EQ(server.WaitForResponse(300ms), std::nullopt);
  EXPECT_EQ(LoggedSinceStart("ERROR Invalid json format: "), 2u);
}

TEST_F(CommandClientTest, LogsEachRequestAndItsResponse) {
  MediaInfo media;
  media.fps = 25.0;
  media.frame_count = 50;
  MediaInfoCache()["D:\\logged"] = media;
  CommandServer& server = ConnectedServer();
  const std::string request = command_server::MediaInfoRequest("7", "D:\\logged");
  server.Send(request);
  const std::optional<std::string> response = server.WaitForResponse(5s);
  ASSERT_TRUE(response.has_value());
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

TEST_F(CommandClientTest, ReadsThePortDespiteATrailingCarriageReturn) {
  server_.emplace();
  WritePortLine(std::to_string(server_->port()) + "\r\n");
  StartClient();
  EXPECT_TRUE(server_->WaitForConnection(5s));
}

TEST_F(CommandClientTest, NeverConnectsWithPortZero) {
  server_.emplace();
  WritePortLine("0\n");
  StartClient();
  EXPECT_FALSE(server_->WaitForConnection(300ms));
}

TEST_F(CommandClientTest, KeepsThePortItReadFirstAfterTheServerMoves) {
  CommandServer& first = ConnectedServer();
  const uint16_t first_port = first.port();
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
  EXPECT_TRUE(default_server->WaitForConnection(5s));
  StopClient();
  EXPECT_GE(LoggedSinceStart("ERROR Can't get home drive! SDK_File_Import:"), 1u);
}

TEST_F(CommandClientTest, SaysSoOnEveryPassWithoutAHomePath) {
  platform::UnsetEnvironment("HOMEPATH");
  StartClient();
  const auto give_up = std::chrono::steady_clock::now() + 5s;
  while (LoggedSinceStart("ERROR Can't get home path! SDK_File_Import:2438") < 2 &&
         std::chrono::steady_clock::now() < give_up) {
    std::this_thread::sleep_for(10ms);
  }
  StopClient();
  EXPECT_GE(LoggedSinceStart("ERROR Can't get home path! SDK_File_Import:2438"), 2u);
}

using CommandClientDeathTest = CommandClientTest;

TEST_F(CommandClientDeathTest, EndsTheProcessOnAPortLineWithoutANumber) {
  WritePortLine("no number\n");
  EXPECT_DEATH(
      {
        StopFlag = false;
        SetCommandLoopPauseForTesting(10);
        std::thread(CommandClient).join();
      },
      "");
}

TEST_F(CommandClientDeathTest, EndsTheProcessOnAPortBeyond32Bits) {
  WritePortLine(std::string(40, '9') + "\n");
  EXPECT_DEATH(
      {
        StopFlag = false;
        SetCommandLoopPauseForTesting(10);
        std::thread(CommandClient).join();
      },
      "");
}

// Two files opened and described in-process through the host simulator's records and suites.
TEST_F(CommandClientTest, AnUpdateRefreshesEveryOtherFileAndExpiresTheHostCacheOnce) {
  host_sim::Host host;
  TempFolder clips;
  struct Opened {
    std::string path;
    std::u16string wide;
    imFileRef file_ref = nullptr;
    void* private_data = nullptr;
  };
  Opened files[2];
  for (int i = 0; i < 2; ++i) {
    files[i].path =
        clips.WriteFile("clip" + std::to_string(i) + ".qvo", R"({"width": 8, "height": 4})");
    files[i].wide = host_sim::HostWidePath(files[i].path);
    imFileAccessRec8 access = host_sim::MakeAccessRecord(nullptr, 0, files[i].wide, nullptr);
    imFileOpenRec8 open = host_sim::MakeOpenRecord(access, nullptr, 10 + i);
    ASSERT_EQ(OpenFile(host.std_parms(), &files[i].file_ref, &open), imNoErr);
    host_sim::FileInfoBlock info(10 + i, open.privatedata);
    ASSERT_EQ(GetFileInfo(host.std_parms(), &access, info.record()), imNoErr);
    files[i].private_data = open.privatedata;
  }

  CommandServer& server = ConnectedServer();
  server.Send(command_server::UpdateParamRequest("5", files[0].path));
  EXPECT_EQ(server.WaitForResponse(5s),
            R"({"requestId":"5","type":"request_update_param","data":{"msg":"success"}})");
  EXPECT_EQ(OmniStandin_CallCount(kOmniStandinUpdate, files[0].path.c_str()), 0);
  EXPECT_EQ(OmniStandin_CallCount(kOmniStandinUpdate, files[1].path.c_str()), 1);
  EXPECT_EQ(host.frame_cache().expire_all_calls(), 1);
  EXPECT_EQ(LoggedSinceStart("INFO  Expire all cache after update param SDK_File_Import:818"), 1u);

  StopClient();
  for (Opened& file : files) ReleaseFile(&file.file_ref, file.private_data);
}

}  // namespace
