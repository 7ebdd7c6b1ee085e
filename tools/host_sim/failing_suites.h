// Suite tables whose every function answers kSuiteFailure and records the call with the current
// Host: the four frame suites, until the host's frame store serves them, and the Audio suite,
// which the importer acquires but never calls. No slot is ever null.
#pragma once

#include "host_sdk/premiere_suites.h"

namespace host_sim {

// Tables of static storage duration.
const PrSDKPPixCreatorSuite* FailingPPixCreatorSuite();
const PrSDKPPixCacheSuite* FailingPPixCacheSuite();
const PrSDKPPixSuite* FailingPPixSuite();
const PrSDKPPix2Suite* FailingPPix2Suite();
const PrSDKAudioSuite* FailingAudioSuite();

}  // namespace host_sim
