// A stand-in of the maker's command server for tests and the qvo-command-server command. It
// listens on 127.0.0.1, keeps one plug-in connection at a time (a new one replaces the old),
// sends requests framed with "###" and collects the plug-in's "###"-framed responses.
//
// All members are thread-safe unless stated otherwise. The socket work runs on an I/O thread
// that the server starts on construction and joins in Stop or the destructor.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "command_server/server_state.h"

namespace command_server {

class ServerIo;

class CommandServer {
 public:
  // Listens on 127.0.0.1:`port`, or on any free port when `port` is 0, and starts the I/O
  // thread. Throws std::system_error when the port cannot be had.
  explicit CommandServer(uint16_t port = 0);
  // Stops the server first.
  ~CommandServer();
  CommandServer(const CommandServer&) = delete;
  CommandServer& operator=(const CommandServer&) = delete;

  // The port listened on.
  uint16_t port() const;

  // Writes this server's port into the port file under `home`, as the maker's application does
  // (see port_file.h); false when it cannot be written.
  bool WritePortFile(const std::string& home) const;

  // True when a plug-in is connected, at once or within `timeout`; false once stopped.
  bool WaitForConnection(std::chrono::milliseconds timeout);
  // True when no plug-in is connected, at once or within `timeout`.
  bool WaitForDisconnection(std::chrono::milliseconds timeout);

  // Sends `json_text` followed by "###". Blocks until the bytes are written (a plug-in that stops
  // reading holds it until CloseConnection or Stop); false when no plug-in is connected, the
  // write failed or the server has stopped.
  bool Send(const std::string& json_text);
  // Sends `bytes` exactly as given, for framing that a well-behaved server would never send.
  bool SendRaw(const std::string& bytes);

  // The oldest response not yet taken by this call, without its "###"; empty when none comes
  // within `timeout`. Responses are kept across connections; an unfinished one is dropped when
  // its connection ends.
  std::optional<std::string> WaitForResponse(std::chrono::milliseconds timeout);
  // Every response received so far, taken or not, in order of arrival.
  std::vector<std::string> ResponsesSoFar() const;

  // Closes the plug-in's connection, if any, and returns once it is closed; the server goes on
  // listening for the plug-in to reconnect.
  void CloseConnection();

  // Closes the listening socket and the connection and joins the I/O thread. Call it from the
  // owning thread only, never concurrently with itself or the destructor; later calls do nothing.
  void Stop();

 private:
  using Done = std::function<void(bool)>;

  // Runs `work` on the I/O thread and waits until it calls its `Done`; false at once when the
  // server is stopping.
  bool OnIoThread(std::function<void(Done)> work);

  ServerState state_;
  std::unique_ptr<ServerIo> io_;
  std::mutex stop_mutex_;
  // Guarded by stop_mutex_. Work is posted under the mutex, so nothing is posted after the
  // shut-down work and every posted piece runs before the I/O thread ends.
  bool stopping_ = false;
  std::thread io_thread_;
};

}  // namespace command_server
