// A command server that misbehaves where CommandServer cannot: it writes long messages without
// waiting for them to leave, and reads nothing until told to, so that the plug-in's responses
// back up in the sockets. It listens on 127.0.0.1 and keeps the first connection it accepts.
//
// Thread-safe. The socket work runs on an I/O thread that the peer starts on construction and
// joins in its destructor, which also closes the connection.
#pragma once

#include <asio.hpp>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/sockets.h"

class RawPeer {
 public:
  // Listens on a free port. A positive `receive_buffer_bytes` fixes the accepted connection's
  // receive buffer, so that little of what the plug-in writes fits in it while the peer does not
  // read. Throws std::system_error when no port can be had.
  explicit RawPeer(int receive_buffer_bytes = 0);
  ~RawPeer();
  RawPeer(const RawPeer&) = delete;
  RawPeer& operator=(const RawPeer&) = delete;

  // Writes this peer's port into the port file under `home`; false when it cannot be written.
  bool WritePortFile(const std::string& home) const;

  // True once the plug-in has connected, within `timeout`.
  bool WaitForConnection(std::chrono::milliseconds timeout);

  // Queues `bytes` behind the earlier ones and returns at once. REQUIRES: connected.
  void Send(std::string bytes);

  // Begins reading the connection; until then nothing is read. REQUIRES: connected.
  void StartReading();

  // Every byte read, once the plug-in has ended the connection, within `timeout`; empty when it
  // did not end it in time.
  std::optional<std::string> WaitForEnd(std::chrono::milliseconds timeout);

 private:
  void WriteFront();
  void ReadSome();

  // Held while the peer lives: in a process with the plug-in's code, Asio leaves it to its users.
  platform::ScopedSockets sockets_;
  asio::io_context io_;
  asio::executor_work_guard<asio::io_context::executor_type> work_;
  asio::ip::tcp::acceptor acceptor_;
  asio::ip::tcp::socket socket_;    // I/O thread only
  std::vector<char> read_buffer_;   // I/O thread only
  std::deque<std::string> writes_;  // I/O thread only; the front one is being written
  uint16_t port_ = 0;

  std::mutex mutex_;
  std::condition_variable changed_;  // notified on every change of the fields below
  bool connected_ = false;           // guarded by mutex_
  bool ended_ = false;               // guarded by mutex_; the plug-in closed or a receive failed
  std::string received_;             // guarded by mutex_

  std::thread io_thread_;  // last: it runs on everything above
};
