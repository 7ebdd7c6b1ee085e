// The fetch step of a frame request: the file's stitched source writes one picture straight into
// a host frame's memory, with one retry after stitched sources have been freed.
#pragma once

#include <cstdint>

#include "delivery/read_outcome.h"
#include "open_files/private_file_record.h"

// Where the stitched picture goes: for the planar format, the Y, U and V planes with their row
// strides; for packed formats only planes[0], the pixels, and the rows come tightly packed.
struct FrameTarget {
  uint8_t* planes[3] = {nullptr, nullptr, nullptr};
  int strides[3] = {0, 0, 0};
};

// Fetches frame `index` at the file's own size into `target`, re-creating a released source
// first. kDelivered; kNoSource when the source cannot be re-created; kFailed when both tries
// fail. REQUIRES: record->context set. Takes the context's mutex.
ReadOutcome FetchFrame(const PrivateFileRecord* record, int32_t index, FrameTarget* target);
