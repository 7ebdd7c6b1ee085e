// The host's request for a run of audio sample frames (imImportAudio7).
#pragma once

#include <cstdint>

#include "delivery/read_outcome.h"
#include "host_sdk/premiere_importer.h"
#include "open_files/private_file_record.h"

// Works out the run (a negative `position` continues where the last read ended; a run past the
// end is cut) and moves the record's running position, then has the file's stitched source
// write the run straight into `buffers`, one per channel, re-creating a released source first.
// kDelivered whatever the source answers; kNoContext or kNoSource otherwise. Takes the context's
// mutex for the read.
ReadOutcome ReadAudio(PrivateFileRecord* record, int64_t position, uint32_t size, float** buffers);

// imImportAudio7: ReadAudio's outcome as the host's result code; a request without a private
// record counts as a file without a context.
int32_t ImportAudio(imImportAudioRec7* request);
