// Cuts a byte stream into the messages of the command link: each message ends with "###".
// The stream may arrive in pieces of any size, a delimiter included, so the bytes after the last
// delimiter are kept until the rest of their message comes.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace command_server {

// What ends every message of the command link, in both directions.
extern const char kMessageDelimiter[];

// Not thread-safe: one owner feeds it.
class MessageSplitter {
 public:
  // Appends `size` bytes of the stream and returns the messages they complete, in stream order,
  // without their delimiters. Two delimiters in a row complete an empty message.
  std::vector<std::string> Append(const char* data, std::size_t size);

 private:
  std::string unfinished_;  // the bytes received since the last delimiter
};

}  // namespace command_server
