// The host's suites as the plug-in reaches them: stdParms->piSuites->utilFuncs->getSPBasicSuite().
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>

#include "host_sim/host.h"

namespace {

using host_sim::Host;
using host_sim::HostReport;

class SuiteAccessTest : public ::testing::Test {
 protected:
  SPBasicSuite* basic() { return host_.std_parms()->piSuites->utilFuncs->getSPBasicSuite(); }

  template <typename Suite>
  const Suite* Acquire(const char* name, int32_t version) {
    const void* table = nullptr;
    EXPECT_EQ(basic()->AcquireSuite(name, version, &table), kSPNoError) << name;
    return static_cast<const Suite*>(table);
  }

  const PrSDKTimeSuite* AcquireTime() {
    return Acquire<PrSDKTimeSuite>(kPrSDKTimeSuite, kPrSDKTimeSuiteVersion);
  }

  PrTime TicksPerFrame(PrVideoFrameRates rate) {
    PrTime ticks = 0;
    EXPECT_EQ(AcquireTime()->GetTicksPerVideoFrame(rate, &ticks), suiteError_NoError);
    basic()->ReleaseSuite(kPrSDKTimeSuite, kPrSDKTimeSuiteVersion);
    return ticks;
  }

  Host host_;
};

TEST_F(SuiteAccessTest, ServesEverySuiteTheImporterUsesAndBalancesWhenReleased) {
  const std::pair<const char*, int32_t> suites[] = {
      {kPrSDKPPixCreatorSuite, 1}, {kPrSDKPPixCacheSuite, 6}, {kPrSDKPPixSuite, 1},
      {kPrSDKPPix2Suite, 3},       {kPrSDKTimeSuite, 1},      {kPrSDKAudioSuite, 1}};
  for (const auto& suite : suites) {
    EXPECT_NE(Acquire<void>(suite.first, suite.second), nullptr) << suite.first;
  }
  for (const auto& suite : suites) {
    EXPECT_EQ(basic()->ReleaseSuite(suite.first, suite.second), kSPNoError) << suite.first;
  }
  EXPECT_TRUE(host_.Report().clean()) << host_.Report().ToString();
}

TEST_F(SuiteAccessTest, AnUnknownNameOrVersionAnswersAnErrorAndNoTable) {
  const void* table = &table;
  EXPECT_NE(basic()->AcquireSuite(kPrSDKPPixCacheSuite, 7, &table), kSPNoError);
  EXPECT_EQ(table, nullptr);
  table = &table;
  EXPECT_NE(basic()->AcquireSuite("Premiere Clip Render Suite", 1, &table), kSPNoError);
  EXPECT_EQ(table, nullptr);

  HostReport report = host_.Report();
  EXPECT_TRUE(report.suites_unbalanced.empty()) << "a refused suite is not owed a release";
  ASSERT_EQ(report.suites_refused.size(), 2u);
  EXPECT_EQ(report.suites_refused[0].name, "Premiere Clip Render Suite");
  EXPECT_EQ(report.suites_refused[1].name, kPrSDKPPixCacheSuite);
  EXPECT_EQ(report.suites_refused[1].version, 7);
}

TEST_F(SuiteAccessTest, ReportsSuitesAcquiredMoreOftenThanReleased) {
  AcquireTime();
  AcquireTime();
  basic()->ReleaseSuite(kPrSDKTimeSuite, kPrSDKTimeSuiteVersion);

  HostReport report = host_.Report();
  ASSERT_EQ(report.suites_unbalanced.size(), 1u);
  EXPECT_EQ(report.suites_unbalanced[0].name, kPrSDKTimeSuite);
  EXPECT_EQ(report.suites_unbalanced[0].acquired, 2);
  EXPECT_EQ(report.suites_unbalanced[0].released, 1);
  EXPECT_NE(report.ToString().find("\"Premiere Time Suite\" 1: acquired 2, released 1"),
            std::string::npos)
      << report.ToString();
}

TEST_F(SuiteAccessTest, ReportsSuitesReleasedMoreOftenThanAcquired) {
  Acquire<void>(kPrSDKAudioSuite, kPrSDKAudioSuiteVersion);
  basic()->ReleaseSuite(kPrSDKAudioSuite, kPrSDKAudioSuiteVersion);
  basic()->ReleaseSuite(kPrSDKAudioSuite, kPrSDKAudioSuiteVersion);
  EXPECT_NE(basic()->ReleaseSuite("Premiere Clip Render Suite", 1), kSPNoError);

  HostReport report = host_.Report();
  ASSERT_EQ(report.suites_unbalanced.size(), 2u);
  EXPECT_EQ(report.suites_unbalanced[0].name, "Premiere Audio Suite");
  EXPECT_EQ(report.suites_unbalanced[0].acquired, 1);
  EXPECT_EQ(report.suites_unbalanced[0].released, 2);
  EXPECT_EQ(report.suites_unbalanced[1].acquired, 0);
}

TEST_F(SuiteAccessTest, TimeSuiteCountsTheHostsTicks) {
  PrTime ticks_per_second = 0;
  EXPECT_EQ(AcquireTime()->GetTicksPerSecond(&ticks_per_second), suiteError_NoError);
  EXPECT_EQ(ticks_per_second, 254016000000);
}

TEST_F(SuiteAccessTest, TimeSuiteGivesTheExactFrameDurationOfTheNtscRates) {
  EXPECT_EQ(TicksPerFrame(kVideoFrameRate_NTSC), 8475667200);
  EXPECT_EQ(TicksPerFrame(kVideoFrameRate_NTSC_HD), 4237833600);
  EXPECT_EQ(TicksPerFrame(kVideoFrameRate_24Drop), 10594584000);
}

TEST_F(SuiteAccessTest, TimeSuiteGivesTheFrameDurationOfTheWholeRates) {
  EXPECT_EQ(TicksPerFrame(kVideoFrameRate_24), 10584000000);
  EXPECT_EQ(TicksPerFrame(kVideoFrameRate_PAL), 10160640000);
  EXPECT_EQ(TicksPerFrame(kVideoFrameRate_30), 8467200000);
  EXPECT_EQ(TicksPerFrame(kVideoFrameRate_PAL_HD), 5080320000);
  EXPECT_EQ(TicksPerFrame(kVideoFrameRate_60), 4233600000);
}

TEST_F(SuiteAccessTest, TimeSuiteRefusesARateItDoesNotDefine) {
  PrTime ticks = 0;
  EXPECT_LT(AcquireTime()->GetTicksPerVideoFrame(0, &ticks), 0);
  EXPECT_LT(AcquireTime()->GetTicksPerVideoFrame(9, &ticks), 0);
}

TEST_F(SuiteAccessTest, TimeSuiteRemarksOnAnAudioRateThatDoesNotDivideTheTickRate) {
  const PrSDKTimeSuite* time = AcquireTime();
  PrTime ticks = 0;
  EXPECT_EQ(time->GetTicksPerAudioSample(48000.0f, &ticks), suiteError_NoError);
  EXPECT_EQ(ticks, 5292000);
  EXPECT_EQ(time->GetTicksPerAudioSample(44100.0f, &ticks), suiteError_NoError);
  EXPECT_EQ(ticks, 5760000);
  EXPECT_EQ(time->GetTicksPerAudioSample(47952.0f, &ticks), kPrTimeSuite_RoundedAudioRate);
  EXPECT_EQ(ticks, 5297297);
  EXPECT_LT(time->GetTicksPerAudioSample(0.0f, &ticks), 0);
}

TEST_F(SuiteAccessTest, UnservedSlotsAnswerFailureAndAreCounted) {
  const auto* ppix = Acquire<PrSDKPPixSuite>(kPrSDKPPixSuite, kPrSDKPPixSuiteVersion);
  size_t key_size = 0;
  EXPECT_LT(ppix->GetUniqueKeySize(&key_size), 0);
  EXPECT_LT(ppix->GetUniqueKeySize(&key_size), 0);
  const auto* cache = Acquire<PrSDKPPixCacheSuite>(kPrSDKPPixCacheSuite, 6);
  PPixHand frame = nullptr;
  EXPECT_LT(cache->GetRawPPixFromCache(1, 0, &frame), 0);
  const auto* audio = Acquire<PrSDKAudioSuite>(kPrSDKAudioSuite, kPrSDKAudioSuiteVersion);
  using Conversion = prSuiteError (*)(void*, void*, unsigned int, unsigned int);
  EXPECT_LT(reinterpret_cast<Conversion>(audio->ConvertAndInterleaveTo16BitInteger)(nullptr,
                                                                                    nullptr, 2, 0),
            0);

  HostReport report = host_.Report();
  ASSERT_EQ(report.failed_suite_calls.size(), 3u);
  EXPECT_EQ(report.failed_suite_calls[0].suite, kPrSDKAudioSuite);
  EXPECT_EQ(report.failed_suite_calls[0].function, "ConvertAndInterleaveTo16BitInteger");
  EXPECT_EQ(report.failed_suite_calls[1].suite, kPrSDKPPixCacheSuite);
  EXPECT_EQ(report.failed_suite_calls[1].function, "GetRawPPixFromCache");
  EXPECT_EQ(report.failed_suite_calls[2].function, "GetUniqueKeySize");
  EXPECT_EQ(report.failed_suite_calls[2].calls, 2);
}

template <typename Suite>
bool EverySlotIsAFunction(const Suite* suite) {
  std::array<OpaqueHostFunction, sizeof(Suite) / sizeof(OpaqueHostFunction)> slots;
  std::memcpy(slots.data(), suite, sizeof(Suite));
  for (OpaqueHostFunction slot : slots) {
    if (slot == nullptr) return false;
  }
  return true;
}

}  // namespace
