#include "host_sim/host_memory.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace host_sim {
namespace {

void SortBySerial(std::vector<LeftoverBlock>* blocks) {
  std::sort(blocks->begin(), blocks->end(),
            [](const LeftoverBlock& a, const LeftoverBlock& b) { return a.serial < b.serial; });
}

}  // namespace

bool HostMemory::AllocateBlock(uint32_t size, bool clear, Block* block) {
  // A zero-byte request still gets a block of its own, so that every pointer is distinct.
  block->bytes.reset(new (std::nothrow) char[std::max<uint32_t>(size, 1)]);
  if (block->bytes == nullptr) return false;
  if (clear) std::memset(block->bytes.get(), 0, size);
  block->size = size;
  block->serial = next_serial_++;
  return true;
}

void HostMemory::RecordFault(const std::string& fault) { faults_.push_back(fault); }

HostMemory::Handle* HostMemory::FindHandle(PrMemoryHandle handle, const char* function) {
  auto found = handles_.find(handle);
  if (found != handles_.end()) return &found->second;
  RecordFault(std::string(function) + " on an unknown handle");
  return nullptr;
}

PrMemoryPtr HostMemory::NewPtr(uint32_t size, bool clear) {
  std::lock_guard<std::mutex> lock(mutex_);
  Block block;
  if (!AllocateBlock(size, clear, &block)) return nullptr;
  PrMemoryPtr ptr = block.bytes.get();
  pointers_.emplace(ptr, std::move(block));
  return ptr;
}

bool HostMemory::SetPtrSize(PrMemoryPtr* ptr, uint32_t new_size) {
  std::lock_guard<std::mutex> lock(mutex_);
  auto found = pointers_.find(*ptr);
  if (found == pointers_.end()) {
    RecordFault("setPtrSize on an unknown pointer");
    return false;
  }
  Block resized;
  if (!AllocateBlock(new_size, true, &resized)) return false;
  std::memcpy(resized.bytes.get(), found->second.bytes.get(),
              std::min(new_size, found->second.size));
  resized.serial = found->second.serial;
  pointers_.erase(found);
  *ptr = resized.bytes.get();
  pointers_.emplace(*ptr, std::move(resized));
  return true;
}

int32_t HostMemory::GetPtrSize(PrMemoryPtr ptr) {
  std::lock_guard<std::mutex> lock(mutex_);
  auto found = pointers_.find(ptr);
  if (found != pointers_.end()) return static_cast<int32_t>(found->second.size);
  RecordFault("getPtrSize on an unknown pointer");
  return -1;
}

bool HostMemory::DisposePtr(PrMemoryPtr ptr) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (pointers_.erase(ptr) == 1) return true;
  RecordFault("disposePtr on an unknown pointer");
  return false;
}

PrMemoryHandle HostMemory::NewHandle(uint32_t size, bool clear) {
  std::lock_guard<std::mutex> lock(mutex_);
  Handle handle;
  handle.master.reset(new (std::nothrow) char*);
  if (handle.master == nullptr || !AllocateBlock(size, clear, &handle.block)) return nullptr;
  *handle.master = handle.block.bytes.get();
  PrMemoryHandle key = handle.master.get();
  handles_.emplace(key, std::move(handle));
  return key;
}

int16_t HostMemory::SetHandleSize(PrMemoryHandle handle, uint32_t new_size) {
  std::lock_guard<std::mutex> lock(mutex_);
  Handle* found = FindHandle(handle, "setHandleSize");
  if (found == nullptr || found->lock_count > 0) return -1;
  Block resized;
  if (!AllocateBlock(new_size, true, &resized)) return -1;
  std::memcpy(resized.bytes.get(), found->block.bytes.get(), std::min(new_size, found->block.size));
  resized.serial = found->block.serial;
  found->block = std::move(resized);
  *found->master = found->block.bytes.get();
  return 0;
}

int32_t HostMemory::GetHandleSize(PrMemoryHandle handle) {
  std::lock_guard<std::mutex> lock(mutex_);
  Handle* found = FindHandle(handle, "getHandleSize");
  return found == nullptr ? -1 : static_cast<int32_t>(found->block.size);
}

void HostMemory::DisposeHandle(PrMemoryHandle handle) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (FindHandle(handle, "disposeHandle") != nullptr) handles_.erase(handle);
}

void HostMemory::LockHandle(PrMemoryHandle handle) {
  std::lock_guard<std::mutex> lock(mutex_);
  Handle* found = FindHandle(handle, "lockHandle");
  if (found != nullptr) ++found->lock_count;
}

void HostMemory::UnlockHandle(PrMemoryHandle handle) {
  std::lock_guard<std::mutex> lock(mutex_);
  Handle* found = FindHandle(handle, "unlockHandle");
  if (found == nullptr) return;
  if (found->lock_count == 0) {
    RecordFault("unlockHandle on handle #" + std::to_string(found->block.serial) +
                ", which is not locked");
    return;
  }
  --found->lock_count;
}

int32_t HostMemory::LockCount(PrMemoryHandle handle) const {
  std::lock_guard<std::mutex> lock(mutex_);
  auto found = handles_.find(handle);
  return found == handles_.end() ? -1 : found->second.lock_count;
}

void HostMemory::AddToReport(HostReport* report) const {
  std::lock_guard<std::mutex> lock(mutex_);
  for (const auto& entry : handles_) {
    const Handle& handle = entry.second;
    report->handles_never_disposed.push_back(
        {handle.block.serial, handle.block.size, handle.lock_count});
  }
  SortBySerial(&report->handles_never_disposed);
  for (const LeftoverBlock& block : report->handles_never_disposed) {
    if (block.lock_count > 0) report->handles_still_locked.push_back(block);
  }
  for (const auto& entry : pointers_) {
    report->pointers_never_disposed.push_back({entry.second.serial, entry.second.size, 0});
  }
  SortBySerial(&report->pointers_never_disposed);
  report->memory_faults = faults_;
}

}  // namespace host_sim
