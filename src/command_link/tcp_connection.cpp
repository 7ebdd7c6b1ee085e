#include "command_link/tcp_connection.h"

#include <algorithm>
#include <sstream>
#include <utility>

namespace command_link {

namespace {

void AnswerRead(TcpClient::ReadRequest& request, bool success, std::vector<char> bytes) {
  TcpClient::ReadResult result{success, std::move(bytes)};
  if (request.callback) request.callback(result);
}

void AnswerWrite(TcpClient::WriteRequest& request, bool success, size_t size) {
  TcpClient::WriteResult result{success, size};
  if (request.callback) request.callback(result);
}

std::string ConnectFailure(const asio::ip::tcp::endpoint& endpoint, bool timed_out,
                           const std::error_code& error) {
  std::ostringstream text;
  text << "connect to " << endpoint;
  if (timed_out) {
    text << " timed out";
  } else {
    text << " failed: " << error.message();
  }
  return text.str();
}

}  // namespace

std::shared_ptr<TcpConnection> TcpConnection::Create(std::shared_ptr<TcpIoService> service) {
  auto removal = std::make_shared<std::promise<void>>();
  std::shared_future<void> removed = removal->get_future().share();
  std::shared_ptr<TcpConnection> connection(new TcpConnection(std::move(service)),
                                            [removal](TcpConnection* doomed) {
                                              delete doomed;
                                              removal->set_value();
                                            });
  connection->removed_ = std::move(removed);
  return connection;
}

TcpConnection::TcpConnection(std::shared_ptr<TcpIoService> service)
    : service_(std::move(service)),
      socket_(service_->io_context()),
      connect_timer_(service_->io_context()) {}

std::future<std::string> TcpConnection::Connect(const asio::ip::tcp::endpoint& endpoint,
                                                std::chrono::milliseconds timeout) {
  std::future<std::string> done = connect_done_.get_future();
  asio::post(service_->io_context(), [self = shared_from_this(), endpoint, timeout] {
    self->StartConnect(endpoint, timeout);
  });
  return done;
}

void TcpConnection::Read(TcpClient::ReadRequest request) {
  asio::post(service_->io_context(),
             [self = shared_from_this(), request = std::move(request)]() mutable {
               self->QueueRead(std::move(request));
             });
}

void TcpConnection::Write(TcpClient::WriteRequest request) {
  asio::post(service_->io_context(),
             [self = shared_from_this(), request = std::move(request)]() mutable {
               self->QueueWrite(std::move(request));
             });
}

void TcpConnection::Close() {
  asio::post(service_->io_context(), [self = shared_from_this()] {
    self->Drop();
    self->FailQueuedRequests();
  });
}

void TcpConnection::StartConnect(const asio::ip::tcp::endpoint& endpoint,
                                 std::chrono::milliseconds timeout) {
  connect_timer_.expires_after(timeout);
  connect_timer_.async_wait([self = shared_from_this()](const std::error_code& error) {
    if (!error) self->OnConnectTimeout();
  });
  socket_.async_connect(endpoint,
                        [self = shared_from_this(), endpoint](const std::error_code& error) {
                          self->OnConnectDone(endpoint, error);
                        });
}

void TcpConnection::OnConnectTimeout() {
  // The connect may have completed while the expiry was already queued.
  if (connect_finished_) return;
  connect_timed_out_ = true;
  std::error_code ignored;
  socket_.close(ignored);
}

void TcpConnection::OnConnectDone(const asio::ip::tcp::endpoint& endpoint,
                                  const std::error_code& error) {
  connect_finished_ = true;
  connect_timer_.cancel();
  std::error_code setup_error = error;
  // A receive must never block the I/O thread, even when readiness was reported in vain. Each
  // response goes out as soon as it is written: waiting to gather small writes would hold a burst
  // of answers back for the server's delayed acknowledgement.
  if (!connect_timed_out_ && !setup_error) socket_.non_blocking(true, setup_error);
  if (!connect_timed_out_ && !setup_error)
    socket_.set_option(asio::ip::tcp::no_delay(true), setup_error);
  if (connect_timed_out_ || setup_error) {
    Drop();
    connect_done_.set_value(ConnectFailure(endpoint, connect_timed_out_, setup_error));
    return;
  }
  connected_ = true;
  connect_done_.set_value(std::string());
}

void TcpConnection::QueueRead(TcpClient::ReadRequest request) {
  if (!connected_) {
    AnswerRead(request, false, {});
    return;
  }
  reads_.push_back(std::move(request));
  AwaitData();
}

void TcpConnection::AwaitData() {
  if (awaiting_data_ || reads_.empty() || !connected_) return;
  awaiting_data_ = true;
  socket_.async_wait(
      asio::socket_base::wait_read,
      [self = shared_from_this()](const std::error_code& error) { self->OnReadable(error); });
}

void TcpConnection::OnReadable(const std::error_code& error) {
  awaiting_data_ = false;
  // Dropped meanwhile: the queued reads have been answered already.
  if (!connected_) return;
  std::error_code receive_error = error;
  std::vector<char> bytes;
  if (!receive_error) bytes = ReceiveAvailable(reads_.front().size, receive_error);
  if (receive_error == asio::error::would_block) {
    AwaitData();
    return;
  }
  TcpClient::ReadRequest request = std::move(reads_.front());
  reads_.pop_front();
  if (receive_error) {
    Drop();
    AnswerRead(request, false, {});
    FailQueuedRequests();
    return;
  }
  AnswerRead(request, true, std::move(bytes));
  AwaitData();
}

std::vector<char> TcpConnection::ReceiveAvailable(uint32_t limit, std::error_code& error) {
  const size_t arrived = socket_.available(error);
  if (error) return {};
  // Readable with nothing arrived means closed or failed; asking for one byte reports which.
  std::vector<char> bytes(std::clamp<size_t>(arrived, 1, limit));
  bytes.resize(socket_.read_some(asio::buffer(bytes), error));
  return bytes;
}

void TcpConnection::QueueWrite(TcpClient::WriteRequest request) {
  if (!connected_) {
    AnswerWrite(request, false, 0);
    return;
  }
  writes_.push_back(std::move(request));
  if (writing_ == 0) WriteQueued();
}

void TcpConnection::WriteQueued() {
  writing_ = writes_.size();
  std::vector<asio::const_buffer> buffers;
  buffers.reserve(writing_);
  for (const TcpClient::WriteRequest& request : writes_)
    buffers.push_back(asio::buffer(request.buffer));
  asio::async_write(socket_, buffers,
                    [self = shared_from_this()](const std::error_code& error, size_t size) {
                      self->OnWritten(error, size);
                    });
}

void TcpConnection::OnWritten(const std::error_code& error, size_t size) {
  std::deque<TcpClient::WriteRequest> written;
  for (size_t i = 0; i < writing_; ++i) {
    written.push_back(std::move(writes_.front()));
    writes_.pop_front();
  }
  writing_ = 0;
  if (error) Drop();
  // Each request hears how much of its own bytes went out.
  size_t unaccounted = size;
  for (TcpClient::WriteRequest& request : written) {
    const size_t own = std::min(unaccounted, request.buffer.size());
    unaccounted -= own;
    AnswerWrite(request, !error, own);
  }
  if (error) {
    FailQueuedRequests();
  } else if (!writes_.empty()) {
    WriteQueued();
  }
}

void TcpConnection::Drop() {
  connected_ = false;
  std::error_code ignored;
  // Cancelled before the close: on some systems (Wine) closing alone leaves a send pending for as
  // long as the peer does not read, and the I/O thread, which shut-down joins, would never end.
  socket_.cancel(ignored);
  socket_.close(ignored);
}

void TcpConnection::FailQueuedRequests() {
  while (!reads_.empty()) {
    TcpClient::ReadRequest request = std::move(reads_.front());
    reads_.pop_front();
    AnswerRead(request, false, {});
  }
  // The writes in the socket's hands are answered by their completion.
  while (writes_.size() > writing_) {
    TcpClient::WriteRequest request = std::move(writes_[writing_]);
    writes_.erase(writes_.begin() + static_cast<std::ptrdiff_t>(writing_));
    AnswerWrite(request, false, 0);
  }
}

}  // namespace command_link
