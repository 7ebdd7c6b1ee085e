// Re-creation of a stitched source that the registry has released, before a picture or sound
// read on it.
#pragma once

#include <cstdint>

#include "open_files/file_context.h"

// Re-creates the context's source when it is empty (refilling its MediaInfo). False, after
// logging "create pr source failed on socket request!" at `log_line`, when the stitcher cannot.
// REQUIRES: context->mutex held.
bool EnsureSource(FileContext* context, int32_t log_line);
