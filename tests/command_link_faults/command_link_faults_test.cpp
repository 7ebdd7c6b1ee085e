// The built plug-in against command servers that misbehave: each fault has the link's answer to
// it, while a host thread goes on being served and shut-down stays bounded.
//
// Each test loads the built plug-in file into a profile of its own, has a misbehaving command
// server listen at the port in that profile's port file, starts the plug-in, and shuts it down
// and unloads it at the end (TearDown does, where the test does not): the plug-in never clears
// its stop flag, so one load starts once. Meanwhile a host thread keeps asking a clip of its own
// for frames and sound, as Premiere Pro's threads go on playing a clip while the command link is
// in trouble.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "command_link_faults/raw_peer.h"
#include "command_server/command_server.h"
#include "command_server/requests.h"
#include "host_sim/host_file.h"
#include "host_sim/host_session.h"
#include "host_sim/plugin_module.h"
#include "platform/environment.h"
#include "qvo_host/log_parsing.h"
#include "support/environment.h"
#include "support/plugin_log_file.h"
#include "support/temp_folder.h"

namespace {

using namespace std::chrono_literals;
using command_server::CommandServer;

constexpr int32_t kInterfaceVersion = 23;
// Long enough for one pass of the command thread, its pause and a connect time-out, with room.
constexpr std::chrono::milliseconds kLinkWait = 10s;
// One pause of the command thread and one connect time-out, with a margin for a loaded machine.
// A bound on waiting, not a measure of speed.
constexpr auto kShutDownBound = 6s;

constexpr char kTrafficClip[] =
    R"({"width": 64, "height": 32, "frames": 30, "fps": 30, "audio": {"rate": 3000, "channels": 2}})";
constexpr PrPixelFormat kPlanar = 0x46317659;
constexpr int32_t kTrafficFrames = 30;
constexpr uint32_t kSoundRun = 100;
// A player's pace, not a flood: the machine is shared with the plug-in's own threads.
constexpr auto kRequestInterval = 10ms;

constexpr char kDelimiter[] = "###";
constexpr char kInvalidJson[] = "Invalid json format: ";
constexpr size_t kReadSize = 0xA00000;
constexpr char kSuccess[] = R"("data":{"msg":"success"})";

// True when `done` holds within `timeout`, asked every 100 ms.
bool WaitUntil(const std::function<bool()>& done, std::chrono::milliseconds timeout) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  while (!done()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(100ms);
  }
  return true;
}

class LinkFaultTest : public ::testing::Test {
 protected:
  // Points USERPROFILE, HOMEDRIVE and HOMEPATH at a fresh profile, where the plug-in logs and
  // finds its port file.
  LinkFaultTest() {
    std::filesystem::create_directories(profile_.path() / "AppData" / "Local");
    platform::SetEnvironment("USERPROFILE", home());
    SetHomeDriveAndPath(home());
  }

  void TearDown() override {
    if (session_) ShutDownAndUnload();
  }

  // The profile folder, where a server writes its port file.
  std::string home() const { return profile_.path().string(); }

  // The usual start: `server`'s port in the port file, the plug-in loaded and started up as the
  // host does once per load, the host thread running, a clip of `clip_project` opened when one
  // is given (clip_path_ names it), and the plug-in connected to `server` (the tool's command
  // server or a raw peer).
  template <typename Server>
  void StartLinkedTo(Server& server, const std::string& clip_project = "") {
    ASSERT_TRUE(server.WritePortFile(home()));
    plugin_ = std::make_unique<host_sim::PluginModule>(host_sim::DefaultPluginPath());
    ASSERT_TRUE(plugin_->loaded()) << plugin_->error();
    session_ = std::make_unique<host_sim::HostSession>(*plugin_, kInterfaceVersion);
    imImportInfoRec capabilities;
    ASSERT_EQ(session_->StartUp(&capabilities), imNoErr);
    int32_t last_result = 0;
    session_->FileTypes(&last_result);
    StartHostTraffic();
    if (!clip_project.empty()) {
      // The host hands "\\?\" and the native path.
      clip_path_ = std::filesystem::path(OpenClip(clip_project)->host_path().substr(4)).u8string();
    }
    ASSERT_TRUE(server.WaitForConnection(kLinkWait));
  }

  // Checks that the host thread is served while the fault lasts.
  void ExpectHostServedMeanwhile() {
    const int64_t goal = served_ + 4;
    EXPECT_TRUE(WaitUntil([&] { return served_ >= goal; }, kLinkWait))
        << "the host's requests stalled";
    EXPECT_EQ(failures_.load(), 0);
  }

  // Stops the host thread, shuts the plug-in down and unloads it, checking that shut-down
  // returns within one pause of the command thread and one connect time-out.
  void ShutDownAndUnload() {
    traffic_stopping_ = true;
    if (traffic_.joinable()) traffic_.join();
    for (auto& clip : clips_) {
      if (clip->private_data() != nullptr) {
        EXPECT_EQ(clip->Close(), imNoErr);
      }
    }
    const auto shutting_down = std::chrono::steady_clock::now();
    EXPECT_EQ(session_->ShutDown(), imNoErr);
    EXPECT_LT(std::chrono::steady_clock::now() - shutting_down, kShutDownBound);
    clips_.clear();
    session_.reset();
    EXPECT_TRUE(plugin_->Unload());
  }

  // The messages of every Plugin.log line, rotated files first, whose message begins with
  // `start`, without that beginning.
  std::vector<std::string> Logged(const std::string& start) const {
    host_sim::ParsedLog log;
    for (const auto& file : PluginLogFiles(profile_.path())) {
      host_sim::ParsePluginLog(ReadWholeFile(file), &log);
    }
    std::vector<std::string> messages;
    for (const host_sim::LogEntry& entry : log.entries) {
      if (entry.message.compare(0, start.size(), start) == 0) {
        messages.push_back(entry.message.substr(start.size()));
      }
    }
    return messages;
  }

  // True when Logged(start) has `count` entries within `timeout`.
  bool WaitForLogged(const std::string& start, size_t count, std::chrono::milliseconds timeout) {
    return WaitUntil([&] { return Logged(start).size() >= count; }, timeout);
  }

  // The path of the clip StartLinkedTo opened, as the plug-in knows it and a request names it.
  std::string clip_path_;

 private:
  // A stand-in clip with `project` as its text, opened and described.
  host_sim::HostFile* OpenClip(const std::string& project) {
    const std::string path =
        clip_folder_.WriteFile("clip" + std::to_string(clips_.size() + 1) + ".qvo", project);
    clips_.push_back(std::make_unique<host_sim::HostFile>(*session_, path,
                                                          session_->FileTypeFor(path)->file_type));
    EXPECT_EQ(clips_.back()->Open(), imNoErr);
    EXPECT_EQ(clips_.back()->GetInfo(), imNoErr);
    return clips_.back().get();
  }

  void StartHostTraffic() {
    host_sim::HostFile* clip = OpenClip(kTrafficClip);
    traffic_ = std::thread([this, clip] {
      for (int32_t index = 0; !traffic_stopping_; ++index) {
        ++(RequestFrameOrSound(*clip, index) == imNoErr ? served_ : failures_);
        std::this_thread::sleep_for(kRequestInterval);
      }
    });
  }

  // One request of the host thread: a frame when `index` is even, sound when it is odd.
  int32_t RequestFrameOrSound(host_sim::HostFile& clip, int32_t index) {
    const int32_t frame = index / 2 % kTrafficFrames;
    if (index % 2 == 0) {
      PPixHand handle = nullptr;
      const int32_t result =
          clip.RequestFrame(frame * clip.TicksPerFrame(), {0, 0, kPlanar}, &handle);
      if (handle != nullptr) session_->host().frames().Dispose(handle);
      return result;
    }
    std::vector<float> left(kSoundRun), right(kSoundRun);
    float* buffers[2] = {left.data(), right.data()};
    return clip.ReadAudio(frame * kSoundRun, kSoundRun, buffers);
  }

  SavedEnvironment saved_environment_{{"USERPROFILE", "HOMEDRIVE", "HOMEPATH"}, false};
  TempFolder profile_;
  TempFolder clip_folder_;
  std::unique_ptr<host_sim::PluginModule> plugin_;
  std::unique_ptr<host_sim::HostSession> session_;
  std::vector<std::unique_ptr<host_sim::HostFile>> clips_;

  std::atomic<bool> traffic_stopping_{false};
  std::atomic<int64_t> served_{0};
  std::atomic<int64_t> failures_{0};  // requests of the host thread that did not succeed
  std::thread traffic_;               // joined by ShutDownAndUnload
};

std::string Ping(const std::string& id) { return R"({"requestId":")" + id + R"(","type":"ping"})"; }

// The plug-in's answer to request `id` of `type`, `body` being its "data" or "err" member.
std::string Answer(const std::string& id, const std::string& type, const std::string& body) {
  return R"({"requestId":")" + id + R"(","type":")" + type + R"(",)" + body + "}";
}

std::string PingAnswer(const std::string& id) { return Answer(id, "ping", kSuccess); }

std::string MediaInfoAnswer(const std::string& id, const std::string& offset) {
  return Answer(
      id, "get_media_info",
      R"("data":{"duration":1.0,"bitrate":5000,"fps":30.0,"offset":")" + offset + R"("})");
}

std::string ClipWithOffset(const std::string& offset) {
  return R"({"width": 64, "height": 32, "frames": 30, "fps": 30, "bitrate": 5000, "offset": ")" +
         offset + R"("})";
}

TEST_F(LinkFaultTest, ServerClosingMidMessageLosesItAndIsServedAgainAfterReconnecting) {
  CommandServer server;
  ASSERT_NO_FATAL_FAILURE(StartLinkedTo(server));

  const std::string cut = Ping("cut").substr(0, 12);
  ASSERT_TRUE(server.SendRaw(cut));
  server.CloseConnection();
  ExpectHostServedMeanwhile();
  ASSERT_TRUE(server.WaitForConnection(2 * kLinkWait)) << "reconnects on a later pass";

  ASSERT_TRUE(server.Send(Ping("after")));
  EXPECT_EQ(server.WaitForResponse(kLinkWait), PingAnswer("after"));
  EXPECT_EQ(server.ResponsesSoFar().size(), 1u) << "nothing answered for the cut request";
  EXPECT_EQ(Logged(kInvalidJson), std::vector<std::string>{cut});
}

TEST_F(LinkFaultTest, ServerRestartedOnItsPortIsReconnectedWithoutReadingThePortFileAgain) {
  auto first = std::make_unique<CommandServer>();
  const uint16_t port = first->port();
  ASSERT_NO_FATAL_FAILURE(StartLinkedTo(*first));

  CommandServer elsewhere;
  ASSERT_TRUE(elsewhere.WritePortFile(home()));
  first.reset();
  CommandServer restarted(port);
  ExpectHostServedMeanwhile();
  ASSERT_TRUE(restarted.WaitForConnection(2 * kLinkWait));

  ASSERT_TRUE(restarted.Send(Ping("restarted")));
  EXPECT_EQ(restarted.WaitForResponse(kLinkWait), PingAnswer("restarted"));
  EXPECT_FALSE(elsewhere.WaitForConnection(0ms)) << "the port file was read again";
}

TEST_F(LinkFaultTest, SilentServerKeepsAnIdleLinkAndShutDownStaysBoundedWithReadsQueued) {
  RawPeer peer;
  ASSERT_NO_FATAL_FAILURE(StartLinkedTo(peer));
  peer.StartReading();

  // One more read is queued on every pass while the server says nothing.
  std::this_thread::sleep_for(10s);
  ExpectHostServedMeanwhile();
  EXPECT_FALSE(peer.WaitForEnd(0ms)) << "the idle link was dropped";

  ShutDownAndUnload();
  EXPECT_EQ(peer.WaitForEnd(kLinkWait), std::string())
      << "closed at shut-down, having sent nothing";
  EXPECT_EQ(Logged("read message error"), std::vector<std::string>{});
  EXPECT_EQ(Logged("Received message is empty!"), std::vector<std::string>{});
}

TEST_F(LinkFaultTest, ServerThatNeverReadsBacksUpResponsesButNeitherRequestsNorShutDown) {
  RawPeer peer(16 * 1024);
  // Sixteen answers of half a mebibyte each: more than the two sockets hold.
  const std::string offset(512 * 1024, 'o');
  ASSERT_NO_FATAL_FAILURE(StartLinkedTo(peer, ClipWithOffset(offset)));

  std::string requests;
  std::string answers;
  for (int i = 0; i < 16; ++i) {
    requests += command_server::MediaInfoRequest(std::to_string(i), clip_path_) + kDelimiter;
    answers += MediaInfoAnswer(std::to_string(i), offset) + kDelimiter;
  }
  peer.Send(requests);
  ASSERT_TRUE(WaitForLogged("Response: ", 16, kLinkWait));
  peer.Send(Ping("behind") + kDelimiter);
  EXPECT_TRUE(WaitForLogged("Received json: " + Ping("behind"), 1, kLinkWait))
      << "requests are still taken in while the answers wait";
  ExpectHostServedMeanwhile();

  ShutDownAndUnload();
  peer.StartReading();
  const std::optional<std::string> received = peer.WaitForEnd(kLinkWait);
  ASSERT_TRUE(received.has_value()) << "the connection outlived shut-down";
  ASSERT_LT(received->size(), answers.size()) << "the answers never backed up";
  EXPECT_TRUE(*received == answers.substr(0, received->size()))
      << "what left is not the answers' beginning, in order";
}

// How many receives the flood takes depends on how far the system lets the plug-in's receive
// buffer grow (from a few to over a hundred passes), so the test watches the first receives and
// shuts down while the rest is still coming in.
TEST_F(LinkFaultTest, TwentyMebibytesWithoutADelimiterAreLoggedReceiveByReceiveAndNotAnswered) {
  RawPeer peer;
  ASSERT_NO_FATAL_FAILURE(StartLinkedTo(peer));
  peer.StartReading();

  // A whole request, had the plug-in gathered the receives it comes in.
  const std::string head = R"({"requestId":"big","type":"ping","pad":")";
  const std::string tail = R"("})";
  const std::string message =
      head + std::string(20 * 1024 * 1024 - head.size() - tail.size(), 'x') + tail;
  peer.Send(message);
  ASSERT_TRUE(WaitForLogged(kInvalidJson, 3, 3 * kLinkWait));
  ExpectHostServedMeanwhile();
  EXPECT_FALSE(peer.WaitForEnd(0ms)) << "the link was dropped";

  ShutDownAndUnload();
  EXPECT_EQ(peer.WaitForEnd(kLinkWait), std::string()) << "nothing answered; closed at shut-down";
  std::string joined;
  for (const std::string& piece : Logged(kInvalidJson)) {
    EXPECT_LE(piece.size(), kReadSize);
    joined += piece;
  }
  EXPECT_TRUE(joined == message.substr(0, joined.size()))
      << "each receive is logged whole, once, in order";
  EXPECT_EQ(Logged("Received json: "), std::vector<std::string>{});
}

TEST_F(LinkFaultTest, ThousandsOfRequestsInOneWriteAreEachAnsweredInOrder) {
  CommandServer server;
  ASSERT_NO_FATAL_FAILURE(StartLinkedTo(server, ClipWithOffset("1.5,0,0")));

  // Written before the first read is queued and small enough to wait whole in the plug-in's
  // socket, so that one receive holds all of them and none is cut.
  std::string burst;
  std::vector<std::string> expected;
  for (int i = 0; i < 2000; ++i) {
    const std::string id = std::to_string(i);
    if (i % 100 == 0) {
      burst += command_server::MediaInfoRequest(id, clip_path_) + kDelimiter;
      expected.push_back(MediaInfoAnswer(id, "1.5,0,0"));
    } else {
      burst += R"({"requestId":")" + id + R"("})" + kDelimiter;
      expected.push_back(Answer(id, "", kSuccess));
    }
  }
  ASSERT_LT(burst.size(), 64u * 1024);
  ASSERT_TRUE(server.SendRaw(burst));
  ExpectHostServedMeanwhile();

  // The first answer leaves only once the whole receive is handled: 2,000 requests and their log
  // lines, which under Wine on a loaded machine take most of ten seconds.
  std::vector<std::string> answers;
  while (answers.size() < expected.size()) {
    const std::optional<std::string> answer =
        server.WaitForResponse(answers.empty() ? 6 * kLinkWait : kLinkWait);
    if (!answer) break;
    answers.push_back(*answer);
  }
  EXPECT_EQ(answers, expected);
  EXPECT_EQ(Logged(kInvalidJson), std::vector<std::string>{});
}

TEST_F(LinkFaultTest, InvalidUtf8InARequestsStringsIsTakenAsItStandsAndTheLinkGoesOn) {
  CommandServer server;
  ASSERT_NO_FATAL_FAILURE(StartLinkedTo(server));

  // Overlong, cut short, a surrogate, and bytes that never occur in UTF-8.
  const std::string bad = "\xC0\xAF|\xE2\x82|\xED\xA0\x80|\xFF\xFE";
  ASSERT_TRUE(server.SendRaw(command_server::MediaInfoRequest(bad, bad) + kDelimiter +
                             Ping("next") + kDelimiter));
  ExpectHostServedMeanwhile();

  EXPECT_EQ(server.WaitForResponse(kLinkWait),
            Answer(bad, "get_media_info", R"("err":{"msg":"invalid file path"})"));
  EXPECT_EQ(server.WaitForResponse(kLinkWait), PingAnswer("next"));
  EXPECT_EQ(Logged("Request File Path: "), std::vector<std::string>{bad});
  EXPECT_EQ(Logged(kInvalidJson), std::vector<std::string>{});
}

TEST_F(LinkFaultTest, RequestSplitAcrossTwoWritesIsLostAsTwoLoggedPiecesAndTheNextIsAnswered) {
  CommandServer server;
  ASSERT_NO_FATAL_FAILURE(StartLinkedTo(server));

  const std::string request = Ping("split");
  const std::string first = request.substr(0, 10);
  const std::string second = request.substr(10);
  ASSERT_TRUE(server.SendRaw(first));
  ASSERT_TRUE(WaitForLogged(kInvalidJson, 1, kLinkWait));
  ExpectHostServedMeanwhile();
  ASSERT_TRUE(server.SendRaw(second + kDelimiter));
  ASSERT_TRUE(WaitForLogged(kInvalidJson, 2, kLinkWait));

  ASSERT_TRUE(server.Send(Ping("whole")));
  EXPECT_EQ(server.WaitForResponse(kLinkWait), PingAnswer("whole"));
  EXPECT_EQ(server.ResponsesSoFar().size(), 1u);
  EXPECT_EQ(Logged(kInvalidJson), (std::vector<std::string>{first, second}));
}

}  // namespace
