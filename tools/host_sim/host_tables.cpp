#include "host_sim/host_tables.h"

#include <cstring>
#include <limits>

#include "host_sdk/premiere_constants.h"
#include "host_sim/host.h"

namespace host_sim {
namespace {

// The answer of the utility functions the importer has no use for.
constexpr int32_t kUtilityFailure = -1;

HostMemory* CurrentMemory() {
  Host* host = CurrentHost();
  return host == nullptr ? nullptr : &host->memory();
}

PrMemoryPtr NewPtr(uint32_t size) {
  HostMemory* memory = CurrentMemory();
  return memory == nullptr ? nullptr : memory->NewPtr(size, false);
}

PrMemoryPtr NewPtrClear(uint32_t size) {
  HostMemory* memory = CurrentMemory();
  return memory == nullptr ? nullptr : memory->NewPtr(size, true);
}

void SetPtrSize(PrMemoryPtr* ptr, uint32_t new_size) {
  HostMemory* memory = CurrentMemory();
  if (memory != nullptr && ptr != nullptr) memory->SetPtrSize(ptr, new_size);
}

int32_t GetPtrSize(PrMemoryPtr ptr) {
  HostMemory* memory = CurrentMemory();
  return memory == nullptr ? -1 : memory->GetPtrSize(ptr);
}

void DisposePtr(PrMemoryPtr ptr) {
  HostMemory* memory = CurrentMemory();
  if (memory != nullptr) memory->DisposePtr(ptr);
}

PrMemoryHandle NewHandle(uint32_t size) {
  HostMemory* memory = CurrentMemory();
  return memory == nullptr ? nullptr : memory->NewHandle(size, false);
}

PrMemoryHandle NewHandleClear(uint32_t size) {
  HostMemory* memory = CurrentMemory();
  return memory == nullptr ? nullptr : memory->NewHandle(size, true);
}

int16_t SetHandleSize(PrMemoryHandle handle, uint32_t new_size) {
  HostMemory* memory = CurrentMemory();
  return memory == nullptr ? -1 : memory->SetHandleSize(handle, new_size);
}

int32_t GetHandleSize(PrMemoryHandle handle) {
  HostMemory* memory = CurrentMemory();
  return memory == nullptr ? -1 : memory->GetHandleSize(handle);
}

void DisposeHandle(PrMemoryHandle handle) {
  HostMemory* memory = CurrentMemory();
  if (memory != nullptr) memory->DisposeHandle(handle);
}

void LockHandle(PrMemoryHandle handle) {
  HostMemory* memory = CurrentMemory();
  if (memory != nullptr) memory->LockHandle(handle);
}

void UnlockHandle(PrMemoryHandle handle) {
  HostMemory* memory = CurrentMemory();
  if (memory != nullptr) memory->UnlockHandle(handle);
}

intptr_t GetSettings(uint32_t) { return 0; }

void GetSerialNumber(char* buffer) {
  if (buffer != nullptr) buffer[0] = '\0';
}

int32_t GetFileTimebase(prFileSpec*, int32_t, prTimebaseRec*) { return kUtilityFailure; }

int32_t GetFileVideo(prFileSpec*, int32_t, PPixHand, prRect*, int32_t) { return kUtilityFailure; }

int32_t GetFileAudioSecond(prFileSpec*, int32_t, char*, int16_t, int32_t, int16_t) {
  return kUtilityFailure;
}

void* GetPlugInResFile() { return nullptr; }

int32_t GetFileVideoBounds(prFileSpec*, prRect*) { return kUtilityFailure; }

SPBasicSuite* GetSPBasicSuite() { return HostBasicSuite(); }

int32_t GetFileExtString(uint32_t, char* buffer, uint32_t buffer_size) {
  if (buffer != nullptr && buffer_size > 0) buffer[0] = '\0';
  return kUtilityFailure;
}

SPErr AcquireSuite(const char* name, int32_t version, const void** suite) {
  if (suite == nullptr) return kSPFailure;
  Host* host = CurrentHost();
  *suite = host == nullptr ? nullptr : host->suites().Acquire(name, version);
  return *suite == nullptr ? kSPFailure : kSPNoError;
}

SPErr ReleaseSuite(const char* name, int32_t version) {
  Host* host = CurrentHost();
  return host != nullptr && host->suites().Release(name, version) ? kSPNoError : kSPFailure;
}

int32_t IsEqual(const char* token1, const char* token2) {
  return token1 != nullptr && token2 != nullptr && std::strcmp(token1, token2) == 0;
}

// The basic suite's blocks come from the same allocator as the memory functions' pointers.
SPErr AllocateBlock(size_t size, void** block) {
  HostMemory* memory = CurrentMemory();
  if (memory == nullptr || block == nullptr || size > std::numeric_limits<uint32_t>::max()) {
    return kSPFailure;
  }
  *block = memory->NewPtr(static_cast<uint32_t>(size), false);
  return *block == nullptr ? kSPFailure : kSPNoError;
}

SPErr FreeBlock(void* block) {
  HostMemory* memory = CurrentMemory();
  return memory != nullptr && memory->DisposePtr(static_cast<PrMemoryPtr>(block)) ? kSPNoError
                                                                                  : kSPFailure;
}

SPErr ReallocateBlock(void* block, size_t new_size, void** new_block) {
  HostMemory* memory = CurrentMemory();
  if (memory == nullptr || new_block == nullptr ||
      new_size > std::numeric_limits<uint32_t>::max()) {
    return kSPFailure;
  }
  PrMemoryPtr moved = static_cast<PrMemoryPtr>(block);
  if (!memory->SetPtrSize(&moved, static_cast<uint32_t>(new_size))) return kSPFailure;
  *new_block = moved;
  return kSPNoError;
}

SPErr Undefined() { return kSPFailure; }

}  // namespace

PlugMemoryFuncs* HostMemoryFunctions() {
  static PlugMemoryFuncs functions = {NewPtr,      SetPtrSize,     GetPtrSize,    DisposePtr,
                                      NewHandle,   SetHandleSize,  GetHandleSize, DisposeHandle,
                                      NewPtrClear, NewHandleClear, LockHandle,    UnlockHandle};
  return &functions;
}

PlugUtilFuncs* HostUtilityFunctions() {
  static PlugUtilFuncs functions = {GetSettings,        GetSerialNumber,    GetFileTimebase,
                                    GetFileVideo,       GetFileAudioSecond, GetPlugInResFile,
                                    GetFileVideoBounds, GetSPBasicSuite,    GetFileExtString};
  return &functions;
}

SPBasicSuite* HostBasicSuite() {
  // IsEqual's boolean has no declared width in the importer's table; an int answers any width.
  static SPBasicSuite suite = {
      AcquireSuite,  ReleaseSuite, reinterpret_cast<OpaqueHostFunction>(&IsEqual),
      AllocateBlock, FreeBlock,    ReallocateBlock,
      Undefined};
  return &suite;
}

}  // namespace host_sim
