// Suite functions the host offers but does not serve: each answers kSuiteFailure and records the
// call with the current Host, so that a table never holds a null slot and a run tells which of
// them the plug-in reached.
#pragma once

#include "host_sim/host.h"

namespace host_sim {

// A suite's name and its functions' names in slot order; both of static storage duration.
struct SuiteFunctions {
  const char* suite;
  const char* const* functions;
};

template <const SuiteFunctions& kSuite, int kSlot, typename... Args>
prSuiteError AnswerUnserved(Args...) {
  if (Host* host = CurrentHost()) {
    host->suites().RecordFailedCall(kSuite.suite, kSuite.functions[kSlot]);
  }
  return kSuiteFailure;
}

// The unserved function for slot `kSlot` of a table, with the slot's own parameters:
// Unserved<kSuite, 3>(&Table::Member).
template <const SuiteFunctions& kSuite, int kSlot, typename Suite, typename... Args>
auto Unserved(prSuiteError (*Suite::*)(Args...)) -> prSuiteError (*)(Args...) {
  return &AnswerUnserved<kSuite, kSlot, Args...>;
}

}  // namespace host_sim
