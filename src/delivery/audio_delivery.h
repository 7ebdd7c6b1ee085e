// The host's request for a run of audio sample frames (imImportAudio7).
#pragma once

#include <cstdint>

#include "host_sdk/premiere_importer.h"

// Works out the run (a negative position continues where the last read ended; a run past the
// end is cut), then has the stitched source write it straight into the host's channel buffers.
// 0 whatever the source answers; 6 (imNoContent) when the file has no context or its source
// cannot be re-created.
int32_t ImportAudio(imImportAudioRec7* request);
