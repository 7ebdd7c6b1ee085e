#include "command_server/message_splitter.h"

#include <cstring>

namespace command_server {

const char kMessageDelimiter[] = "###";

std::vector<std::string> MessageSplitter::Append(const char* data, std::size_t size) {
  unfinished_.append(data, size);
  const std::size_t delimiter_size = std::strlen(kMessageDelimiter);
  std::vector<std::string> messages;
  std::size_t start = 0;
  std::size_t found = unfinished_.find(kMessageDelimiter, start);
  while (found != std::string::npos) {
    messages.push_back(unfinished_.substr(start, found - start));
    start = found + delimiter_size;
    found = unfinished_.find(kMessageDelimiter, start);
  }
  unfinished_.erase(0, start);
  return messages;
}

}  // namespace command_server
