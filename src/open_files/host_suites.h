// Host suites acquired and released by name and version through the host's basic suite.
#pragma once

#include <cstdint>

#include "host_sdk/premiere_importer.h"

// The host's basic suite, reached through the standard parameters' utility functions.
SPBasicSuite* BasicSuiteOf(const imStdParms* std_parms);

// The suite's table; null when the host does not offer that name and version.
template <typename Suite>
Suite* AcquireSuite(SPBasicSuite* basic, const char* name, int32_t version) {
  const void* table = nullptr;
  basic->AcquireSuite(name, version, &table);
  return static_cast<Suite*>(const_cast<void*>(table));
}

void ReleaseSuite(SPBasicSuite* basic, const char* name, int32_t version);
