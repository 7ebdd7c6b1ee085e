// One accepted plug-in connection: it hands every received chunk to its owner and writes queued
// byte strings in order, one at a time, as Asio's chat examples do.
#pragma once

#include <array>
#include <asio.hpp>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace command_server {

// Every member runs on the I/O thread. The pending operations hold a shared reference, so the
// object lives until they have finished even when its owner lets go of it.
class PeerConnection : public std::enable_shared_from_this<PeerConnection> {
 public:
  using BytesHandler = std::function<void(const char* data, std::size_t size)>;
  using ClosedHandler = std::function<void()>;
  using WriteDone = std::function<void(bool written)>;

  // `on_bytes` gets each received chunk as it comes. `on_peer_closed` runs once when the peer
  // ends the connection or a transfer fails; never after Close().
  PeerConnection(asio::ip::tcp::socket socket, BytesHandler on_bytes, ClosedHandler on_peer_closed);

  void StartReading();

  // Queues `bytes` behind the earlier writes; `done` runs once, with true when all of them went
  // to the socket.
  void Write(std::string bytes, WriteDone done);

  // Ends the connection; the queued writes report false. Harmless when already closed.
  void Close();

 private:
  void ReadSome();
  void OnRead(const std::error_code& error, std::size_t size);
  void WriteFront();
  void OnWritten(const std::error_code& error);
  void FailQueuedWrites();
  void EndByPeer();

  asio::ip::tcp::socket socket_;
  BytesHandler on_bytes_;
  ClosedHandler on_peer_closed_;
  std::array<char, 64 * 1024> read_buffer_;
  // The front entry is being written; the queue is empty exactly when no write is pending.
  std::deque<std::pair<std::string, WriteDone>> writes_;
  bool closed_ = false;
};

}  // namespace command_server
