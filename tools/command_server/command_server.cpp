#include "command_server/command_server.h"

#include <future>
#include <utility>

#include "command_server/message_splitter.h"
#include "command_server/port_file.h"
#include "command_server/server_io.h"

namespace command_server {

CommandServer::CommandServer(uint16_t port)
    : io_(std::make_unique<ServerIo>(port, state_)), io_thread_([this] { io_->Run(); }) {}

CommandServer::~CommandServer() { Stop(); }

uint16_t CommandServer::port() const { return io_->port(); }

bool CommandServer::WritePortFile(const std::string& home) const {
  return command_server::WritePortFile(home, port());
}

bool CommandServer::WaitForConnection(std::chrono::milliseconds timeout) {
  return state_.WaitForConnection(timeout);
}

bool CommandServer::WaitForDisconnection(std::chrono::milliseconds timeout) {
  return state_.WaitForDisconnection(timeout);
}

bool CommandServer::Send(const std::string& json_text) {
  return SendRaw(json_text + kMessageDelimiter);
}

bool CommandServer::SendRaw(const std::string& bytes) {
  return OnIoThread([this, bytes](Done done) { io_->Write(bytes, std::move(done)); });
}

std::optional<std::string> CommandServer::WaitForResponse(std::chrono::milliseconds timeout) {
  return state_.WaitForResponse(timeout);
}

std::vector<std::string> CommandServer::ResponsesSoFar() const { return state_.ResponsesSoFar(); }

void CommandServer::CloseConnection() {
  OnIoThread([this](Done done) {
    io_->CloseConnection();
    done(true);
  });
}

void CommandServer::Stop() {
  {
    std::lock_guard<std::mutex> lock(stop_mutex_);
    if (!stopping_) io_->Post([this] { io_->Shutdown(); });
    stopping_ = true;
  }
  if (io_thread_.joinable()) io_thread_.join();
  state_.Stopped();
}

bool CommandServer::OnIoThread(std::function<void(Done)> work) {
  auto finished = std::make_shared<std::promise<bool>>();
  std::future<bool> result = finished->get_future();
  {
    std::lock_guard<std::mutex> lock(stop_mutex_);
    if (stopping_) return false;
    io_->Post([work = std::move(work), finished] {
      work([finished](bool succeeded) { finished->set_value(succeeded); });
    });
  }
  return result.get();
}

}  // namespace command_server
