#include "host_sim/host.h"

#include <atomic>
#include <stdexcept>

#include "host_sim/audio_suite.h"
#include "host_sim/frame_cache_suite.h"
#include "host_sim/host_tables.h"
#include "host_sim/ppix_suites.h"
#include "host_sim/time_suite.h"

namespace host_sim {
namespace {

// The newest piSuites version the host defines.
constexpr int32_t kPiSuitesVersion = 9;

std::atomic<Host*> current_host{nullptr};

void OfferHostSuites(SuiteRegistry* suites) {
  suites->Offer(kPrSDKPPixCreatorSuite, kPrSDKPPixCreatorSuiteVersion, PPixCreatorSuite());
  suites->Offer(kPrSDKPPixCacheSuite, kPrSDKPPixCacheSuiteVersion, FrameCacheSuite());
  suites->Offer(kPrSDKPPixSuite, kPrSDKPPixSuiteVersion, PPixSuite());
  suites->Offer(kPrSDKPPix2Suite, kPrSDKPPix2SuiteVersion, PPix2Suite());
  suites->Offer(kPrSDKTimeSuite, kPrSDKTimeSuiteVersion, TimeSuite());
  suites->Offer(kPrSDKAudioSuite, kPrSDKAudioSuiteVersion, AudioSuite());
}

}  // namespace

Host::Host(int32_t interface_version) {
  Host* none = nullptr;
  if (!current_host.compare_exchange_strong(none, this)) {
    throw std::logic_error("another Host is current; only one exists at a time");
  }
  OfferHostSuites(&suites_);
  pi_suites_.piInterfaceVer = kPiSuitesVersion;
  pi_suites_.memFuncs = HostMemoryFunctions();
  pi_suites_.utilFuncs = HostUtilityFunctions();
  std_parms_.imInterfaceVer = interface_version;
  std_parms_.funcs = &callback_functions_;
  std_parms_.piSuites = &pi_suites_;
}

Host::~Host() { current_host.store(nullptr); }

HostReport Host::Report() const {
  HostReport report;
  memory_.AddToReport(&report);
  suites_.AddToReport(&report);
  frames_.AddToReport(&report);
  return report;
}

Host* CurrentHost() { return current_host.load(); }

}  // namespace host_sim
