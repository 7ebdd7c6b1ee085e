#include "platform/pages.h"

#include <sys/mman.h>
#include <unistd.h>

namespace platform {

size_t PageSize() {
  static const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
  return page;
}

void* ReservePages(size_t bytes) {
  void* pages = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  return pages == MAP_FAILED ? nullptr : pages;
}

bool ProtectPage(void* page) { return mprotect(page, PageSize(), PROT_NONE) == 0; }

void ReleasePages(void* pages, size_t bytes) { munmap(pages, bytes); }

}  // namespace platform
