// A plain Asio client on the loopback address that plays the plug-in's side of the command link
// in tests. Every wait is bounded, so a faulty server fails a test instead of hanging it.
#pragma once

#include <asio.hpp>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

// Not thread-safe: one test thread uses it.
class LoopbackClient {
 public:
  static constexpr std::chrono::seconds kBound{10};

  explicit LoopbackClient(uint16_t port) : socket_(io_) {
    socket_.connect(asio::ip::tcp::endpoint(asio::ip::address_v4::loopback(), port));
  }

  void Write(const std::string& bytes) { asio::write(socket_, asio::buffer(bytes)); }

  // Exactly `size` bytes; empty when the stream ends first or they do not come within the bound.
  std::optional<std::string> Read(std::size_t size) {
    std::string bytes(size, '\0');
    std::optional<std::error_code> result;
    asio::async_read(socket_, asio::buffer(bytes),
                     [&result](const std::error_code& error, std::size_t) { result = error; });
    RunBounded(&result);
    if (!result || *result) return std::nullopt;
    return bytes;
  }

  // True when the server ends the stream, by a close or a reset, within the bound, with no
  // further bytes before the end.
  bool SeesEndOfStream() {
    char byte = 0;
    std::optional<std::error_code> result;
    socket_.async_read_some(asio::buffer(&byte, 1), [&result](const std::error_code& error,
                                                              std::size_t) { result = error; });
    RunBounded(&result);
    return result && *result;
  }

  void Close() { socket_.close(); }

 private:
  // Runs the pending operation until it has set `result` or the bound has passed; then it is
  // cancelled, so that it no longer refers to the caller's locals.
  void RunBounded(std::optional<std::error_code>* result) {
    io_.restart();
    io_.run_for(kBound);
    if (*result) return;
    socket_.cancel();
    io_.restart();
    io_.run();
    result->reset();
  }

  asio::io_context io_;
  asio::ip::tcp::socket socket_;
};
