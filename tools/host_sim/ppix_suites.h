// The host's frame suites over the current Host's frames (host_frames.h): "Premiere PPix Creator
// Suite" 1, which makes frames for writing, "Premiere PPix Suite" 1, which describes them and hands
// out their pixels, and "Premiere PPix 2 Suite" 3, which adds the planes of the YUV 4:2:0 frames.
// A call with a frame that is not live answers kSuiteFailure and is recorded as a frame fault;
// with no Host current every call answers kSuiteFailure. Any thread.
#pragma once

#include "host_sdk/premiere_suites.h"

namespace host_sim {

// Tables of static storage duration, the same for every Host.
const PrSDKPPixCreatorSuite* PPixCreatorSuite();
const PrSDKPPixSuite* PPixSuite();
const PrSDKPPix2Suite* PPix2Suite();

}  // namespace host_sim
