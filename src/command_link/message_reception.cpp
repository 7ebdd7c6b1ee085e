#include "command_link/message_reception.h"

#include "command_link/json.h"
#include "command_link/message_delimiter.h"
#include "command_link/parse_json.h"
#include "logging/log_sites.h"
#include "logging/plugin_log.h"

void SplitString(const std::string& text, std::vector<std::string>& pieces,
                 const std::string& delimiter) {
  size_t start = 0;
  for (size_t found = text.find(delimiter, start); found != std::string::npos;
       found = text.find(delimiter, start)) {
    pieces.push_back(text.substr(start, found - start));
    start = found + delimiter.size();
  }
  if (start != text.size()) pieces.push_back(text.substr(start));
}

void OnReadComplete(command_link::TcpClient& client, command_link::TcpClient::ReadResult& result) {
  // A failed receive has already dropped the connection; the connection loop reconnects.
  if (!result.success) return;
  const std::string text(result.buffer.begin(), result.buffer.end());
  PluginLog* log = PluginLog::Get();
  if (text.empty()) {
    log->Write(kLogError, kLogSource, log_site::kEmptyMessage, "Received message is empty!");
    return;
  }
  std::vector<std::string> pieces;
  SplitString(text, pieces, kMessageDelimiter);
  for (const std::string& piece : pieces) {
    rapidjson::Document request;
    request.Parse(piece.c_str());
    if (request.HasParseError()) {
      log->Write(kLogError, kLogSource, log_site::kInvalidJson, "Invalid json format: %s",
                 piece.c_str());
      return;
    }
    log->Write(kLogInfo, kLogSource, log_site::kReceivedJson, "Received json: %s", piece.c_str());
    try {
      client.async_write({parseJson(request), nullptr});
    } catch (const command_link::TcpError&) {
      // Write failures are not observed. The connection went while this receive was handled (a
      // shut-down, the server gone); thrown out of the I/O thread it would end the host.
    }
  }
}
