// The host's requests for pictures: one frame (imGetSourceVideo) and the preferred frame size
// (imGetPreferredFrameSize).
#pragma once

#include <cstdint>

#include "host_sdk/premiere_importer.h"

// Answers the frame at `request->inFrameTime` from the host's frame cache, or has the stitched
// source write it into a new host frame and adds that to the cache. The new frame has the file's
// own size, whatever size the host wants, and that size is written into the host's wanted format
// entry, so that the stitcher never writes past the host's buffer. 0; 6 (imNoContent) when the
// file has no context or its source cannot be re-created; 99 when both tries fail (the new frame
// then stays in the host's slot, uncached) or the host makes no frame of the wanted format.
int32_t GetSourceVideo(const imStdParms* std_parms, imSourceVideoRec* request);

// One size is offered: the file's own, at index 0. Other indices answer 5 (imOtherErr).
int32_t GetPreferredFrameSize(imPreferredFrameSizeRec* request);
