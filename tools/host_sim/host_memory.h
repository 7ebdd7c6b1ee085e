// The host's allocator behind PlugMemoryFuncs: plain pointers, and handles (a master pointer to a
// block, reached as *handle) with a lock count each. Misuse is recorded rather than punished, so
// that a run ends with a list of what the plug-in got wrong; whatever the plug-in leaves is freed
// with the HostMemory. Thread-safe: host threads and the plug-in's own threads call it
// concurrently.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "host_sdk/premiere_types.h"
#include "host_sim/host_report.h"

namespace host_sim {

class HostMemory {
 public:
  HostMemory() = default;
  HostMemory(const HostMemory&) = delete;
  HostMemory& operator=(const HostMemory&) = delete;

  // Null when the block cannot be had. `clear` zero-fills it.
  PrMemoryPtr NewPtr(uint32_t size, bool clear);
  // Moves the block, keeping its bytes, and updates *ptr. False, with *ptr as it was, when the
  // pointer is unknown or the new block cannot be had.
  bool SetPtrSize(PrMemoryPtr* ptr, uint32_t new_size);
  // -1 for an unknown pointer.
  int32_t GetPtrSize(PrMemoryPtr ptr);
  // False (and a recorded fault) for an unknown pointer.
  bool DisposePtr(PrMemoryPtr ptr);

  // Null when the block cannot be had. `clear` zero-fills it.
  PrMemoryHandle NewHandle(uint32_t size, bool clear);
  // 0 on success. Refuses (-1) a locked handle, whose block must not move, and an unknown one.
  int16_t SetHandleSize(PrMemoryHandle handle, uint32_t new_size);
  // -1 for an unknown handle.
  int32_t GetHandleSize(PrMemoryHandle handle);
  // Disposing of a locked handle is legal, as in the host.
  void DisposeHandle(PrMemoryHandle handle);
  void LockHandle(PrMemoryHandle handle);
  // Unlocking a handle that is not locked leaves the count at 0 and is recorded as a fault.
  void UnlockHandle(PrMemoryHandle handle);

  // The handle's lock count, or -1 when it is not a live handle.
  int32_t LockCount(PrMemoryHandle handle) const;

  // Fills the memory lists of `report`, in the order the blocks were handed out.
  void AddToReport(HostReport* report) const;

 private:
  struct Block {
    std::unique_ptr<char[]> bytes;
    uint32_t size = 0;
    uint64_t serial = 0;
  };
  struct Handle {
    std::unique_ptr<char*> master;  // the address the plug-in holds; *master is the block
    Block block;
    int32_t lock_count = 0;
  };

  // REQUIRES: mutex_ held.
  bool AllocateBlock(uint32_t size, bool clear, Block* block);
  void RecordFault(const std::string& fault);
  Handle* FindHandle(PrMemoryHandle handle, const char* function);

  mutable std::mutex mutex_;
  std::unordered_map<PrMemoryPtr, Block> pointers_;     // guarded by mutex_
  std::unordered_map<PrMemoryHandle, Handle> handles_;  // guarded by mutex_
  std::vector<std::string> faults_;                     // guarded by mutex_
  uint64_t next_serial_ = 1;                            // guarded by mutex_
};

}  // namespace host_sim
