// Readings of the host interface that no documentation at hand confirms. The host simulator
// shares these declarations, so a wrong one passes every local test and fails only in Premiere
// Pro. Each is kept in one declaration, to be checked the first time the plug-in runs in a real
// host and corrected here in one line if the host disagrees.
#pragma once

#include <cstdint>

#include "host_sdk/premiere_constants.h"
#include "host_sdk/premiere_file_records.h"
#include "host_sdk/premiere_types.h"

// imOpenFile8: the file-reference slot in param1, the open record in param2. The host's own
// notes (older than its current interface) give the reverse order.
// Check: open a project on a real host; OpenRecord(...)->fileinfo.filepath must be the clip's path.
inline imFileRef* OpenFileRefSlot(void* param1, void* /*param2*/) {
  return static_cast<imFileRef*>(param1);
}
inline imFileOpenRec8* OpenRecord(void* /*param1*/, void* param2) {
  return static_cast<imFileOpenRec8*>(param2);
}

// imQuietFile: a pointer to the file-reference slot in param1, through which the importer marks
// the file closed. The host's older notes say the reference is passed by value.
// Check: the first time a real host quiets a file, writing kBadFileRef through this must not
// fault.
inline imFileRef* QuietFileRefSlot(void* param1) { return static_cast<imFileRef*>(param1); }

// imCloseFile: a pointer to the file-reference slot in param1 (this one the host documents).
inline imFileRef* CloseFileRefSlot(void* param1) { return static_cast<imFileRef*>(param1); }

// The format the importer announces and the host creates frames of: planar 8-bit 4:2:0, Rec. 709,
// full range, whose three planes come from the PPix 2 suite's GetYUV420PlanarBuffers. The host
// documents that call for the MPEG-2 planar formats; this is the MPEG-4 family's counterpart.
// Check: the first frame on a real host shows correct colours and levels.
constexpr PrPixelFormat kAnnouncedPixelFormat =
    PrPixelFormat_YUV_420_MPEG4_FRAME_PICTURE_PLANAR_8u_709_FullRange;

// The frame layout written for every stereoscopic clip: over-under, left eye on top, which must
// match the stitched picture.
// Check: in the host's VR view each eye shows one of the two stacked halves.
constexpr PrIVFrameLayout kStereoscopicFrameLayout = kPrIVFrameLayout_StereoscopicOverUnder;

// Packed formats (BGRA, VUYA) are filled top row first, without a flip, although the host's
// documentation gives them a bottom-left origin. Matters only if the host asks for a packed
// format.
// Check: log the row bytes the host reports for a packed frame; negative means bottom-up.
constexpr bool kPackedFramesTopRowFirst = true;
