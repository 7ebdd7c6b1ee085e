#include "platform/pages.h"

#include <windows.h>

namespace platform {

size_t PageSize() {
  static const size_t page = [] {
    SYSTEM_INFO info;
    GetSystemInfo(&info);
    return static_cast<size_t>(info.dwPageSize);
  }();
  return page;
}

void* ReservePages(size_t bytes) {
  return VirtualAlloc(nullptr, bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
}

bool ProtectPage(void* page) {
  DWORD previous = 0;
  return VirtualProtect(page, PageSize(), PAGE_NOACCESS, &previous) != 0;
}

void ReleasePages(void* pages, size_t /*bytes*/) { VirtualFree(pages, 0, MEM_RELEASE); }

}  // namespace platform
