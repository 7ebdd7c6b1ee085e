// A file of records that another process reads while this one writes it. Each record leaves in
// one unbuffered system write, so that it is whole, and already the system's, even when this
// process dies the next instant.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace platform {

class RecordFile {
 public:
  // Creates the file at `path` (UTF-8) anew; check opened().
  explicit RecordFile(const std::string& path);
  ~RecordFile();
  RecordFile(const RecordFile&) = delete;
  RecordFile& operator=(const RecordFile&) = delete;

  bool opened() const { return handle_ != -1; }

  // Appends `size` bytes in one write. Safe in a signal handler or an exception filter.
  bool Append(const char* bytes, size_t size) const;

 private:
  intptr_t handle_ = -1;  // a file descriptor on POSIX, a HANDLE on Windows
};

}  // namespace platform
