#include "command_link/tcp_io_service.h"

#include <atomic>
#include <mutex>
#include <utility>

namespace command_link {

namespace {

struct ServiceRegistry {
  std::mutex mutex;
  std::shared_ptr<TcpIoService> service;  // guarded by mutex; empty while no client exists
  size_t clients = 0;                     // guarded by mutex
};

// Made on first use and never destroyed, on purpose: a static destructor must not end a service,
// as its worker would have to be joined at library unload, under the loader lock.
ServiceRegistry& Registry() {
  static ServiceRegistry* registry = new ServiceRegistry;
  return *registry;
}

std::atomic<int> running_workers{0};

}  // namespace

TcpIoService::TcpIoService() : work_(asio::make_work_guard(io_context_)) {}

std::shared_ptr<TcpIoService> TcpIoService::AddClient() {
  ServiceRegistry& registry = Registry();
  std::lock_guard<std::mutex> lock(registry.mutex);
  if (!registry.service) {
    std::shared_ptr<TcpIoService> service(new TcpIoService);
    service->StartWorker();
    registry.service = std::move(service);
  }
  ++registry.clients;
  return registry.service;
}

void TcpIoService::RemoveClient(std::shared_ptr<TcpIoService> service) {
  {
    ServiceRegistry& registry = Registry();
    std::lock_guard<std::mutex> lock(registry.mutex);
    if (--registry.clients > 0) return;
    registry.service.reset();
  }
  service->StopWorker();
}

void TcpIoService::StartWorker() {
  ++running_workers;
  try {
    worker_ = std::thread(RunWorker, shared_from_this());
  } catch (...) {
    --running_workers;
    throw;
  }
}

void TcpIoService::StopWorker() {
  work_.reset();
  // A callback may destroy the last client; the worker cannot join itself.
  if (worker_.get_id() == std::this_thread::get_id()) {
    worker_.detach();
  } else {
    worker_.join();
  }
}

void TcpIoService::RunWorker(std::shared_ptr<TcpIoService> service) {
  service->io_context_.run();
  // A detached worker holds the last reference; the io_context ends here, after run() returned.
  service.reset();
  --running_workers;
}

bool IoWorkerRunning() { return running_workers.load() > 0; }

}  // namespace command_link
