// What the command server has seen, shared between its I/O thread, which records events, and the
// threads that wait for them.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace command_server {

// Thread-safe.
class ServerState {
 public:
  // Called on the I/O thread.
  void Connected();
  void Disconnected();
  void AddResponses(std::vector<std::string> responses);

  // Called by the server's owner once the I/O thread has ended: from then on, waits for a
  // connection or a response end at once.
  void Stopped();

  // True when a plug-in is connected, at once or within `timeout`.
  bool WaitForConnection(std::chrono::milliseconds timeout);
  // True when no plug-in is connected, at once or within `timeout`.
  bool WaitForDisconnection(std::chrono::milliseconds timeout);

  // The oldest response not yet taken by this call; empty when none comes within `timeout`.
  std::optional<std::string> WaitForResponse(std::chrono::milliseconds timeout);
  // Every response received, taken or not, in order of arrival.
  std::vector<std::string> ResponsesSoFar() const;

 private:
  mutable std::mutex mutex_;
  std::condition_variable changed_;     // notified on every change of the fields below
  bool connected_ = false;              // guarded by mutex_
  bool stopped_ = false;                // guarded by mutex_
  std::vector<std::string> responses_;  // guarded by mutex_
  std::size_t next_response_ = 0;       // guarded by mutex_; index into responses_
};

}  // namespace command_server
