// qvo-command-server: the maker's command server as a command, for trying the plug-in by hand
// and from scripts. It serves one plug-in, sends it requests and prints its responses.
#include <chrono>
#include <cstdio>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

#include "command_server/command_server.h"
#include "command_server/port_file.h"
#include "command_server/tool_options.h"
#include "platform/command_line.h"

namespace {

using command_server::CommandServer;
using command_server::ToolOptions;

constexpr int kAllAnswered = 0;
constexpr int kNotAnswered = 1;
constexpr int kCannotStart = 2;

double Seconds(std::chrono::milliseconds duration) {
  return std::chrono::duration<double>(duration).count();
}

// Sends request number `number` and prints its response; false, with the reason on stderr, when
// it cannot be sent or is not answered in time.
bool Exchange(CommandServer& server, const std::string& request, int number,
              std::chrono::milliseconds timeout) {
  if (!server.Send(request)) {
    std::fprintf(stderr,
                 "qvo-command-server: request %d could not be sent: the plug-in is not "
                 "connected\n",
                 number);
    return false;
  }
  std::optional<std::string> response = server.WaitForResponse(timeout);
  if (!response) {
    std::fprintf(stderr, "qvo-command-server: no response to request %d within %g s\n", number,
                 Seconds(timeout));
    return false;
  }
  std::fwrite(response->data(), 1, response->size(), stdout);
  std::fputc('\n', stdout);
  std::fflush(stdout);
  return true;
}

// Each non-blank line of standard input is one request; a Windows line end is not part of it.
bool ExchangeStandardInput(CommandServer& server, std::chrono::milliseconds timeout) {
  std::string line;
  int number = 0;
  while (std::getline(std::cin, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.find_first_not_of(" \t") == std::string::npos) continue;
    if (!Exchange(server, line, ++number, timeout)) return false;
  }
  return true;
}

bool ExchangeAll(CommandServer& server, const ToolOptions& options) {
  if (options.requests.empty()) return ExchangeStandardInput(server, options.timeout);
  int number = 0;
  for (const std::string& request : options.requests) {
    if (!Exchange(server, request, ++number, options.timeout)) return false;
  }
  return true;
}

std::unique_ptr<CommandServer> Listen(uint16_t port) {
  try {
    return std::make_unique<CommandServer>(port);
  } catch (const std::system_error& error) {
    std::fprintf(stderr, "qvo-command-server: cannot listen on 127.0.0.1:%u: %s\n",
                 static_cast<unsigned>(port), error.what());
    return nullptr;
  }
}

}  // namespace

int main(int argc, char** argv) {
  ToolOptions options;
  std::string error;
  if (!command_server::ParseToolOptions(platform::Utf8CommandLine(argc, argv), &options, &error)) {
    std::fprintf(stderr, "qvo-command-server: %s\n", error.c_str());
    command_server::PrintUsage(stderr);
    return kCannotStart;
  }
  if (options.help) {
    command_server::PrintUsage(stdout);
    return kAllAnswered;
  }
  std::unique_ptr<CommandServer> server = Listen(options.port);
  if (!server) return kCannotStart;
  if (!options.home.empty() && !server->WritePortFile(options.home)) {
    std::fprintf(stderr, "qvo-command-server: cannot write the port file %s\n",
                 command_server::PortFilePath(options.home).c_str());
    return kCannotStart;
  }
  std::printf("listening on 127.0.0.1:%u\n", static_cast<unsigned>(server->port()));
  std::fflush(stdout);
  if (!server->WaitForConnection(options.wait_connect)) {
    std::fprintf(stderr, "qvo-command-server: the plug-in did not connect within %g s\n",
                 Seconds(options.wait_connect));
    return kNotAnswered;
  }
  return ExchangeAll(*server, options) ? kAllAnswered : kNotAnswered;
}
