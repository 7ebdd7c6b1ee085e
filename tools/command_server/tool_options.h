// The command line of qvo-command-server.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace command_server {

struct ToolOptions {
  uint16_t port = 0;  // 0: any free port
  std::string home;   // where to write the port file; empty: no port file
  std::chrono::milliseconds wait_connect{std::chrono::seconds(30)};
  std::chrono::milliseconds timeout{std::chrono::seconds(10)};  // for each response
  // The requests in command-line order; empty: they come from standard input, one a line.
  std::vector<std::string> requests;
  bool help = false;
};

// Fills `options` from `arguments` (UTF-8, the program's name first); false on a malformed
// command line, with the reason in `error`.
bool ParseToolOptions(const std::vector<std::string>& arguments, ToolOptions* options,
                      std::string* error);

void PrintUsage(std::FILE* stream);

}  // namespace command_server
