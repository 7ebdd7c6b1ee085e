// Guarded blocks, as a host that hands buffers to code it cannot trust allocates them.
#include "platform/guarded_memory.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "platform/pages.h"

namespace {

constexpr size_t kLead = 64;
constexpr size_t kAlignment = 16;

// Every size up to two pages, one after the other: more blocks than can be live at once, and every
// position of a block's end within its page. Each block's lead and bytes must be writable, and the
// byte after its slack must be the guard page.
TEST(GuardedMemoryTest, EveryBlockHoldsItsLeadAndItsBytesAndEndsAtItsGuardPage) {
  const size_t page = platform::PageSize();
  for (size_t size = 1; size <= 2 * page; ++size) {
    uint8_t* block = platform::AllocateGuarded(size, kAlignment, kLead);
    ASSERT_NE(block, nullptr) << size;
    std::memset(block - kLead, 0xA5, kLead + size);
    const uintptr_t end = reinterpret_cast<uintptr_t>(block) + size;
    const uintptr_t guard = (end + page - 1) / page * page;
    ASSERT_EQ(reinterpret_cast<uintptr_t>(block) % kAlignment, 0u) << size;
    ASSERT_LT(guard - end, kAlignment) << size;
    ASSERT_EQ(platform::BytesPastGuardedBlock(guard), static_cast<int64_t>(guard - end)) << size;
    platform::FreeGuarded(block);
  }
}

// A block the fault handler could not find is refused; one freed makes room for the next.
TEST(GuardedMemoryTest, TooManyLiveBlocksAreRefusedUntilOneIsFreed) {
  std::vector<uint8_t*> live;
  while (live.size() < 100000) {
    uint8_t* block = platform::AllocateGuarded(1, kAlignment, 0);
    if (block == nullptr) break;
    live.push_back(block);
  }
  ASSERT_LT(live.size(), 100000u) << "never refused";
  platform::FreeGuarded(live.back());
  live.back() = platform::AllocateGuarded(1, kAlignment, 0);
  EXPECT_NE(live.back(), nullptr);
  for (uint8_t* block : live) platform::FreeGuarded(block);
}

}  // namespace
