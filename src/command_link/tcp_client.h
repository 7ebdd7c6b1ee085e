// The TCP client of the command link: a connection to the command server whose reads and writes
// are queued and completed on one shared I/O thread.
//
// Threads. Every TcpClient of the process shares one I/O service with one worker thread, started
// by the first client and ended by the last one (see tcp_io_service.h). The socket is touched only
// on that thread: the calls below post their work to it and return. Every completion callback runs
// there too, one at a time, in the order of completion. A callback may call any member of its
// client except connect, and may destroy the client; it must not throw, as an exception that
// leaves a callback ends the process.
//
// Reads. async_read queues a request; requests are served in the order they were queued, one
// receive each. A receive waits until bytes arrive and hands over those that have arrived, at most
// the request's size, in a vector of exactly that length. A queued request holds no buffer, so an
// idle connection can keep many of them waiting at no cost. A failed receive or a close by the
// peer reports failure to the request being served and drops the connection: is_connected()
// turns false, every request still queued is answered with failure, and later calls throw until
// the next connect.
//
// Writes. async_write queues a buffer; buffers leave whole and in the order they were queued,
// one at a time. The optional callback learns whether its buffer was written and how many bytes
// went out. A failed write drops the connection as a failed receive does.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

namespace command_link {

class TcpConnection;
class TcpIoService;

// A refused or timed-out connect, or a call that needs a connection when there is none.
class TcpError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class TcpClient {
 public:
  struct ReadResult {
    bool success;
    std::vector<char> buffer;  // the bytes of one receive; empty when success is false
  };

  struct ReadRequest {
    uint32_t size;  // the most bytes one receive may hand over; positive
    std::function<void(ReadResult&)> callback;
  };

  struct WriteResult {
    bool success;
    size_t size;  // bytes that went out
  };

  struct WriteRequest {
    std::vector<char> buffer;
    std::function<void(WriteResult&)> callback;  // may be empty
  };

  // Joins the shared I/O service, starting its worker when this is the only client.
  TcpClient();

  // Disconnects without waiting, then leaves the I/O service. Callbacks of this client that are
  // still queued run later with failure; the client's state they need is shared with them, never
  // borrowed from the destroyed object. When this is the last client, the worker finishes what
  // is queued and ends; the destructor joins it, or detaches it when it runs on the worker itself.
  ~TcpClient();

  TcpClient(const TcpClient&) = delete;
  TcpClient& operator=(const TcpClient&) = delete;

  // Connects to `host` (an IPv4 or IPv6 address in text form) at `port` and returns once
  // connected. Throws TcpError when the peer refuses, when `timeout_ms` pass first (a timer
  // closes the socket), when the client is already connected, or when called on the I/O thread,
  // where waiting for the connection would stall it. One thread connects at a time.
  void connect(const std::string& host, uint32_t port, uint32_t timeout_ms);

  // False before the first connect, after a dropped connection and after disconnect. Any thread.
  bool is_connected() const;

  // Queues `request` behind the earlier ones; its callback runs once on the I/O thread. Throws
  // TcpError when not connected or when the size is 0. Any thread.
  void async_read(ReadRequest request);

  // Queues `request` behind the earlier writes; its callback, if any, runs once on the I/O
  // thread. Throws TcpError when not connected. Any thread.
  void async_write(WriteRequest request);

  // Closes the connection; queued reads and writes are answered with failure on the I/O thread.
  // With `wait_for_removal`, returns only once the socket is closed and no callback of the
  // connection is left to run, except on the I/O thread itself, where it never waits; the caller
  // must then hold no lock that those callbacks take. Harmless when not connected or called
  // again. Any thread.
  void disconnect(bool wait_for_removal);

 private:
  std::shared_ptr<TcpConnection> Connection() const;
  std::shared_ptr<TcpConnection> ConnectedOrThrow() const;

  std::shared_ptr<TcpIoService> service_;  // from the constructor until the destructor

  mutable std::mutex connection_mutex_;
  // Guarded by connection_mutex_. Empty before the first connect and after disconnect; a dropped
  // connection stays until the next connect or disconnect.
  std::shared_ptr<TcpConnection> connection_;
};

}  // namespace command_link
