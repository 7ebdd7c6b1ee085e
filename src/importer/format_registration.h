// The file type and the pixel format that the importer registers with the host.
#pragma once

#include <cstdint>

#include "host_sdk/premiere_importer.h"

// Index 0 is the "Quorvel Omni Project" type with the extension "qvo"; every other index
// answers imBadFormatIndex and leaves the record alone.
int32_t GetIndFormat(int32_t index, imIndFormatRec* record);

// Index 0 is the planar YUV 4:2:0 format; every other index answers imBadFormatIndex.
int32_t GetIndPixelFormat(int32_t index, imIndPixelFormatRec* record);
