// The last words of a process that runs code it cannot trust: when it faults, a handler of its own
// is told what happened before the system ends it as it would have anyway, so that the parent
// still sees the signal or the exception code.
#pragma once

#include <cstdint>
#include <string>

namespace platform {

struct FaultFacts {
  const char* kind = "";       // "SIGSEGV", "EXCEPTION_ACCESS_VIOLATION", ...: static text
  uint32_t code = 0;           // the signal number or the exception code
  uintptr_t instruction = 0;   // the faulting instruction's address; 0 when unknown
  uintptr_t data_address = 0;  // the address touched, for an access fault
  bool has_data_address = false;
};

// Must be safe in a signal handler: no allocation, no locks, no buffered output.
using FaultHandler = void (*)(const FaultFacts& facts);

// Calls `handler` on a segmentation, bus, arithmetic or illegal-instruction fault, an abort, or
// (Windows) any exception nobody handles, then lets the process end. Also keeps the system from
// showing a crash dialog. Call once, early.
void OnFault(FaultHandler handler);

// The address range of the loaded module whose file name (without its folder) is `file_name`;
// false when none is loaded.
bool LoadedModuleRange(const std::string& file_name, uintptr_t* start, uintptr_t* end);

}  // namespace platform
