#include "open_files/private_file_record.h"

#include <cstring>

PrMemoryHandle LockPrivateHandle(const PlugMemoryFuncs* memory, void** slot, bool* created) {
  auto handle = static_cast<PrMemoryHandle>(*slot);
  *created = handle == nullptr;
  if (*created) {
    handle = memory->newHandle(kPrivateFileRecordSize);
    *slot = handle;
  }
  memory->lockHandle(handle);
  if (*created) std::memset(*handle, 0, kPrivateFileRecordSize);
  return handle;
}

void CopyHostPath(const char16_t* path, char16_t (&field)[kPrivatePathCapacity]) {
  size_t length = 0;
  for (; path[length] != 0 && length + 1 < kPrivatePathCapacity; ++length) {
    field[length] = path[length];
  }
  field[length] = 0;
}
