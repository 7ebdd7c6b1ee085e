// Files opened, described and closed through the built plug-in file, as the host drives them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <tuple>
#include <vector>

#include "integration/plugin_fixture.h"

namespace {

using host_sim::HostFile;
using host_sim::HostReport;
using ::testing::_;
using ::testing::ElementsAre;
using ::testing::FieldsAre;

using FileSessionTest = PluginTest;

// Closing releases the audio suite, and so does resetting the file's context.
TEST_F(FileSessionTest, LogsEachStepOfASessionAndLeavesNothingButTheAudioSuiteReleasedTwice) {
  HostFile* clip = DescribedClip(R"({"width": 64, "height": 32})");
  const std::string path = Literal(PathOf(*clip));
  EXPECT_EQ(clip->Quiet(), imNoErr);
  EXPECT_EQ(reinterpret_cast<intptr_t>(clip->file_ref()), -1);
  EXPECT_EQ(clip->Close(), imNoErr);
  EXPECT_TRUE(Logged("INFO  Open File: " + path + " SDK_File_Import:856"));
  EXPECT_TRUE(Logged("INFO  Close premiere source file\\. SDK_File_Import:905"));
  EXPECT_TRUE(Logged("INFO  clean up resource:" + path + " SDK_File_Import:1605"));
  EXPECT_TRUE(Logged("INFO  remove context SDK_File_Import:1640"));
  HostReport report = host().Report();
  EXPECT_THAT(report.suites_unbalanced, ElementsAre(FieldsAre("Premiere Audio Suite", 1, 1, 2)))
      << report.ToString();
}

// The plug-in locks the private handle before it knows the file is no good, and leaves it so.
TEST_F(FileSessionTest, AFailedOpenOrInformationWithoutAContextLeavesItsHandleLocked) {
  auto clip = Clip(R"({"faults": {"create": true}})");
  EXPECT_EQ(clip->Open(), malUnknownError);
  EXPECT_NE(clip->private_data(), nullptr) << "left in the slot";
  EXPECT_TRUE(Logged("ERROR  PRSource failed\\. SDK_File_Import:862"));
  EXPECT_EQ(Clip(R"({"width": 64, "height": 32})")->GetInfo(), imBadFile);
  EXPECT_TRUE(Logged("ERROR Error occured while get file info SDK_File_Import:1032"));

  HostReport report = host().Report();
  EXPECT_THAT(report.handles_still_locked,
              ElementsAre(FieldsAre(_, 1200u, 1), FieldsAre(_, 1200u, 1)))
      << report.ToString();
  EXPECT_TRUE(report.suites_unbalanced.empty()) << report.ToString();
}

TEST_F(FileSessionTest, DescribesThePictureAsAnEquirectangularSphere) {
  auto mono = DescribedClip(R"({"width": 64, "height": 32})");
  auto stereo = DescribedClip(R"({"width": 64, "height": 64, "stereo": true})");
  for (const HostFile* clip : {mono, stereo}) {
    const imFileInfoRec8& info = Info(*clip);
    // Straight alpha at depth 32; equirectangular projection; separate sequential audio access.
    EXPECT_EQ(std::vector<int64_t>(
                  {info.hasVideo, info.vidInfo.depth, info.vidInfo.subType, info.vidInfo.alphaType,
                   info.vidInfo.supportsGetSourceVideo, info.vidInfo.supportsAsyncIO,
                   info.vidInfo.hasPulldown, info.ivProjectionType, info.ivHorizontalCapturedView,
                   info.ivVerticalCapturedView, info.accessModes, info.hasDataRate}),
              std::vector<int64_t>({1, 32, 0x524C455F, 1, 1, 0, 0, 1, 360, 180, 4, 1}));
    EXPECT_TRUE(clip->info().TailUntouched());
  }
  EXPECT_EQ(Info(*mono).ivFrameLayout, 0);
  EXPECT_EQ(Info(*stereo).ivFrameLayout, 1);
  EXPECT_EQ(Info(*stereo).vidInfo.imageHeight, 64);
  std::string text;
  EXPECT_EQ(mono->CodecText(&text), imNoErr);
  EXPECT_EQ(text, "RLE Compressed 8-bit RGB");
}

TEST_F(FileSessionTest, ReportsSoundAsPlanarFloatWithTheHeadersChannelKind) {
  const struct {
    int channels;
    uint32_t kind;
  } cases[] = {{2, 2}, {3, 1}, {4, 4}, {6, 4}, {1, 1}};
  for (const auto& c : cases) {
    auto clip = DescribedClip(
        R"({"width": 64, "height": 32, "audio": {"rate": 44100, "sample_frames": 1000, "channels": )" +
        std::to_string(c.channels) + "}}");
    const imFileInfoRec8& info = Info(*clip);
    EXPECT_EQ((std::tuple<int32_t, int32_t, float, int32_t, int64_t>{
                  info.hasAudio, info.audInfo.numChannels, info.audInfo.sampleRate,
                  info.audInfo.sampleType, info.audDuration}),
              std::make_tuple(1, c.channels, 44100.0f, 6, 1000));
    EXPECT_EQ(Header(*clip).channel_type, c.kind) << c.channels << " channels";
  }
  auto silent = DescribedClip(R"({"width": 64, "height": 32, "audio": null})");
  EXPECT_EQ(Info(*silent).hasAudio, 0);
  EXPECT_EQ(Header(*silent).has_audio, 0u);
}

// The time base is the rate in hundredths of a frame, truncated, and a frame lasts whole host
// ticks, truncated; a data-rate entry counts an NTSC frame in thousand-and-first parts.
TEST_F(FileSessionTest, CountsTimeInHundredthsOfAFrameAndNtscDataRatesInThousandAndFirstParts) {
  const struct {
    const char* fps;
    int64_t scale;
    int64_t ticks;
    uint32_t sample_duration;
  } cases[] = {{"29.97002997002997", 2997, 8475667200, 1001},
               {"59.94005994005994", 5994, 4237833600, 1001},
               {"23.976023976023978", 2397, 10594584000, 1001},
               {"25", 2500, 10160640000, 1},
               {"29.97", 2997, 8475675675, 1}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.fps);
    auto clip = DescribedClip(std::string(R"({"width": 64, "height": 32, "frames": 3, "fps": )") +
                              c.fps + "}");
    const imFileInfoRec8& info = Info(*clip);
    EXPECT_EQ(std::vector<int64_t>({info.vidScale, info.vidSampleSize, info.vidDuration,
                                    static_cast<int64_t>(Header(*clip).frame_duration)}),
              std::vector<int64_t>({c.scale, 100, 300, c.ticks}));
    std::vector<imDataSample> samples;
    int32_t base_rate = -1;
    EXPECT_EQ(clip->DataRates(&samples, &base_rate), imNoErr);
    EXPECT_EQ(base_rate, 0);
    ASSERT_EQ(samples.size(), 3u);
    for (const imDataSample& sample : samples) {
      EXPECT_EQ(uint32_t{sample.sampledur}, 0x80000000u | c.sample_duration);
      EXPECT_EQ(uint32_t{sample.samplesize}, 64u * 32u * 4u);
    }
  }

  // Without the host's Time suite a frame has no ticks, and an entry counts whole frames.
  host().suites().Offer(kPrSDKTimeSuite, kPrSDKTimeSuiteVersion, nullptr);
  auto untimed = DescribedClip(R"({"width": 64, "height": 32, "fps": 29.97002997002997})");
  EXPECT_EQ(Header(*untimed).frame_duration, 0u);
  std::vector<imDataSample> samples;
  int32_t base_rate = -1;
  ASSERT_EQ(untimed->DataRates(&samples, &base_rate), imNoErr);
  ASSERT_FALSE(samples.empty());
  EXPECT_EQ(uint32_t{samples[0].sampledur}, 0x80000001u);
}

TEST_F(FileSessionTest, ThePreferencesBlockIsAPrivateRecordHoldingTheHostsPath) {
  HostFile* clip = DescribedClip("{}");
  EXPECT_EQ(clip->GetPrefsWithoutRecord(), imNoErr);
  ASSERT_EQ(clip->GetPrefs(), imNoErr);
  ASSERT_EQ(clip->prefs().size(), 1200u);
  std::u16string path(clip->host_path().size() + 1, u'x');
  std::memcpy(path.data(), clip->prefs().data() + 610, path.size() * sizeof(char16_t));
  EXPECT_EQ(path, clip->host_path() + u'\0') << "the host's path, terminated";
}

// A deletion is answered the inverted way: imDeleteErr when the file was deleted.
TEST_F(FileSessionTest, SavesByMoveOrCopyNeverOverAnExistingFileAndAnswersADeletionInverted) {
  std::string original = folder_.WriteFile("a.qvo", "{}");
  std::string copy = folder_.Join("b.qvo");
  std::string moved = folder_.Join("c.qvo");
  EXPECT_EQ(session_->Save(original, copy, false), imNoErr);
  EXPECT_EQ(session_->Save(original, copy, false), imSaveErr);
  EXPECT_EQ(session_->Save(copy, moved, true), imNoErr);
  EXPECT_FALSE(std::filesystem::exists(copy));
  EXPECT_EQ(ReadWholeFile(moved), "{}");

  EXPECT_EQ(session_->Delete(0x0071766F, moved), imDeleteErr);
  EXPECT_FALSE(std::filesystem::exists(moved));
  EXPECT_EQ(session_->Delete(0x0071766F, moved), imNoErr) << "not there to delete";
}

}  // namespace
