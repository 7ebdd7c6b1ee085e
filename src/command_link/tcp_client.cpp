#include "command_link/tcp_client.h"

#include <chrono>
#include <future>
#include <string>
#include <utility>

#include "command_link/tcp_connection.h"
#include "command_link/tcp_io_service.h"

namespace command_link {

namespace {

asio::ip::tcp::endpoint EndpointOf(const std::string& host, uint32_t port) {
  std::error_code error;
  const asio::ip::address address = asio::ip::make_address(host, error);
  if (error) throw TcpError("not an IP address: " + host);
  if (port > 0xFFFF) throw TcpError("not a TCP port: " + std::to_string(port));
  return {address, static_cast<unsigned short>(port)};
}

}  // namespace

TcpClient::TcpClient() : service_(TcpIoService::AddClient()) {}

TcpClient::~TcpClient() {
  disconnect(false);
  TcpIoService::RemoveClient(std::move(service_));
}

void TcpClient::connect(const std::string& host, uint32_t port, uint32_t timeout_ms) {
  if (service_->OnWorkerThread()) throw TcpError("connect cannot wait on the I/O thread");
  if (is_connected()) throw TcpError("already connected");
  const asio::ip::tcp::endpoint endpoint = EndpointOf(host, port);
  std::shared_ptr<TcpConnection> connection = TcpConnection::Create(service_);
  const std::string failure =
      connection->Connect(endpoint, std::chrono::milliseconds(timeout_ms)).get();
  if (!failure.empty()) throw TcpError(failure);
  std::lock_guard<std::mutex> lock(connection_mutex_);
  connection_ = std::move(connection);
}

bool TcpClient::is_connected() const {
  std::shared_ptr<TcpConnection> connection = Connection();
  return connection && connection->connected();
}

void TcpClient::async_read(ReadRequest request) {
  if (request.size == 0) throw TcpError("a read of 0 bytes");
  ConnectedOrThrow()->Read(std::move(request));
}

void TcpClient::async_write(WriteRequest request) { ConnectedOrThrow()->Write(std::move(request)); }

void TcpClient::disconnect(bool wait_for_removal) {
  std::shared_ptr<TcpConnection> connection;
  {
    std::lock_guard<std::mutex> lock(connection_mutex_);
    connection = std::move(connection_);
  }
  if (!connection) return;
  const std::shared_future<void> removed = connection->removed();
  connection->Close();
  connection.reset();
  if (wait_for_removal && !service_->OnWorkerThread()) removed.wait();
}

std::shared_ptr<TcpConnection> TcpClient::Connection() const {
  std::lock_guard<std::mutex> lock(connection_mutex_);
  return connection_;
}

std::shared_ptr<TcpConnection> TcpClient::ConnectedOrThrow() const {
  std::shared_ptr<TcpConnection> connection = Connection();
  if (!connection || !connection->connected()) throw TcpError("not connected");
  return connection;
}

}  // namespace command_link
