#include "command_link/tcp_client.h"

#include <gtest/gtest.h>

#include <asio.hpp>
#include <chrono>
#include <condition_variable>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "command_link/tcp_io_service.h"
#include "command_server/command_server.h"
#include "platform/sockets.h"

namespace {

using asio::ip::tcp;
using command_link::IoWorkerRunning;
using command_link::TcpClient;
using command_link::TcpError;
using command_server::CommandServer;
using Clock = std::chrono::steady_clock;
using Texts = std::vector<std::string>;

// How long a test waits for something that should happen at once, before it fails instead of
// hanging.
constexpr std::chrono::seconds kPatience{5};

const char kLoopback[] = "127.0.0.1";

tcp::endpoint AnyLoopbackPort() { return {asio::ip::address_v4::loopback(), 0}; }

// A listening socket whose accept queue is full, and that nobody accepts on. The system drops
// further connection attempts without answering them (Linux, and Wine on top of it), so a
// connect to it neither succeeds nor is refused: only its time-out ends it. The queue is filled
// by connecting until one attempt stays unanswered; how many it holds is the system's business.
class FullListener {
 public:
  FullListener() : acceptor_(io_, tcp::v4()) {
    acceptor_.bind(AnyLoopbackPort());
    acceptor_.listen(0);
    for (int attempt = 0; attempt < 8 && answered_; ++attempt) {
      fillers_.emplace_back(io_);  // a list, as a pending connect needs its socket to stay put
      answered_ = false;
      fillers_.back().async_connect(acceptor_.local_endpoint(),
                                    [this](const std::error_code&) { answered_ = true; });
      io_.restart();
      io_.run_for(std::chrono::milliseconds(250));
    }
  }

  uint32_t port() const { return acceptor_.local_endpoint().port(); }

  // True while the attempt that found the queue full is still unanswered; false when filling
  // failed because every attempt was answered.
  bool StillFull() {
    io_.restart();
    io_.poll();
    return !answered_;
  }

 private:
  asio::io_context io_;
  tcp::acceptor acceptor_;
  std::list<tcp::socket> fillers_;
  bool answered_ = true;
};

struct Received {
  bool success;
  std::string bytes;
  size_t capacity;
};

// Records read results as the I/O thread delivers them. Outlives the clients whose callbacks
// point at it.
class ReadLog {
 public:
  TcpClient::ReadRequest Request(uint32_t size) {
    return {size, [this](TcpClient::ReadResult& result) { Add(result); }};
  }

  // False when fewer than `count` reads were answered within patience.
  bool WaitFor(size_t count) {
    std::unique_lock<std::mutex> lock(mutex_);
    return answered_.wait_for(lock, kPatience, [&] { return received_.size() >= count; });
  }

  std::vector<Received> received() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return received_;
  }

  Texts texts() const {
    Texts texts;
    for (const Received& read : received()) texts.push_back(read.success ? read.bytes : "FAILED");
    return texts;
  }

  void Add(const TcpClient::ReadResult& result) {
    std::lock_guard<std::mutex> lock(mutex_);
    received_.push_back({result.success, std::string(result.buffer.begin(), result.buffer.end()),
                         result.buffer.capacity()});
    answered_.notify_all();
  }

 private:
  mutable std::mutex mutex_;
  std::condition_variable answered_;
  std::vector<Received> received_;  // guarded by mutex_
};

class TcpClientTest : public ::testing::Test {
 protected:
  // Connects the client and waits until the server has taken the connection.
  void Connect() {
    client_->connect(kLoopback, server_.port(), 2000);
    ASSERT_TRUE(client_->is_connected());
    ASSERT_TRUE(server_.WaitForConnection(kPatience));
  }

  // What the client throws on connecting to `port`; the connect must fail.
  std::string ConnectFailure(uint32_t port, uint32_t timeout_ms = 2000) {
    std::string what = "connected";
    try {
      client_->connect(kLoopback, port, timeout_ms);
    } catch (const TcpError& error) {
      what = error.what();
    }
    EXPECT_FALSE(client_->is_connected());
    return what;
  }

  void Read(uint32_t size, int times = 1) {
    for (int i = 0; i < times; ++i) client_->async_read(log_.Request(size));
  }

  // Held for the server's sockets: a test that ran before may have stopped the sockets layer for
  // the whole process, as the plug-in's shut-down does even after a failed start.
  platform::ScopedSockets sockets_layer_;
  CommandServer server_;
  ReadLog log_;
  std::unique_ptr<TcpClient> client_ = std::make_unique<TcpClient>();
};

TEST_F(TcpClientTest, ThrowsForARefusedConnectionANonTcpPortASecondConnectAndAReadOfNothing) {
  // A port that is bound but not listening: the system refuses at once.
  asio::io_context io;
  tcp::acceptor bound_only(io, tcp::v4());
  bound_only.bind(AnyLoopbackPort());
  const std::string refused = ConnectFailure(bound_only.local_endpoint().port());
  EXPECT_NE(refused, "connected");
  EXPECT_EQ(refused.find("timed out"), std::string::npos) << refused;
  EXPECT_EQ(ConnectFailure(65536), "not a TCP port: 65536");
  Connect();
  EXPECT_THROW(client_->connect(kLoopback, server_.port(), 2000), TcpError);
  EXPECT_THROW(Read(0), TcpError);
}

TEST_F(TcpClientTest, ThrowsWhenTheServerDoesNotAnswerWithinTheTimeOut) {
  FullListener listener;
  ASSERT_TRUE(listener.StillFull());
  constexpr uint32_t kTimeoutMs = 100;
  const Clock::time_point start = Clock::now();
  const std::string failure = ConnectFailure(listener.port(), kTimeoutMs);
  EXPECT_NE(failure.find("timed out"), std::string::npos) << failure;
  EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(kTimeoutMs));
  EXPECT_TRUE(listener.StillFull());
}

TEST_F(TcpClientTest, ServesQueuedReadsInOrderOneReceiveEachAtMostTheirSize) {
  Connect();
  Read(4);
  Read(64);
  Read(0xA00000);
  server_.SendRaw("0123456789");
  ASSERT_TRUE(log_.WaitFor(2));
  server_.SendRaw("abc");
  ASSERT_TRUE(log_.WaitFor(3));
  EXPECT_EQ(log_.texts(), Texts({"0123", "456789", "abc"}));
  EXPECT_LT(log_.received()[2].capacity, 4096u) << "a buffer of the bytes that arrived";
}

TEST_F(TcpClientTest, PeerCloseDeliversWhatArrivedFailsTheRestAndDropsTheConnection) {
  Connect();
  Read(64, 3);
  server_.SendRaw(R"({"requestId":"17","ty)");
  server_.CloseConnection();
  ASSERT_TRUE(log_.WaitFor(3));
  EXPECT_EQ(log_.texts(), Texts({R"({"requestId":"17","ty)", "FAILED", "FAILED"}));
  EXPECT_FALSE(client_->is_connected());
  EXPECT_THROW(Read(64), TcpError);
}

TEST_F(TcpClientTest, WritesArriveWholeAndInOrder) {
  Connect();
  std::mutex mutex;
  std::vector<std::pair<size_t, TcpClient::WriteResult>> answers;  // guarded by mutex
  Texts texts;
  for (size_t index = 0; index < 40; ++index) {
    // Every tenth message is large enough to need several sends.
    const size_t length = index % 10 == 0 ? 300000 : 7;
    texts.push_back(std::to_string(index) +
                    std::string(length, static_cast<char>('a' + index % 26)));
    const std::string framed = texts.back() + "###";
    client_->async_write({std::vector<char>(framed.begin(), framed.end()),
                          [&mutex, &answers, index](TcpClient::WriteResult& result) {
                            std::lock_guard<std::mutex> lock(mutex);
                            answers.push_back({index, result});
                          }});
  }
  for (const std::string& text : texts) EXPECT_EQ(server_.WaitForResponse(kPatience), text);
  client_->disconnect(true);
  ASSERT_EQ(answers.size(), texts.size());
  for (size_t index = 0; index < texts.size(); ++index) {
    EXPECT_EQ(answers[index].first, index);
    EXPECT_TRUE(answers[index].second.success);
    EXPECT_EQ(answers[index].second.size, texts[index].size() + 3);
  }
}

TEST_F(TcpClientTest, DisconnectFailsPendingReadsAndClosesTheSocketAndIsHarmlessAnyTime) {
  Connect();
  Read(64, 3);
  client_->disconnect(true);
  EXPECT_EQ(log_.texts(), Texts({"FAILED", "FAILED", "FAILED"}));
  EXPECT_FALSE(client_->is_connected());
  EXPECT_TRUE(server_.WaitForDisconnection(kPatience));
  EXPECT_THROW(Read(64), TcpError);
  client_->disconnect(true);
}

TEST_F(TcpClientTest, DestroyingRightAfterDisconnectLeavesQueuedCallbacksSafe) {
  // Keeps the worker running, so that the callbacks run after their client is gone.
  const TcpClient another_client;
  Connect();
  Read(64, 3);
  client_->disconnect(false);
  client_.reset();
  ASSERT_TRUE(log_.WaitFor(3));
  EXPECT_EQ(log_.texts(), Texts({"FAILED", "FAILED", "FAILED"}));
  EXPECT_TRUE(server_.WaitForDisconnection(kPatience));
}

TEST_F(TcpClientTest, TheIoWorkerRunsWhileAnyClientExistsAndEndsWithTheLast) {
  auto second = std::make_unique<TcpClient>();
  client_.reset();
  EXPECT_TRUE(IoWorkerRunning());
  second.reset();
  EXPECT_FALSE(IoWorkerRunning());

  client_ = std::make_unique<TcpClient>();
  Connect();
  Read(64);
  client_.reset();
  EXPECT_FALSE(IoWorkerRunning()) << "the last client was destroyed while connected";
  EXPECT_EQ(log_.texts(), Texts({"FAILED"}));
}

TEST_F(TcpClientTest, ACallbackMayDisconnectWithoutWaitingForItselfAndDestroyTheLastClient) {
  Connect();
  client_->async_read({64, [this](TcpClient::ReadResult& result) {
                         log_.Add(result);
                         client_->disconnect(true);
                         client_.reset();
                       }});
  Read(64);
  server_.SendRaw("last words");
  ASSERT_TRUE(log_.WaitFor(2));
  // The worker was detached by the callback's destructor, so nothing reports its end.
  const Clock::time_point give_up = Clock::now() + kPatience;
  while (IoWorkerRunning() && Clock::now() < give_up) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  EXPECT_FALSE(IoWorkerRunning());
  EXPECT_EQ(log_.texts(), Texts({"last words", "FAILED"}));
}

}  // namespace
