// Memory that ends where an inaccessible page begins, for a host that hands out buffers to code
// it does not trust: a write past the end faults at its first byte, however far it would have
// gone. Live blocks are registered, so that a fault handler can tell how far past which block's end
// a faulting write landed.
#pragma once

#include <cstddef>
#include <cstdint>

namespace platform {

// A `size`-byte block aligned to `alignment` (a power of two, at most a page), ending fewer than
// `alignment` bytes before an inaccessible page, with at least `lead` accessible bytes before it.
// Null when the memory cannot be had or too many blocks are live. Any thread.
uint8_t* AllocateGuarded(size_t size, size_t alignment, size_t lead);

// Frees a block of AllocateGuarded; null does nothing. Any thread.
void FreeGuarded(uint8_t* block);

// When `address` lies in the inaccessible page after a live block: how many bytes past the block's
// end. Otherwise -1. Safe in a signal handler or an exception filter.
int64_t BytesPastGuardedBlock(uintptr_t address);

}  // namespace platform
