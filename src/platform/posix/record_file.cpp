#include "platform/record_file.h"

#include <fcntl.h>
#include <unistd.h>

namespace platform {

RecordFile::RecordFile(const std::string& path)
    : handle_(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0644)) {}

RecordFile::~RecordFile() {
  if (opened()) close(static_cast<int>(handle_));
}

bool RecordFile::Append(const char* bytes, size_t size) const {
  return opened() && write(static_cast<int>(handle_), bytes, size) == static_cast<ssize_t>(size);
}

}  // namespace platform
