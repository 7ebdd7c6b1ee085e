// Files opened, described and closed through the built plug-in file, as the host drives them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "integration/plugin_fixture.h"

namespace {

using host_sim::HostFile;
using host_sim::HostReport;
using ::testing::ElementsAre;
using ::testing::Field;

class FileSessionTest : public PluginTest {
 protected:
  HostReport Report() { return host().Report(); }
};

TEST_F(FileSessionTest, AFullSessionLeavesNothingButTheAudioSuiteReleasedTwice) {
  auto clip = DescribedClip(R"({"width": 64, "height": 32, "frames": 10})");
  EXPECT_EQ(clip->Quiet(), imNoErr);
  EXPECT_EQ(reinterpret_cast<intptr_t>(clip->file_ref()), -1);
  EXPECT_EQ(clip->Close(), imNoErr);

  HostReport report = Report();
  EXPECT_TRUE(report.handles_never_disposed.empty()) << report.ToString();
  EXPECT_TRUE(report.memory_faults.empty()) << report.ToString();
  // Closing releases the audio suite, and so does resetting the file's context.
  EXPECT_THAT(report.suites_unbalanced,
              ElementsAre(AllOf(Field(&host_sim::SuiteBalance::name, "Premiere Audio Suite"),
                                Field(&host_sim::SuiteBalance::acquired, 1),
                                Field(&host_sim::SuiteBalance::released, 2))));
}

TEST_F(FileSessionTest, AFailedOpenLeavesItsHandleInTheSlotLocked) {
  auto clip = Clip(R"({"faults": {"create": true}})");
  EXPECT_EQ(clip->Open(), malUnknownError);
  EXPECT_NE(clip->private_data(), nullptr);

  HostReport report = Report();
  ASSERT_EQ(report.handles_still_locked.size(), 1u) << report.ToString();
  EXPECT_EQ(report.handles_still_locked[0].lock_count, 1);
  EXPECT_EQ(report.handles_still_locked[0].size, 1200u);
  EXPECT_TRUE(report.suites_unbalanced.empty()) << report.ToString();
}

TEST_F(FileSessionTest, InformationWithoutAContextIsRefusedAndLeavesItsHandleLocked) {
  auto clip = Clip(R"({"width": 64, "height": 32})");
  EXPECT_EQ(clip->GetInfo(), imBadFile);
  HostReport report = Report();
  ASSERT_EQ(report.handles_still_locked.size(), 1u) << report.ToString();
  EXPECT_EQ(report.handles_still_locked[0].lock_count, 1);
}

TEST_F(FileSessionTest, ReportsTheTimeBaseInHundredthsOfAFrame) {
  auto clip = DescribedClip(R"({"width": 64, "height": 32, "fps": 29.97, "frames": 900})");
  EXPECT_EQ(Info(*clip).vidScale, 2997);
  EXPECT_EQ(Info(*clip).vidSampleSize, 100);
  EXPECT_EQ(Info(*clip).vidDuration, 90000);
  EXPECT_EQ(Header(*clip).frame_duration, 8475675675u) << "ticks per frame, truncated";

  auto film = DescribedClip(R"({"width": 64, "height": 32, "fps": 23.976})");
  EXPECT_EQ(Info(*film).vidScale, 2397);
}

TEST_F(FileSessionTest, DescribesThePictureAsAnEquirectangularSphere) {
  auto mono = DescribedClip(R"({"width": 64, "height": 32})");
  auto stereo = DescribedClip(R"({"width": 64, "height": 64, "stereo": true})");
  for (const HostFile* clip : {mono, stereo}) {
    const imFileInfoRec8& info = Info(*clip);
    EXPECT_EQ(info.hasVideo, 1);
    EXPECT_EQ(info.vidInfo.depth, 32);
    EXPECT_EQ(info.vidInfo.subType, 0x524C455F);
    EXPECT_EQ(info.vidInfo.alphaType, 1) << "straight alpha at depth 32";
    EXPECT_EQ(info.vidInfo.supportsGetSourceVideo, 1);
    EXPECT_EQ(info.ivProjectionType, 1) << "equirectangular";
    EXPECT_EQ(info.ivHorizontalCapturedView, 360u);
    EXPECT_EQ(info.ivVerticalCapturedView, 180u);
    EXPECT_EQ(info.accessModes, 4) << "separate sequential audio";
    EXPECT_EQ(info.hasDataRate, 1);
    EXPECT_TRUE(clip->info().TailUntouched());
  }
  EXPECT_EQ(Info(*mono).ivFrameLayout, 0);
  EXPECT_EQ(Info(*stereo).ivFrameLayout, 1);
  EXPECT_EQ(Info(*stereo).vidInfo.imageHeight, 64);
}

TEST_F(FileSessionTest, ReportsSoundAsPlanarFloatWithTheHeadersChannelKind) {
  const struct {
    int channels;
    uint32_t kind;
  } cases[] = {{2, 2}, {3, 1}, {6, 4}, {1, 1}};
  for (const auto& c : cases) {
    auto clip = DescribedClip(
        R"({"width": 64, "height": 32, "audio": {"rate": 44100, "sample_frames": 1000, "channels": )" +
        std::to_string(c.channels) + "}}");
    const imFileInfoRec8& info = Info(*clip);
    EXPECT_EQ(info.hasAudio, 1);
    EXPECT_EQ(info.audInfo.numChannels, c.channels);
    EXPECT_EQ(info.audInfo.sampleRate, 44100.0f);
    EXPECT_EQ(info.audInfo.sampleType, 6);
    EXPECT_EQ(info.audDuration, 1000);
    EXPECT_EQ(Header(*clip).channel_type, c.kind) << c.channels << " channels";
  }
  auto silent = DescribedClip(R"({"width": 64, "height": 32, "audio": null})");
  EXPECT_EQ(Info(*silent).hasAudio, 0);
  EXPECT_EQ(Header(*silent).has_audio, 0u);
}

TEST_F(FileSessionTest, DataRateEntriesCountNtscFramesInThousandAndFirstParts) {
  const struct {
    const char* fps;
    uint32_t sample_duration;
  } cases[] = {{"29.97002997002997", 1001},
               {"59.94005994005994", 1001},
               {"23.976023976023978", 1001},
               {"25", 1},
               {"29.97", 1}};
  for (const auto& c : cases) {
    auto clip = DescribedClip(std::string(R"({"width": 64, "height": 32, "frames": 3, "fps": )") +
                              c.fps + "}");
    std::vector<imDataSample> samples;
    int32_t base_rate = -1;
    EXPECT_EQ(clip->DataRates(&samples, &base_rate), imNoErr);
    EXPECT_EQ(base_rate, 0);
    ASSERT_EQ(samples.size(), 3u) << c.fps;
    for (const imDataSample& sample : samples) {
      const uint32_t duration = sample.sampledur;
      const uint32_t size = sample.samplesize;
      EXPECT_EQ(duration, 0x80000000u | c.sample_duration) << c.fps;
      EXPECT_EQ(size, 64u * 32u * 4u);
    }
  }
}

TEST_F(FileSessionTest, RegistersOneFileTypeAndOnePixelFormat) {
  int32_t last_result = 0;
  std::vector<host_sim::RegisteredFileType> types = session_->FileTypes(&last_result);
  EXPECT_EQ(last_result, imBadFormatIndex);
  ASSERT_EQ(types.size(), 1u);
  EXPECT_EQ(types[0].file_type, 0x0071766F);
  EXPECT_EQ(types[0].name, "Quorvel Omni Project");
  EXPECT_EQ(types[0].short_name, "Quorvel Omni Project");
  EXPECT_THAT(types[0].extensions, ElementsAre("qvo"));

  auto clip = DescribedClip(R"({"width": 64, "height": 32})");
  EXPECT_THAT(clip->PixelFormats(&last_result), ElementsAre(0x46317659u));
  EXPECT_EQ(last_result, imBadFormatIndex);
  std::string text;
  EXPECT_EQ(clip->CodecText(&text), imNoErr);
  EXPECT_EQ(text, "RLE Compressed 8-bit RGB");
}

TEST_F(FileSessionTest, ThePreferencesBlockIsAPrivateRecordHoldingTheHostsPath) {
  HostFile* clip = DescribedClip("{}");
  EXPECT_EQ(clip->GetPrefsWithoutRecord(), imNoErr);
  ASSERT_EQ(clip->GetPrefs(), imNoErr);
  ASSERT_EQ(clip->prefs().size(), 1200u);
  const std::u16string& wide = clip->host_path();
  std::u16string path(wide.size(), u'\0');
  std::memcpy(path.data(), clip->prefs().data() + 610, wide.size() * sizeof(char16_t));
  EXPECT_EQ(path, wide);
  EXPECT_EQ(ReadAt<char16_t>(clip->prefs().data(), 610 + wide.size() * 2), u'\0');
}

TEST_F(FileSessionTest, SavesByMoveOrCopyAndNeverOverAnExistingFile) {
  std::string original = folder_.WriteFile("a.qvo", "{}");
  std::string copy = folder_.Join("b.qvo");
  std::string moved = folder_.Join("c.qvo");
  EXPECT_EQ(session_->Save(original, copy, false), imNoErr);
  EXPECT_EQ(session_->Save(original, copy, false), imSaveErr);
  EXPECT_EQ(session_->Save(copy, moved, true), imNoErr);
  EXPECT_FALSE(std::filesystem::exists(copy));
  EXPECT_EQ(ReadWholeFile(moved), "{}");
}

TEST_F(FileSessionTest, AnswersADeletionTheInvertedWay) {
  std::string doomed = folder_.WriteFile("doomed.qvo", "{}");
  EXPECT_EQ(session_->Delete(0x0071766F, doomed), imDeleteErr) << "15 when the file was deleted";
  EXPECT_FALSE(std::filesystem::exists(doomed));
  EXPECT_EQ(session_->Delete(0x0071766F, doomed), imNoErr) << "0 when it was not";
}

}  // namespace
