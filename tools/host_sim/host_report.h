// What the host saw the plug-in leave behind or do wrong, as plain data: handles still locked or
// never disposed, suites not released as often as acquired, calls into suite functions the host
// does not serve, and misused frames. Live frames are not listed: a frame the plug-in makes is
// handed over in the host's frame slot or to the cache, which own it from then on.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace host_sim {

// A block from the host's memory functions that is still allocated.
struct LeftoverBlock {
  uint64_t serial = 0;     // 1 for the first block the host handed out, 2 for the next, ...
  uint32_t size = 0;       // bytes
  int32_t lock_count = 0;  // always 0 for pointers
};

struct SuiteBalance {
  std::string name;
  int32_t version = 0;
  int64_t acquired = 0;
  int64_t released = 0;
};

// AcquireSuite calls for a name and version the host does not offer.
struct RefusedSuite {
  std::string name;
  int32_t version = 0;
  int64_t requests = 0;
};

struct FailedSuiteCall {
  std::string suite;
  std::string function;
  int64_t calls = 0;
};

struct HostReport {
  std::vector<LeftoverBlock> handles_still_locked;
  std::vector<LeftoverBlock> handles_never_disposed;  // includes the locked ones
  std::vector<LeftoverBlock> pointers_never_disposed;
  std::vector<SuiteBalance> suites_unbalanced;
  std::vector<RefusedSuite> suites_refused;
  std::vector<FailedSuiteCall> failed_suite_calls;
  // Misuse of the memory functions: unlocking an unlocked handle, touching an unknown one, ...
  std::vector<std::string> memory_faults;
  // Misuse of the frame suites: a frame that is not live, planes asked of a packed frame, ...
  std::vector<std::string> frame_faults;

  // True when every list is empty.
  bool clean() const;

  // One line per entry under a heading per list; "clean" when there is nothing to say.
  std::string ToString() const;
};

}  // namespace host_sim
