// The socket of one connection attempt with its queues of reads and writes, as TcpClient uses
// it. The public members may be called from any thread: they post their work to the I/O thread,
// where everything else of the class runs. Every pending operation holds the connection through
// a shared_ptr, so the socket outlives a client that lets go of it.
#pragma once

#include <asio.hpp>
#include <atomic>
#include <chrono>
#include <deque>
#include <future>
#include <memory>
#include <string>
#include <vector>

#include "command_link/tcp_client.h"
#include "command_link/tcp_io_service.h"

namespace command_link {

class TcpConnection : public std::enable_shared_from_this<TcpConnection> {
 public:
  // A closed connection on `service`; removed() becomes ready when it is destroyed.
  static std::shared_ptr<TcpConnection> Create(std::shared_ptr<TcpIoService> service);

  TcpConnection(const TcpConnection&) = delete;
  TcpConnection& operator=(const TcpConnection&) = delete;

  // Starts connecting to `endpoint`. The future holds an empty text once connected, or the
  // failure's text once refused or once `timeout` has passed, upon which a timer closes the
  // socket. The caller throws: an exception handed between threads would be freed on whichever
  // thread lets go of it last.
  std::future<std::string> Connect(const asio::ip::tcp::endpoint& endpoint,
                                   std::chrono::milliseconds timeout);

  // Queue a request behind the earlier ones of its kind; answered with failure when the
  // connection is closed by the time the I/O thread takes it.
  void Read(TcpClient::ReadRequest request);
  void Write(TcpClient::WriteRequest request);

  // Closes the socket and answers the queued requests with failure. Harmless when closed.
  void Close();

  // Connected and not dropped since.
  bool connected() const { return connected_; }

  // Ready once the connection is destroyed: its socket is closed and no handler holds it.
  std::shared_future<void> removed() const { return removed_; }

 private:
  explicit TcpConnection(std::shared_ptr<TcpIoService> service);

  // Everything below runs on the I/O thread.
  void StartConnect(const asio::ip::tcp::endpoint& endpoint, std::chrono::milliseconds timeout);
  void OnConnectTimeout();
  void OnConnectDone(const asio::ip::tcp::endpoint& endpoint, const std::error_code& error);
  void QueueRead(TcpClient::ReadRequest request);
  void AwaitData();
  void OnReadable(const std::error_code& error);
  std::vector<char> ReceiveAvailable(uint32_t limit, std::error_code& error);
  void QueueWrite(TcpClient::WriteRequest request);
  void WriteQueued();
  void OnWritten(const std::error_code& error, size_t size);
  void Drop();
  void FailQueuedRequests();

  // Declared first so that the io_context outlives the socket and the timer.
  const std::shared_ptr<TcpIoService> service_;
  asio::ip::tcp::socket socket_;
  asio::steady_timer connect_timer_;
  std::shared_future<void> removed_;  // set by Create, read from any thread afterwards

  std::atomic<bool> connected_{false};  // written on the I/O thread, read from any thread
  std::promise<std::string> connect_done_;
  bool connect_finished_ = false;
  bool connect_timed_out_ = false;
  bool awaiting_data_ = false;
  std::deque<TcpClient::ReadRequest> reads_;
  // The front `writing_` entries are being written, in one gathered write, so that a burst of
  // responses leaves in few sends; the rest wait for it. writing_ is 0 exactly when the queue is
  // empty.
  std::deque<TcpClient::WriteRequest> writes_;
  size_t writing_ = 0;
};

}  // namespace command_link
