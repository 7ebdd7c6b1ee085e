#include "host_sim/audio_suite.h"

#include "host_sim/unserved_slots.h"

namespace host_sim {
namespace {

constexpr const char* kAudioFunctions[] = {
    "ConvertAndInterleaveTo8BitInteger",      "ConvertAndInterleaveTo16BitInteger",
    "ConvertAndInterleaveTo24BitInteger",     "ConvertAndInterleaveTo32BitInteger",
    "UninterleaveAndConvertFrom8BitInteger",  "UninterleaveAndConvertFrom16BitInteger",
    "UninterleaveAndConvertFrom24BitInteger", "UninterleaveAndConvertFrom32BitInteger"};
constexpr SuiteFunctions kAudio = {kPrSDKAudioSuite, kAudioFunctions};

// The slots are opaque in the importer's declarations; each conversion takes (source,
// destination, channel count, sample-frame count).
template <int kSlot>
OpaqueHostFunction UnservedConversion() {
  return reinterpret_cast<OpaqueHostFunction>(
      &AnswerUnserved<kAudio, kSlot, void*, void*, unsigned int, unsigned int>);
}

}  // namespace

const PrSDKAudioSuite* AudioSuite() {
  static const PrSDKAudioSuite suite = {UnservedConversion<0>(), UnservedConversion<1>(),
                                        UnservedConversion<2>(), UnservedConversion<3>(),
                                        UnservedConversion<4>(), UnservedConversion<5>(),
                                        UnservedConversion<6>(), UnservedConversion<7>()};
  return &suite;
}

}  // namespace host_sim
