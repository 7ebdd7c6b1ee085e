// The socket side of the command server: the listening socket on 127.0.0.1, the one plug-in
// connection and the cutting of its byte stream into responses.
#pragma once

#include <asio.hpp>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "command_server/message_splitter.h"
#include "command_server/peer_connection.h"
#include "command_server/server_state.h"
#include "platform/sockets.h"

namespace command_server {

class ServerIo {
 public:
  // Listens on 127.0.0.1:`port` (0: any free port) and starts accepting; throws std::system_error
  // when the port cannot be had. `state` must outlive this object and hears of every event.
  ServerIo(uint16_t port, ServerState& state);
  ServerIo(const ServerIo&) = delete;
  ServerIo& operator=(const ServerIo&) = delete;

  // Any thread.
  uint16_t port() const { return port_; }

  // The body of the I/O thread; returns once Shutdown has run and every pending operation has
  // finished.
  void Run();

  // Any thread: `work` runs on the I/O thread, after everything posted before it.
  void Post(std::function<void()> work);

  // On the I/O thread only. Without a connection `done` gets false at once.
  void Write(std::string bytes, PeerConnection::WriteDone done);
  void CloseConnection();
  void Shutdown();

 private:
  void Accept();
  void Adopt(asio::ip::tcp::socket socket);
  void OnBytes(const char* data, std::size_t size);
  void OnPeerClosed();

  // Held while the server lives: in a process with the plug-in's code, Asio leaves it to its users.
  platform::ScopedSockets sockets_;
  asio::io_context io_;
  asio::ip::tcp::acceptor acceptor_;
  const uint16_t port_;
  ServerState& state_;
  // The current plug-in connection, or empty; I/O thread only.
  std::shared_ptr<PeerConnection> connection_;
  // The current connection's stream; I/O thread only. A new connection starts a new one.
  MessageSplitter splitter_;
};

}  // namespace command_server
