// Whole pages of memory straight from the system, for the guarded blocks.
#pragma once

#include <cstddef>

namespace platform {

size_t PageSize();

// `bytes` (a multiple of the page size) of readable and writable memory, or null.
void* ReservePages(size_t bytes);

// Makes the page at `page` inaccessible; false when the system refuses.
bool ProtectPage(void* page);

// Gives back what ReservePages gave.
void ReleasePages(void* pages, size_t bytes);

}  // namespace platform
