// Writing a trimmed copy of a file in the sample file format (imTrimFile8).
#pragma once

#include <cstdint>

#include "host_sdk/premiere_importer.h"

// The whole range is copied as it stands (never over an existing file). A part is written as a
// new file: the private record's header with the trimmed counts, the frames of the range read
// from the source file, each followed by "++++", then each kept channel's samples of the range.
// The range counts frames from `trimIn` (`duration` 0 keeps the rest of the clip); without video
// it counts sample frames. The host's progress callback hears after every frame (0 to 50 of 100)
// and every block of audio (50 to 100); an answer of 0 stops the copy, keeping the frames copied
// so far, without sound, under a header that counts just them.
// 0, also after a stop; 22 (imDiskErr) when the range is empty or the target cannot be made,
// read for or written, and a target left unfinished by such a failure is deleted.
int32_t TrimFile(const imFileAccessRec8* source, const imTrimFileRec8* request);
