#include "command_server/server_io.h"

#include <utility>

namespace command_server {

namespace {

// Address reuse stays on (Asio's default), so that a new server can take over the port of one
// that has just stopped while its old connection lingers in TIME_WAIT: the plug-in never reads
// the port file again after its first success, so a restarted server must keep the port.
asio::ip::tcp::endpoint LoopbackEndpoint(uint16_t port) {
  return asio::ip::tcp::endpoint(asio::ip::address_v4::loopback(), port);
}

}  // namespace

ServerIo::ServerIo(uint16_t port, ServerState& state)
    : acceptor_(io_, LoopbackEndpoint(port)),
      port_(acceptor_.local_endpoint().port()),
      state_(state) {
  // Started before the I/O thread runs, as nothing else touches the acceptor yet.
  Accept();
}

void ServerIo::Run() { io_.run(); }

void ServerIo::Post(std::function<void()> work) { asio::post(io_, std::move(work)); }

void ServerIo::Accept() {
  acceptor_.async_accept([this](const std::error_code& error, asio::ip::tcp::socket socket) {
    if (!acceptor_.is_open()) return;
    if (!error) Adopt(std::move(socket));
    Accept();
  });
}

void ServerIo::Adopt(asio::ip::tcp::socket socket) {
  if (connection_) connection_->Close();
  splitter_ = MessageSplitter();
  connection_ = std::make_shared<PeerConnection>(
      std::move(socket), [this](const char* data, std::size_t size) { OnBytes(data, size); },
      [this] { OnPeerClosed(); });
  state_.Connected();
  connection_->StartReading();
}

void ServerIo::OnBytes(const char* data, std::size_t size) {
  state_.AddResponses(splitter_.Append(data, size));
}

void ServerIo::OnPeerClosed() {
  connection_.reset();
  state_.Disconnected();
}

void ServerIo::Write(std::string bytes, PeerConnection::WriteDone done) {
  if (!connection_) {
    done(false);
    return;
  }
  connection_->Write(std::move(bytes), std::move(done));
}

void ServerIo::CloseConnection() {
  if (connection_) connection_->Close();
  connection_.reset();
  state_.Disconnected();
}

void ServerIo::Shutdown() {
  std::error_code ignored;
  acceptor_.close(ignored);
  CloseConnection();
}

}  // namespace command_server
