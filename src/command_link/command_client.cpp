#include "command_link/command_client.h"

#include <chrono>
#include <string>
#include <thread>

#include "command_link/message_reception.h"
#include "command_link/port_file.h"
#include "command_link/tcp_client.h"
#include "logging/log_sites.h"
#include "logging/plugin_log.h"

std::atomic<bool> StopFlag{false};

namespace {

constexpr int32_t kDefaultPort = 8038;
constexpr char kServerHost[] = "127.0.0.1";
constexpr uint32_t kConnectTimeoutMs = 2500;
constexpr uint32_t kReadSize = 0xA00000;

std::atomic<int32_t> pause_ms{kCommandLoopPauseMs};

// One read request per connected pass: the server's requests are read only through these.
void QueueRead(command_link::TcpClient& client) {
  try {
    client.async_read({kReadSize, [&client](command_link::TcpClient::ReadResult& result) {
                         OnReadComplete(client, result);
                       }});
  } catch (...) {
    PluginLog::Get()->Write(kLogError, kLogSource, log_site::kReadMessageError,
                            "read message error");
  }
}

// The port file is read until it has given a first line; after that the same port is tried
// for the life of the plug-in. A first line without a number ends the process (std::stoi
// throws and nothing catches it): the file is the command server's, and it is trusted.
void TryToConnect(command_link::TcpClient& client, std::string& port_text, int32_t& port) {
  try {
    if (port_text.empty() && ReadPortFile(port_text)) port = std::stoi(port_text, nullptr, 10);
    if (port != 0) client.connect(kServerHost, static_cast<uint32_t>(port), kConnectTimeoutMs);
  } catch (const command_link::TcpError&) {
    // Refused or timed out: the next pass tries again.
  }
}

}  // namespace

void SetCommandLoopPauseForTesting(int32_t milliseconds) { pause_ms = milliseconds; }

void CommandClient() {
  PluginLog::Get()->Write(kLogInfo, kLogSource, log_site::kCommandThreadStart,
                          "Start thread to read command from server...");
  command_link::TcpClient client;
  std::string port_text;
  int32_t port = kDefaultPort;
  while (!StopFlag.load()) {
    if (client.is_connected()) {
      QueueRead(client);
    } else {
      TryToConnect(client, port_text, port);
    }
    if (!StopFlag.load()) std::this_thread::sleep_for(std::chrono::milliseconds(pause_ms.load()));
  }
  client.disconnect(false);
}
