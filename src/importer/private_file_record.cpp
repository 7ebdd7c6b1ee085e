#include "importer/private_file_record.h"

void CopyHostPath(const char16_t* path, char16_t (&field)[kPrivatePathCapacity]) {
  size_t length = 0;
  for (; path[length] != 0 && length + 1 < kPrivatePathCapacity; ++length) {
    field[length] = path[length];
  }
  field[length] = 0;
}
