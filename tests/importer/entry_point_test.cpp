#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <new>

#include "command_link/command_client.h"
#include "host_sdk/premiere_importer.h"
#include "importer/selector_table.h"
#include "importer/start_up_and_shut_down.h"
#include "logging/plugin_log.h"
#include "platform/c_runtime_files.h"
#include "platform/sockets.h"
#include "support/plugin_log_file.h"
#include "support/temp_folder.h"

extern "C" int32_t xImportEntry(int32_t selector, imStdParms* std_parms, void* param1,
                                void* param2);

namespace {

using ::testing::HasSubstr;

constexpr unsigned char kUntouchedByte = 0x55;

class EntryPointTest : public ::testing::Test {
 protected:
  void SetUp() override {
    SetCommandLoopPauseForTesting(5);
    StopFlag = false;
  }

  // The plug-in's entry point with this test's standard parameters.
  int32_t Call(int32_t selector, void* param1 = nullptr, void* param2 = nullptr) {
    return xImportEntry(selector, &std_parms_, param1, param2);
  }

  // A capability record whose every byte is kUntouchedByte, as the start-up of `version` leaves it.
  imImportInfoRec StartWithInterfaceVersion(int32_t version) {
    imImportInfoRec capabilities;
    std::memset(&capabilities, kUntouchedByte, sizeof(capabilities));
    std_parms_.imInterfaceVer = version;
    EXPECT_EQ(Call(imInit, &capabilities), imNoErr);
    EXPECT_EQ(Call(imShutdown), imNoErr);
    return capabilities;
  }

  static std::string LogText() { return PluginLogText(CurrentProfile()); }

  imStdParms std_parms_{};
};

TEST_F(EntryPointTest, DeclinesSelectorsItDoesNotServe) {
  for (int32_t selector : {-1, 2, 7, 10, 11, 15, 22, 26, 28, 35, 46, 48, 51, 54, 1000}) {
    EXPECT_EQ(Call(selector), imUnsupported) << selector;
  }
}

TEST_F(EntryPointTest, AnswersTheConstantSelectors) {
  EXPECT_EQ(Call(imGetSupports8), malSupports8);
  imMetaDataRec metadata{};
  EXPECT_EQ(Call(imGetMetaData, nullptr, &metadata), imNoErr);
  EXPECT_EQ(Call(imSetMetaData, nullptr, &metadata), imNoErr);
}

TEST_F(EntryPointTest, AnswersAnExceptionThatEscapesAHandlerWithUnknownErrorAndLogsIt) {
  const size_t before = LogText().size();
  SelectorHandler out_of_memory = [](imStdParms*, void*, void*) -> int32_t {
    throw std::bad_alloc();
  };
  SelectorHandler anything = [](imStdParms*, void*, void*) -> int32_t { throw 7; };
  EXPECT_EQ(CallHandler(imOpenFile8, out_of_memory, &std_parms_, nullptr, nullptr),
            malUnknownError);
  EXPECT_EQ(CallHandler(imTrimFile8, anything, &std_parms_, nullptr, nullptr), malUnknownError);
  const std::string written = LogText().substr(before);
  // The exception's own text, which each C++ runtime words differently.
  const std::string out_of_memory_line =
      "ERROR Selector 39 failed: " + std::string(std::bad_alloc().what()) + " SDK_File_Import:96";
  EXPECT_THAT(written, HasSubstr(out_of_memory_line));
  EXPECT_THAT(written, HasSubstr("ERROR Selector 44 failed: unknown exception SDK_File_Import:96"));
}

// A host should never send these, but a crash would take the editor's unsaved work with it.
TEST_F(EntryPointTest, AnswersEachHandlersFailureForNullRecords) {
  imSourceVideoRec video{};
  imImportAudioRec7 audio{};
  imCalcSizeRec size{};
  size.duration = 10;
  imFileAccessRec8 access{};
  access.filepath = u"clip.qvo";
  imFileOpenRec8 open{};
  imFileRef file_ref = nullptr;
  imGetPrefsRec prefs{};
  prefs.prefsLength = 1200;  // told a length, but given no block to write the path into
  EXPECT_EQ(Call(imGetSourceVideo, nullptr, &video), imNoContent);
  EXPECT_EQ(Call(imGetSourceVideo), imNoContent);
  EXPECT_EQ(Call(imImportAudio7, nullptr, &audio), imNoContent);
  EXPECT_EQ(Call(imImportAudio7), imNoContent);
  EXPECT_EQ(Call(imCalcSize8, &size, &access), imMemErr);
  EXPECT_EQ(Call(imCalcSize8, nullptr, &access), imMemErr);
  EXPECT_EQ(Call(imGetInfo8, &access, nullptr), imBadFile);
  EXPECT_EQ(Call(imGetPrefs8, &access, &prefs), imNoErr);
  EXPECT_EQ(Call(imOpenFile8, &file_ref, &open), malUnknownError);
  EXPECT_EQ(Call(imGetIndFormat), imBadFormatIndex);
}

TEST_F(EntryPointTest, FillsTheCapabilitiesItHasAndLeavesTheRestOfTheRecordAsTheHostFilledIt) {
  for (int32_t version : {5, 6}) {
    SCOPED_TRACE(version);
    imImportInfoRec expected;
    std::memset(&expected, kUntouchedByte, sizeof(expected));
    expected.canSave = expected.canDelete = expected.hasSetup = 1;
    expected.canCalcSizes = expected.canTrim = 1;
    expected.dontCache = expected.setupOnDblClk = expected.keepLoaded = expected.priority = 0;
    if (version >= 6) expected.avoidAudioConform = 1;
    const imImportInfoRec filled = StartWithInterfaceVersion(version);
    EXPECT_EQ(std::memcmp(&filled, &expected, sizeof(expected)), 0);
  }
}

TEST_F(EntryPointTest, StartsTheCommandThreadAndSucceedsWhenSocketsFailToStart) {
  std_parms_.imInterfaceVer = 6;
  imImportInfoRec capabilities{};
  size_t before = LogText().size();
  // Shut-down's clean-up of the sockets layer takes this start, so others' sockets keep theirs.
  platform::StartSockets();
  EXPECT_EQ(StartUp(&std_parms_, &capabilities, [] { return false; }), imNoErr);
  EXPECT_EQ(ShutDown(), imNoErr);
  std::string written = LogText().substr(before);
  EXPECT_THAT(written, HasSubstr("ERROR WSAStartup() failure SDK_File_Import:"));
  EXPECT_THAT(written,
              HasSubstr("INFO  Start thread to read command from server... SDK_File_Import:"));
  EXPECT_THAT(written, HasSubstr("INFO  Plugin is shutting down... SDK_File_Import:"));
}

TEST_F(EntryPointTest, ShutDownWithoutStartUpSucceeds) {
  platform::StartSockets();
  EXPECT_EQ(Call(imShutdown), imNoErr);
}

}  // namespace
