// The I/O service that every TcpClient of the process shares: one io_context with one worker
// thread, on which all socket work and every completion callback runs, one at a time. The worker
// starts with the first client and ends with the last, so the plug-in never leaves a thread
// running once its clients are gone, and no thread is ever joined at library unload.
#pragma once

#include <asio.hpp>
#include <memory>
#include <thread>

#include "platform/sockets.h"

namespace command_link {

class TcpIoService : public std::enable_shared_from_this<TcpIoService> {
 public:
  // Counts one more client and returns the running service, or a fresh one with a new worker
  // thread when no client exists. Any thread. Throws std::system_error when no thread starts.
  static std::shared_ptr<TcpIoService> AddClient();

  // Counts one client less; `service` is what AddClient gave it. The last client stops the
  // service: the worker finishes the work still queued and ends, and this call joins it, unless
  // it runs on the worker itself, where it detaches it instead. Any thread.
  static void RemoveClient(std::shared_ptr<TcpIoService> service);

  TcpIoService(const TcpIoService&) = delete;
  TcpIoService& operator=(const TcpIoService&) = delete;

  // Lives as long as the service; sockets on it must hold the service.
  asio::io_context& io_context() { return io_context_; }

  // True when the calling thread is this service's worker.
  bool OnWorkerThread() { return io_context_.get_executor().running_in_this_thread(); }

 private:
  TcpIoService();
  void StartWorker();
  void StopWorker();
  static void RunWorker(std::shared_ptr<TcpIoService> service);

  // Held while the service lives, so that clients work whether or not the host's start-up started
  // it. Declared first: sockets and io_context end before it.
  platform::ScopedSockets sockets_;
  asio::io_context io_context_;
  // Keeps run() going while clients exist; reset by the last client only.
  asio::executor_work_guard<asio::io_context::executor_type> work_;
  std::thread worker_;  // started by AddClient, joined or detached by the last RemoveClient
};

// True while any worker thread of a TcpIoService is running, including one that was detached and
// is finishing. Any thread.
bool IoWorkerRunning();

}  // namespace command_link
