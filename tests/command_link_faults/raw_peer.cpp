#include "command_link_faults/raw_peer.h"

#include <utility>

#include "command_server/port_file.h"

namespace {

constexpr size_t kReadChunk = 64 * 1024;

}  // namespace

RawPeer::RawPeer(int receive_buffer_bytes)
    : work_(asio::make_work_guard(io_)), acceptor_(io_), socket_(io_), read_buffer_(kReadChunk) {
  const asio::ip::tcp::endpoint loopback(asio::ip::address_v4::loopback(), 0);
  acceptor_.open(loopback.protocol());
  // Set before listening, so that the accepted connection has it from its first byte on.
  if (receive_buffer_bytes > 0) {
    acceptor_.set_option(asio::socket_base::receive_buffer_size(receive_buffer_bytes));
  }
  acceptor_.bind(loopback);
  acceptor_.listen();
  port_ = acceptor_.local_endpoint().port();
  acceptor_.async_accept(socket_, [this](const std::error_code& error) {
    if (error) return;
    std::lock_guard<std::mutex> lock(mutex_);
    connected_ = true;
    changed_.notify_all();
  });
  io_thread_ = std::thread([this] { io_.run(); });
}

RawPeer::~RawPeer() {
  asio::post(io_, [this] {
    std::error_code ignored;
    acceptor_.close(ignored);
    socket_.close(ignored);
  });
  work_.reset();
  io_thread_.join();
}

bool RawPeer::WritePortFile(const std::string& home) const {
  return command_server::WritePortFile(home, port_);
}

bool RawPeer::WaitForConnection(std::chrono::milliseconds timeout) {
  std::unique_lock<std::mutex> lock(mutex_);
  return changed_.wait_for(lock, timeout, [this] { return connected_; });
}

void RawPeer::Send(std::string bytes) {
  asio::post(io_, [this, bytes = std::move(bytes)]() mutable {
    writes_.push_back(std::move(bytes));
    if (writes_.size() == 1) WriteFront();
  });
}

void RawPeer::WriteFront() {
  asio::async_write(socket_, asio::buffer(writes_.front()), [this](const std::error_code&, size_t) {
    writes_.pop_front();
    if (!writes_.empty()) WriteFront();
  });
}

void RawPeer::StartReading() {
  asio::post(io_, [this] { ReadSome(); });
}

void RawPeer::ReadSome() {
  socket_.async_read_some(asio::buffer(read_buffer_),
                          [this](const std::error_code& error, size_t size) {
                            // Asio never runs a handler inside the call that starts it, so the next
                            // read may be started under the lock.
                            std::lock_guard<std::mutex> lock(mutex_);
                            received_.append(read_buffer_.data(), size);
                            ended_ = static_cast<bool>(error);
                            changed_.notify_all();
                            if (!error) ReadSome();
                          });
}

std::optional<std::string> RawPeer::WaitForEnd(std::chrono::milliseconds timeout) {
  std::unique_lock<std::mutex> lock(mutex_);
  if (!changed_.wait_for(lock, timeout, [this] { return ended_; })) return std::nullopt;
  return received_;
}
