// The built plug-in against command servers that misbehave: each fault has the link's answer to
// it, while a host thread goes on being served and shut-down stays bounded.
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "command_link_faults/link_fault_fixture.h"
#include "command_link_faults/raw_peer.h"
#include "command_server/command_server.h"
#include "command_server/requests.h"

namespace {

using namespace std::chrono_literals;
using command_server::CommandServer;

constexpr char kDelimiter[] = "###";
constexpr char kInvalidJson[] = "Invalid json format: ";
constexpr size_t kReadSize = 0xA00000;

std::string Ping(const std::string& id) { return R"({"requestId":")" + id + R"(","type":"ping"})"; }

std::string PingAnswer(const std::string& id) {
  return R"({"requestId":")" + id + R"(","type":"ping","data":{"msg":"success"}})";
}

std::string MediaInfoAnswer(const std::string& id, const std::string& offset) {
  return R"({"requestId":")" + id +
         R"(","type":"get_media_info","data":{"duration":1.0,"bitrate":5000,"fps":30.0,)"
         R"("offset":")" +
         offset + R"("}})";
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
  ShutDownAndUnload();
}

TEST_F(LinkFaultTest, ServerRestartedOnItsPortIsReconnectedWithoutReadingThePortFileAgain) {
  auto first = std::make_unique<CommandServer>();
  const uint16_t port = first->port();
  ASSERT_TRUE(first->WritePortFile(home()));
  StartPlugin();
  StartHostTraffic();
  ASSERT_TRUE(first->WaitForConnection(kLinkWait));

  CommandServer elsewhere;
  ASSERT_TRUE(elsewhere.WritePortFile(home()));
  first.reset();
  CommandServer restarted(port);
  ExpectHostServedMeanwhile();
  ASSERT_TRUE(restarted.WaitForConnection(2 * kLinkWait));

  ASSERT_TRUE(restarted.Send(Ping("restarted")));
  EXPECT_EQ(restarted.WaitForResponse(kLinkWait), PingAnswer("restarted"));
  EXPECT_FALSE(elsewhere.WaitForConnection(0ms)) << "the port file was read again";
  ShutDownAndUnload();
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
  ASSERT_TRUE(peer.WritePortFile(home()));
  StartPlugin();
  StartHostTraffic();
  // Sixteen answers of half a mebibyte each: more than the two sockets hold.
  const std::string offset(512 * 1024, 'o');
  const std::string path = PathOf(*OpenClip(ClipWithOffset(offset)));
  ASSERT_TRUE(peer.WaitForConnection(kLinkWait));

  std::string requests;
  std::string answers;
  for (int i = 0; i < 16; ++i) {
    requests += command_server::MediaInfoRequest(std::to_string(i), path) + kDelimiter;
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
  ASSERT_TRUE(server.WritePortFile(home()));
  StartPlugin();
  const std::string path = PathOf(*OpenClip(ClipWithOffset("1.5,0,0")));
  StartHostTraffic();
  ASSERT_TRUE(server.WaitForConnection(kLinkWait));

  // Written before the first read is queued and small enough to wait whole in the plug-in's
  // socket, so that one receive holds all of them and none is cut.
  std::string burst;
  std::vector<std::string> expected;
  for (int i = 0; i < 2000; ++i) {
    const std::string id = std::to_string(i);
    if (i % 100 == 0) {
      burst += command_server::MediaInfoRequest(id, path) + kDelimiter;
      expected.push_back(MediaInfoAnswer(id, "1.5,0,0"));
    } else {
      burst += R"({"requestId":")" + id + R"("})" + kDelimiter;
      expected.push_back(R"({"requestId":")" + id + R"(","type":"","data":{"msg":"success"}})");
    }
  }
  ASSERT_LT(burst.size(), 64u * 1024);
  ASSERT_TRUE(server.SendRaw(burst));
  ExpectHostServedMeanwhile();

  std::vector<std::string> answers;
  while (answers.size() < expected.size()) {
    const std::optional<std::string> answer = server.WaitForResponse(kLinkWait);
    if (!answer) break;
    answers.push_back(*answer);
  }
  EXPECT_EQ(answers, expected);
  EXPECT_EQ(Logged(kInvalidJson), std::vector<std::string>{});
  ShutDownAndUnload();
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
            R"({"requestId":")" + bad +
                R"(","type":"get_media_info","err":{"msg":"invalid file path"}})");
  EXPECT_EQ(server.WaitForResponse(kLinkWait), PingAnswer("next"));
  EXPECT_EQ(Logged("Request File Path: "), std::vector<std::string>{bad});
  EXPECT_EQ(Logged(kInvalidJson), std::vector<std::string>{});
  ShutDownAndUnload();
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
  ShutDownAndUnload();
}

}  // namespace
