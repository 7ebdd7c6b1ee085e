#include "command_server/peer_connection.h"

namespace command_server {

PeerConnection::PeerConnection(asio::ip::tcp::socket socket, BytesHandler on_bytes,
                               ClosedHandler on_peer_closed)
    : socket_(std::move(socket)),
      on_bytes_(std::move(on_bytes)),
      on_peer_closed_(std::move(on_peer_closed)) {}

void PeerConnection::StartReading() { ReadSome(); }

void PeerConnection::ReadSome() {
  auto self = shared_from_this();
  socket_.async_read_some(
      asio::buffer(read_buffer_),
      [self](const std::error_code& error, std::size_t size) { self->OnRead(error, size); });
}

void PeerConnection::OnRead(const std::error_code& error, std::size_t size) {
  if (closed_) return;
  if (size > 0) on_bytes_(read_buffer_.data(), size);
  if (error) {
    EndByPeer();
    return;
  }
  ReadSome();
}

void PeerConnection::Write(std::string bytes, WriteDone done) {
  if (closed_) {
    done(false);
    return;
  }
  writes_.emplace_back(std::move(bytes), std::move(done));
  if (writes_.size() == 1) WriteFront();
}

void PeerConnection::WriteFront() {
  auto self = shared_from_this();
  asio::async_write(socket_, asio::buffer(writes_.front().first),
                    [self](const std::error_code& error, std::size_t) { self->OnWritten(error); });
}

void PeerConnection::OnWritten(const std::error_code& error) {
  WriteDone done = std::move(writes_.front().second);
  writes_.pop_front();
  done(!error);
  if (error || closed_) {
    FailQueuedWrites();
    if (!closed_) EndByPeer();
    return;
  }
  if (!writes_.empty()) WriteFront();
}

void PeerConnection::FailQueuedWrites() {
  while (!writes_.empty()) {
    WriteDone done = std::move(writes_.front().second);
    writes_.pop_front();
    done(false);
  }
}

void PeerConnection::EndByPeer() {
  Close();
  on_peer_closed_();
}

void PeerConnection::Close() {
  if (closed_) return;
  closed_ = true;
  std::error_code ignored;
  socket_.shutdown(asio::ip::tcp::socket::shutdown_both, ignored);
  socket_.close(ignored);
}

}  // namespace command_server
