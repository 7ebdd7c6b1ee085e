#include "command_server/tool_options.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>

#include "command_server/requests.h"

namespace command_server {

namespace {

bool ParsePort(const std::string& text, uint16_t* port) {
  char* end = nullptr;
  errno = 0;
  unsigned long value = std::strtoul(text.c_str(), &end, 10);
  if (text.empty() || *end != '\0' || errno != 0 || value > 65535 || text[0] == '-') return false;
  *port = static_cast<uint16_t>(value);
  return true;
}

bool ParseSeconds(const std::string& text, std::chrono::milliseconds* duration) {
  char* end = nullptr;
  double seconds = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0' || !std::isfinite(seconds) || seconds < 0 || seconds > 1e6) {
    return false;
  }
  *duration = std::chrono::milliseconds(static_cast<int64_t>(std::llround(seconds * 1000)));
  return true;
}

// Applies option `name` with its `value`; false, with the reason in `error`, for an unknown
// option or an invalid value.
bool ParseValueOption(const std::string& name, const std::string& value, ToolOptions* options,
                      std::string* error) {
  bool valid = true;
  if (name == "--port") {
    valid = ParsePort(value, &options->port);
  } else if (name == "--home") {
    options->home = value;
  } else if (name == "--wait-connect") {
    valid = ParseSeconds(value, &options->wait_connect);
  } else if (name == "--timeout") {
    valid = ParseSeconds(value, &options->timeout);
  } else if (name == "--media-info" || name == "--update") {
    // Numbered by the request's place among all requests, so the id says which one it was.
    std::string request_id = std::to_string(options->requests.size() + 1);
    options->requests.push_back(name == "--update" ? UpdateParamRequest(request_id, value)
                                                   : MediaInfoRequest(request_id, value));
  } else {
    *error = "unknown option " + name;
    return false;
  }
  if (!valid) *error = "invalid value for " + name + ": " + value;
  return valid;
}

}  // namespace

bool ParseToolOptions(const std::vector<std::string>& arguments, ToolOptions* options,
                      std::string* error) {
  for (size_t i = 1; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (argument == "--help" || argument == "-h") {
      options->help = true;
    } else if (argument.rfind("--", 0) != 0) {
      options->requests.push_back(argument);
    } else if (i + 1 >= arguments.size()) {
      *error = "missing value for " + argument;
      return false;
    } else if (!ParseValueOption(argument, arguments[++i], options, error)) {
      return false;
    }
  }
  return true;
}

void PrintUsage(std::FILE* stream) {
  std::fprintf(
      stream,
      "usage: qvo-command-server [--port N] [--home DIR] [--wait-connect SECONDS]\n"
      "                          [--timeout SECONDS] [--media-info PATH] [--update PATH]\n"
      "                          [REQUEST_JSON ...]\n"
      "Stands in for the maker's command server: listens on 127.0.0.1, waits for the plug-in\n"
      "to connect, sends each request followed by \"###\" and prints each response on a line.\n"
      "  --port N                port to listen on (default: any free port)\n"
      "  --home DIR              write the port to DIR\\AppData\\Local\\quorvel\\Adobe\\port\n"
      "  --wait-connect SECONDS  how long to wait for the plug-in to connect (default 30)\n"
      "  --timeout SECONDS       how long to wait for each response (default 10)\n"
      "  --media-info PATH       a get_media_info request for PATH\n"
      "  --update PATH           a request_update_param request for PATH\n"
      "  REQUEST_JSON            a request as JSON text, sent as it is\n"
      "Requests go out in command-line order, one at a time, each after the previous one's\n"
      "response; --media-info and --update number \"requestId\" by the request's place, from 1.\n"
      "Without requests on the command line, each line of standard input is one request.\n"
      "Exit status: 0 when every request was answered, 1 when one was not, 2 when the command\n"
      "line is wrong or the port cannot be had or written.\n");
}

}  // namespace command_server
