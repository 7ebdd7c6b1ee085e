#include "host_sim/time_suite.h"

#include <cmath>

#include "host_sdk/premiere_constants.h"
#include "host_sim/suite_registry.h"

namespace host_sim {
namespace {

constexpr PrTime kTicksPerSecond = 254016000000;

struct FrameRate {
  int64_t frames;
  int64_t seconds;  // frames per that many seconds: 30000 frames in 1001 seconds is NTSC
};

// Zero frames for a code the host does not define.
FrameRate FrameRateOf(PrVideoFrameRates rate) {
  switch (rate) {
    case kVideoFrameRate_24Drop:
      return {24000, 1001};
    case kVideoFrameRate_24:
      return {24, 1};
    case kVideoFrameRate_PAL:
      return {25, 1};
    case kVideoFrameRate_NTSC:
      return {30000, 1001};
    case kVideoFrameRate_30:
      return {30, 1};
    case kVideoFrameRate_PAL_HD:
      return {50, 1};
    case kVideoFrameRate_NTSC_HD:
      return {60000, 1001};
    case kVideoFrameRate_60:
      return {60, 1};
    default:
      return {0, 1};
  }
}

prSuiteError GetTicksPerSecond(PrTime* ticks_per_second) {
  if (ticks_per_second == nullptr) return kSuiteFailure;
  *ticks_per_second = kTicksPerSecond;
  return suiteError_NoError;
}

prSuiteError GetTicksPerVideoFrame(PrVideoFrameRates rate, PrTime* ticks_per_frame) {
  FrameRate frame_rate = FrameRateOf(rate);
  if (ticks_per_frame == nullptr || frame_rate.frames == 0) return kSuiteFailure;
  // Every defined rate divides the tick rate exactly.
  *ticks_per_frame = kTicksPerSecond * frame_rate.seconds / frame_rate.frames;
  return suiteError_NoError;
}

prSuiteError GetTicksPerAudioSample(float sample_rate, PrTime* ticks_per_sample) {
  // A rate above the tick rate would have no tick per sample.
  if (ticks_per_sample == nullptr || !(sample_rate > 0.0f) ||
      sample_rate > static_cast<float>(kTicksPerSecond)) {
    return kSuiteFailure;
  }
  double rate = sample_rate;
  double exact = static_cast<double>(kTicksPerSecond) / rate;
  *ticks_per_sample = static_cast<PrTime>(std::llround(exact));
  bool whole_rate = std::floor(rate) == rate;
  if (whole_rate && kTicksPerSecond % static_cast<int64_t>(rate) == 0) return suiteError_NoError;
  return kPrTimeSuite_RoundedAudioRate;
}

}  // namespace

const PrSDKTimeSuite* TimeSuite() {
  static const PrSDKTimeSuite suite = {GetTicksPerSecond, GetTicksPerVideoFrame,
                                       GetTicksPerAudioSample};
  return &suite;
}

}  // namespace host_sim
