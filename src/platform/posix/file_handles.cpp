#include "platform/file_handles.h"

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <string>

#include "platform/posix/posix_path.h"
#include "platform/text_encoding.h"

namespace platform {
namespace {

int Descriptor(FileHandle file) { return static_cast<int>(reinterpret_cast<intptr_t>(file)); }

FileHandle HandleOf(int descriptor) {
  return reinterpret_cast<FileHandle>(static_cast<intptr_t>(descriptor));
}

// The host's wide path as a POSIX path: UTF-8, without the "\\?\" prefix, with slashes.
std::string NativeFilePath(const char16_t* wide) {
  if (wide == nullptr) return std::string();
  const char16_t kLongPathPrefix[] = u"\\\\?\\";
  if (std::char_traits<char16_t>::compare(wide, kLongPathPrefix, 4) == 0) wide += 4;
  int needed = WideToMultiByte(CodePage::kUtf8, wide, nullptr, 0);
  std::string utf8(static_cast<size_t>(needed), '\0');
  WideToMultiByte(CodePage::kUtf8, wide, &utf8[0], needed);
  utf8.resize(static_cast<size_t>(needed) - 1);  // the terminator
  return PosixPath(utf8);
}

// Cleans up after a failure without letting the clean-up's own errors replace the first one.
class KeepErrno {
 public:
  KeepErrno() : saved_(errno) {}
  ~KeepErrno() { errno = saved_; }
  KeepErrno(const KeepErrno&) = delete;
  KeepErrno& operator=(const KeepErrno&) = delete;

 private:
  int saved_;
};

// Writes all of `count` bytes unless the system refuses; `*written` counts what went out.
bool WriteAll(int descriptor, const void* buffer, uint32_t count, uint32_t* written) {
  const char* bytes = static_cast<const char*>(buffer);
  *written = 0;
  while (*written < count) {
    ssize_t done = write(descriptor, bytes + *written, count - *written);
    if (done < 0 && errno == EINTR) continue;
    if (done < 0) return false;
    if (done == 0) break;  // the system took nothing and reported no error: a short write
    *written += static_cast<uint32_t>(done);
  }
  return true;
}

// Reads until `count` bytes or the end of the file, as ReadFile does on a file.
bool ReadAll(int descriptor, void* buffer, uint32_t count, uint32_t* read_count) {
  char* bytes = static_cast<char*>(buffer);
  *read_count = 0;
  while (*read_count < count) {
    ssize_t done = read(descriptor, bytes + *read_count, count - *read_count);
    if (done < 0 && errno == EINTR) continue;
    if (done < 0) return false;
    if (done == 0) break;
    *read_count += static_cast<uint32_t>(done);
  }
  return true;
}

bool CopyContent(int source, int target) {
  char block[64 * 1024];
  for (;;) {
    uint32_t got = 0;
    if (!ReadAll(source, block, sizeof(block), &got)) return false;
    if (got == 0) return true;
    uint32_t put = 0;
    if (!WriteAll(target, block, got, &put)) return false;
    if (put != got) {
      errno = EIO;
      return false;
    }
  }
}

// CopyFileW with fail-if-exists: the target is created exclusively, with the source's
// permissions, and removed again when the copy fails half-way.
bool CopyNoReplace(const std::string& from, const std::string& to) {
  int source = open(from.c_str(), O_RDONLY | O_CLOEXEC);
  if (source < 0) return false;
  struct stat status;
  if (fstat(source, &status) != 0) {
    KeepErrno keep;
    close(source);
    return false;
  }
  if (S_ISDIR(status.st_mode)) {
    close(source);
    errno = EISDIR;
    return false;
  }
  int target = open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, status.st_mode & 07777);
  if (target < 0) {
    KeepErrno keep;
    close(source);
    return false;
  }
  bool copied = CopyContent(source, target);
  if (close(target) != 0) copied = false;
  KeepErrno keep;
  close(source);
  if (!copied) unlink(to.c_str());
  return copied;
}

}  // namespace

FileHandle InvalidFileHandle() { return HandleOf(-1); }

bool WriteToFile(FileHandle file, const void* buffer, uint32_t count, uint32_t* written) {
  return WriteAll(Descriptor(file), buffer, count, written);
}

bool ReadFromFile(FileHandle file, void* buffer, uint32_t count, uint32_t* read) {
  return ReadAll(Descriptor(file), buffer, count, read);
}

bool SeekFromStart32(FileHandle file, uint32_t offset) {
  // SetFilePointer takes the distance as signed when there is no high part.
  return lseek(Descriptor(file), static_cast<int32_t>(offset), SEEK_SET) != -1;
}

bool SeekFromStart64(FileHandle file, int64_t offset) {
  return lseek(Descriptor(file), static_cast<off_t>(offset), SEEK_SET) != -1;
}

bool FileSize64(FileHandle file, int64_t* size) {
  struct stat status;
  if (fstat(Descriptor(file), &status) != 0) return false;
  *size = static_cast<int64_t>(status.st_size);
  return true;
}

uint32_t LastSystemError() { return static_cast<uint32_t>(errno); }

FileHandle CreateNewFileForWriting(const char16_t* path) {
  return HandleOf(
      open(NativeFilePath(path).c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
}

FileHandle OpenFileForReading(const char16_t* path) {
  return HandleOf(open(NativeFilePath(path).c_str(), O_RDONLY | O_CLOEXEC));
}

void CloseFileHandle(FileHandle file) {
  if (file != InvalidFileHandle()) close(Descriptor(file));
}

bool MoveFileTo(const char16_t* from, const char16_t* to) {
  std::string source = NativeFilePath(from);
  std::string target = NativeFilePath(to);
  if (renameat2(AT_FDCWD, source.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0) {
    return true;
  }
  // MoveFileW moves a file to another volume by copying it and deleting the original.
  if (errno != EXDEV || !CopyNoReplace(source, target)) return false;
  if (unlink(source.c_str()) == 0) return true;
  KeepErrno keep;
  unlink(target.c_str());
  return false;
}

bool CopyFileNoReplace(const char16_t* from, const char16_t* to) {
  return CopyNoReplace(NativeFilePath(from), NativeFilePath(to));
}

bool DeleteFileAt(const char16_t* path) { return unlink(NativeFilePath(path).c_str()) == 0; }

}  // namespace platform
