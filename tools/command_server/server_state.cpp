#include "command_server/server_state.h"

#include <iterator>
#include <utility>

namespace command_server {

void ServerState::Connected() {
  std::lock_guard<std::mutex> lock(mutex_);
  connected_ = true;
  changed_.notify_all();
}

void ServerState::Disconnected() {
  std::lock_guard<std::mutex> lock(mutex_);
  connected_ = false;
  changed_.notify_all();
}

void ServerState::AddResponses(std::vector<std::string> responses) {
  if (responses.empty()) return;
  std::lock_guard<std::mutex> lock(mutex_);
  responses_.insert(responses_.end(), std::make_move_iterator(responses.begin()),
                    std::make_move_iterator(responses.end()));
  changed_.notify_all();
}

void ServerState::Stopped() {
  std::lock_guard<std::mutex> lock(mutex_);
  connected_ = false;
  stopped_ = true;
  changed_.notify_all();
}

bool ServerState::WaitForConnection(std::chrono::milliseconds timeout) {
  std::unique_lock<std::mutex> lock(mutex_);
  changed_.wait_for(lock, timeout, [this] { return connected_ || stopped_; });
  return connected_;
}

bool ServerState::WaitForDisconnection(std::chrono::milliseconds timeout) {
  std::unique_lock<std::mutex> lock(mutex_);
  return changed_.wait_for(lock, timeout, [this] { return !connected_; });
}

std::optional<std::string> ServerState::WaitForResponse(std::chrono::milliseconds timeout) {
  std::unique_lock<std::mutex> lock(mutex_);
  changed_.wait_for(lock, timeout,
                    [this] { return next_response_ < responses_.size() || stopped_; });
  if (next_response_ == responses_.size()) return std::nullopt;
  return responses_[next_response_++];
}

std::vector<std::string> ServerState::ResponsesSoFar() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return responses_;
}

}  // namespace command_server
