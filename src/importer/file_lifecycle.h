// Opening, closing and releasing the host's files (selectors imOpenFile8, imQuietFile and
// imCloseFile), and saving and deleting them (imSaveFile8, imDeleteFile8).
#pragma once

#include <cstdint>

#include "host_sdk/premiere_importer.h"

// Creates the file's stitched source and context and returns the context as the file reference
// through `file_ref` and the record. 0, or 99 when the stitcher cannot open the file; the private
// handle then stays in its slot, locked.
int32_t OpenFile(const imStdParms* std_parms, imFileRef* file_ref, imFileOpenRec8* record);

// Releases the file's source and suites and takes its context off the registry; marks the file
// reference closed. `private_data` is the host's private-data handle. Always 0.
int32_t CloseFile(imFileRef* file_ref, void* private_data);

// Closes the file if still open, releases the record's suites and disposes of the private
// record. Always 0.
int32_t ReleaseFile(imFileRef* file_ref, void* private_data);

// Moves or copies (never over an existing file) a file. 0, or 14 on failure.
int32_t SaveFile8(const imSaveFileRec8* record);

// Deletes a file. 15 when it was deleted, 0 when it was not: inverted against every other
// handler, and kept so because the host has always been answered that way.
int32_t DeleteFile8(const imDeleteFileRec8* record);
