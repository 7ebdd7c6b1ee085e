// The host's selectors and the handler that serves each one.
#pragma once

#include <cstdint>

#include "host_sdk/premiere_importer.h"

// One handler per served selector: it takes the host's records and returns a host result code.
using SelectorHandler = int32_t (*)(imStdParms* std_parms, void* param1, void* param2);

// Selectors 0 to 53 can be served; every other number is declined.
constexpr int32_t kSelectorCount = 54;

// The handler of `selector`, or null when the selector is declined with imUnsupported.
SelectorHandler HandlerOf(int32_t selector);

// Runs `handler` for `selector`. An exception that escapes it (an allocation that fails, say) is
// logged with the selector and answered with 99 (malUnknownError) instead of unwinding into the
// host.
int32_t CallHandler(int32_t selector, SelectorHandler handler, imStdParms* std_parms, void* param1,
                    void* param2);
