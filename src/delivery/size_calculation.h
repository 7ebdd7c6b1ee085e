// How many bytes a whole or trimmed file takes in the sample file format (imCalcSize8).
#pragma once

#include <cstdint>

#include "host_sdk/premiere_importer.h"
#include "sample_file/sample_file_header.h"

// With a duration: header, frames with their separators and audio of that duration, from the
// private record's header. Without one: the open file's size. 0, or 4 (imMemErr) when the file's
// size cannot be read.
int32_t CalculateSize(imCalcSizeRec* request, const imFileAccessRec8* access);

// The bytes of `duration` (counted in scale over sample-size units) of the clip that `header`
// describes, header included. A header whose channel type is 4 (four or more channels) counts
// -1 channels, so its audio bytes come out negative: the channel-type tables disagree, and the
// host has always been given this size. A size beyond 64 bits is held at the largest (or, with
// negative values, the smallest) 64-bit number.
int64_t SampleFileBytes(const SampleFileHeader& header, int32_t duration, int32_t scale,
                        int32_t sample_size);
