// The block the host keeps for each open file in a movable memory handle and hands back with
// every request on that file. It begins with the sample file header.
#pragma once

#include <cstddef>
#include <cstdint>

#include "host_sdk/premiere_importer.h"
#include "sample_file/sample_file_header.h"

struct FileContext;

// Long enough for every path Windows opens without the long-path prefix.
constexpr size_t kPrivatePathCapacity = 260;

#pragma pack(push, 1)
struct PrivateFileRecord {
  SampleFileHeader header;
  int64_t audio_position;               // where the last audio read ended, in sample frames
  char16_t path[kPrivatePathCapacity];  // the host's wide path, terminated, cut to fit
  FileContext* context;                 // null until open succeeds
  PlugMemoryFuncs* memory_funcs;
  uint32_t importer_id;       // the first key of every frame-cache call
  SPBasicSuite* basic_suite;  // null means no suites were acquired
  PrSDKPPixCreatorSuite* creator_suite;
  PrSDKPPixCacheSuite* cache_suite;
  PrSDKPPixSuite* ppix_suite;
  PrSDKTimeSuite* time_suite;
  uint8_t reserved[10];
};
#pragma pack(pop)

constexpr uint32_t kPrivateFileRecordSize = 1200;
static_assert(offsetof(PrivateFileRecord, header) == 0, "the header comes first");
static_assert(offsetof(PrivateFileRecord, audio_position) == 602, "PrivateFileRecord layout");
static_assert(offsetof(PrivateFileRecord, path) == 610, "PrivateFileRecord layout");
static_assert(offsetof(PrivateFileRecord, context) == 1130, "PrivateFileRecord layout");
static_assert(offsetof(PrivateFileRecord, time_suite) == 1182, "PrivateFileRecord layout");
static_assert(sizeof(PrivateFileRecord) == kPrivateFileRecordSize, "PrivateFileRecord size");

// The record in a private-data handle; null for a null handle or an empty block.
inline PrivateFileRecord* RecordOf(void* private_data) {
  auto handle = static_cast<PrMemoryHandle>(private_data);
  return handle == nullptr ? nullptr : reinterpret_cast<PrivateFileRecord*>(*handle);
}

// Locks the private-data handle the host keeps in `slot`; when the slot is empty, first allocates a
// zero-filled record through the host's memory functions and stores it there (`*created` tells).
// Zero-filled, so that fields nothing sets read as none (the context) or zero (the signature of
// every file written from the record).
PrMemoryHandle LockPrivateHandle(const PlugMemoryFuncs* memory, void** slot, bool* created);

// Copies a host path into the record's path field, cut to fit and always terminated.
void CopyHostPath(const char16_t* path, char16_t (&field)[kPrivatePathCapacity]);
