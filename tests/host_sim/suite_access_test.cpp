// The host's suites as the plug-in reaches them: stdParms->piSuites->utilFuncs->getSPBasicSuite().
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "host_sim/host.h"

namespace {

using host_sim::Host;
using host_sim::HostReport;
using ::testing::ElementsAre;
using ::testing::FieldsAre;
using ::testing::HasSubstr;

class SuiteAccessTest : public ::testing::Test {
 protected:
  SPBasicSuite* basic() { return host_.std_parms()->piSuites->utilFuncs->getSPBasicSuite(); }

  template <typename Suite>
  const Suite* Acquire(const char* name, int32_t version) {
    const void* table = nullptr;
    EXPECT_EQ(basic()->AcquireSuite(name, version, &table), kSPNoError) << name;
    return static_cast<const Suite*>(table);
  }

  Host host_;
};

TEST_F(SuiteAccessTest, AnUnknownNameOrVersionAnswersAnErrorAndNoTable) {
  const void* table = &table;
  EXPECT_NE(basic()->AcquireSuite(kPrSDKPPixCacheSuite, 7, &table), kSPNoError);
  EXPECT_EQ(table, nullptr);
  table = &table;
  EXPECT_NE(basic()->AcquireSuite("Premiere Clip Render Suite", 1, &table), kSPNoError);
  EXPECT_EQ(table, nullptr);

  HostReport report = host_.Report();
  EXPECT_TRUE(report.suites_unbalanced.empty()) << "a refused suite is not owed a release";
  EXPECT_THAT(report.suites_refused, ElementsAre(FieldsAre("Premiere Clip Render Suite", 1, 1),
                                                 FieldsAre(kPrSDKPPixCacheSuite, 7, 1)));
}

TEST_F(SuiteAccessTest, ReportsSuitesAcquiredAndReleasedUnequallyOften) {
  Acquire<PrSDKTimeSuite>(kPrSDKTimeSuite, kPrSDKTimeSuiteVersion);
  Acquire<PrSDKTimeSuite>(kPrSDKTimeSuite, kPrSDKTimeSuiteVersion);
  basic()->ReleaseSuite(kPrSDKTimeSuite, kPrSDKTimeSuiteVersion);
  Acquire<void>(kPrSDKAudioSuite, kPrSDKAudioSuiteVersion);
  basic()->ReleaseSuite(kPrSDKAudioSuite, kPrSDKAudioSuiteVersion);
  basic()->ReleaseSuite(kPrSDKAudioSuite, kPrSDKAudioSuiteVersion);
  EXPECT_NE(basic()->ReleaseSuite("Premiere Clip Render Suite", 1), kSPNoError);

  HostReport report = host_.Report();
  EXPECT_THAT(report.suites_unbalanced,
              ElementsAre(FieldsAre(kPrSDKAudioSuite, 1, 1, 2),
                          FieldsAre("Premiere Clip Render Suite", 1, 0, 1),
                          FieldsAre(kPrSDKTimeSuite, 1, 2, 1)));
  EXPECT_THAT(report.ToString(), HasSubstr("\"Premiere Time Suite\" 1: acquired 2, released 1"));
}

TEST_F(SuiteAccessTest, TimeSuiteCountsTheHostsTicksExactlyForTheRatesItDefines) {
  const PrSDKTimeSuite* time = Acquire<PrSDKTimeSuite>(kPrSDKTimeSuite, kPrSDKTimeSuiteVersion);
  PrTime ticks = 0;
  EXPECT_EQ(time->GetTicksPerSecond(&ticks), suiteError_NoError);
  EXPECT_EQ(ticks, 254016000000);
  const std::pair<PrVideoFrameRates, PrTime> rates[] = {
      {kVideoFrameRate_NTSC, 8475667200},    {kVideoFrameRate_NTSC_HD, 4237833600},
      {kVideoFrameRate_24Drop, 10594584000}, {kVideoFrameRate_24, 10584000000},
      {kVideoFrameRate_PAL, 10160640000},    {kVideoFrameRate_30, 8467200000},
      {kVideoFrameRate_PAL_HD, 5080320000},  {kVideoFrameRate_60, 4233600000}};
  for (const auto& rate : rates) {
    EXPECT_EQ(time->GetTicksPerVideoFrame(rate.first, &ticks), suiteError_NoError);
    EXPECT_EQ(ticks, rate.second) << "rate " << rate.first;
  }
  EXPECT_LT(time->GetTicksPerVideoFrame(0, &ticks), 0);
  EXPECT_LT(time->GetTicksPerVideoFrame(9, &ticks), 0);
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

  EXPECT_THAT(host_.Report().failed_suite_calls,
              ElementsAre(FieldsAre(kPrSDKAudioSuite, "ConvertAndInterleaveTo16BitInteger", 1),
                          FieldsAre(kPrSDKPPixCacheSuite, "GetRawPPixFromCache", 1),
                          FieldsAre(kPrSDKPPixSuite, "GetUniqueKeySize", 2)));
}

}  // namespace
