// What the host learns of a file before it asks for pictures or sound (selector imGetInfo8).
#pragma once

#include <cstdint>

#include "host_sdk/premiere_importer.h"

// Fills the private record's header and the host's information record from the file's
// MediaInfo, acquires the host suites, and publishes the MediaInfo in the MediaInfoCache.
// 0, or 2 (imBadFile) when the record has no context or its header version is not 5; the
// private handle then stays locked.
int32_t GetFileInfo(const imStdParms* std_parms, const imFileAccessRec8* access,
                    imFileInfoRec8* info);
