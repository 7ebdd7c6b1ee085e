#include "platform/guarded_memory.h"

#include <array>
#include <atomic>

#include "platform/pages.h"

namespace platform {
namespace {

// Far more than a host keeps at once; a block that finds no slot is refused rather than left
// unknown to the fault handler.
constexpr size_t kSlots = 4096;
constexpr uintptr_t kClaimed = 1;

// One live block. `block` is 0 for a free slot and kClaimed while its other fields are written;
// the fault handler reads a slot only once `block` holds the block's address.
struct Slot {
  std::atomic<uintptr_t> block{0};
  uintptr_t block_end = 0;
  uintptr_t mapping = 0;
  size_t mapping_size = 0;
};

std::array<Slot, kSlots> slots;

size_t RoundUp(size_t value, size_t step) { return (value + step - 1) / step * step; }

bool Register(uint8_t* block, size_t size, uint8_t* mapping, size_t mapping_size) {
  for (Slot& slot : slots) {
    uintptr_t expected = 0;
    if (!slot.block.compare_exchange_strong(expected, kClaimed)) continue;
    slot.block_end = reinterpret_cast<uintptr_t>(block) + size;
    slot.mapping = reinterpret_cast<uintptr_t>(mapping);
    slot.mapping_size = mapping_size;
    slot.block.store(reinterpret_cast<uintptr_t>(block), std::memory_order_release);
    return true;
  }
  return false;
}

}  // namespace

uint8_t* AllocateGuarded(size_t size, size_t alignment, size_t lead) {
  const size_t page = PageSize();
  if (alignment == 0 || alignment > page || (alignment & (alignment - 1)) != 0) return nullptr;
  const size_t usable = RoundUp(lead + size + alignment, page);
  const size_t mapping_size = usable + page;
  auto* mapping = static_cast<uint8_t*>(ReservePages(mapping_size));
  if (mapping == nullptr) return nullptr;
  if (!ProtectPage(mapping + usable)) {
    ReleasePages(mapping, mapping_size);
    return nullptr;
  }
  const uintptr_t guard = reinterpret_cast<uintptr_t>(mapping + usable);
  uint8_t* block = reinterpret_cast<uint8_t*>((guard - size) & ~(uintptr_t{alignment} - 1));
  if (!Register(block, size, mapping, mapping_size)) {
    ReleasePages(mapping, mapping_size);
    return nullptr;
  }
  return block;
}

void FreeGuarded(uint8_t* block) {
  if (block == nullptr) return;
  for (Slot& slot : slots) {
    if (slot.block.load(std::memory_order_acquire) != reinterpret_cast<uintptr_t>(block)) continue;
    ReleasePages(reinterpret_cast<void*>(slot.mapping), slot.mapping_size);
    slot.block.store(0, std::memory_order_release);
    return;
  }
}

int64_t BytesPastGuardedBlock(uintptr_t address) {
  const size_t page = PageSize();
  for (const Slot& slot : slots) {
    if (slot.block.load(std::memory_order_acquire) <= kClaimed) continue;
    const uintptr_t guard = slot.mapping + slot.mapping_size - page;
    if (address >= guard && address < guard + page) {
      return static_cast<int64_t>(address - slot.block_end);
    }
  }
  return -1;
}

}  // namespace platform
