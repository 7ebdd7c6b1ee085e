// How a frame or sound request ended, in the plug-in's own terms. The selector handlers turn it
// into the host's result code with HostResultOf, and nowhere else.
#pragma once

#include <cstdint>

enum class ReadOutcome {
  kDelivered,  // written into the host's buffers, or found in the host's frame cache
  kNoContext,  // the file has no context: its open failed
  kNoSource,   // a released stitched source could not be made again
  kFailed,     // the source could not stitch the frame, or the host made no frame to stitch into
};

// 0; 6 (imNoContent) for kNoContext and kNoSource; 99 (malUnknownError) for kFailed.
int32_t HostResultOf(ReadOutcome outcome);
