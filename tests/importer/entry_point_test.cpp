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

constexpr unsigned char kUntouchedByte = 0x55;

class EntryPointTest : public ::testing::Test {
 protected:
  void SetUp() override {
    SetCommandLoopPauseForTesting(5);
    StopFlag = false;
  }

  // A capability record whose every byte is kUntouchedByte, as the start-up of `version` leaves it.
  static imImportInfoRec StartWithInterfaceVersion(int32_t version) {
    imImportInfoRec capabilities;
    std::memset(&capabilities, kUntouchedByte, sizeof(capabilities));
    imStdParms std_parms{};
    std_parms.imInterfaceVer = version;
    EXPECT_EQ(xImportEntry(imInit, &std_parms, &capabilities, nullptr), imNoErr);
    EXPECT_EQ(xImportEntry(imShutdown, &std_parms, nullptr, nullptr), imNoErr);
    return capabilities;
  }

  static std::string LogText() { return PluginLogText(CurrentProfile()); }
};

TEST_F(EntryPointTest, DeclinesSelectorsItDoesNotServe) {
  imStdParms std_parms{};
  for (int32_t selector : {-1, 2, 7, 10, 11, 15, 22, 26, 28, 35, 46, 48, 51, 54, 1000}) {
    EXPECT_EQ(xImportEntry(selector, &std_parms, nullptr, nullptr), imUnsupported) << selector;
  }
}

TEST_F(EntryPointTest, AnswersTheConstantSelectors) {
  imStdParms std_parms{};
  EXPECT_EQ(xImportEntry(imGetSupports8, &std_parms, nullptr, nullptr), malSupports8);
  imMetaDataRec metadata{};
  EXPECT_EQ(xImportEntry(imGetMetaData, &std_parms, nullptr, &metadata), imNoErr);
  EXPECT_EQ(xImportEntry(imSetMetaData, &std_parms, nullptr, &metadata), imNoErr);
}

TEST_F(EntryPointTest, AnswersAnExceptionThatEscapesAHandlerWithUnknownErrorAndLogsIt) {
  imStdParms std_parms{};
  const size_t before = LogText().size();
  SelectorHandler out_of_memory = [](imStdParms*, void*, void*) -> int32_t {
    throw std::bad_alloc();
  };
  SelectorHandler anything = [](imStdParms*, void*, void*) -> int32_t { throw 7; };
  EXPECT_EQ(CallHandler(imOpenFile8, out_of_memory, &std_parms, nullptr, nullptr), malUnknownError);
  EXPECT_EQ(CallHandler(imTrimFile8, anything, &std_parms, nullptr, nullptr), malUnknownError);
  const std::string written = LogText().substr(before);
  // The exception's own text, which each C++ runtime words differently.
  const std::string out_of_memory_line =
      "ERROR Selector 39 failed: " + std::string(std::bad_alloc().what()) + " SDK_File_Import:96";
  EXPECT_NE(written.find(out_of_memory_line), std::string::npos) << written;
  EXPECT_NE(written.find("ERROR Selector 44 failed: unknown exception SDK_File_Import:96"),
            std::string::npos);
}

// A host should never send these, but a crash would take the editor's unsaved work with it.
TEST_F(EntryPointTest, AnswersEachHandlersFailureForNullRecords) {
  imStdParms std_parms{};
  imSourceVideoRec video{};
  imImportAudioRec7 audio{};
  imCalcSizeRec size{};
  size.duration = 10;
  imFileAccessRec8 access{};
  imFileOpenRec8 open{};
  imFileRef file_ref = nullptr;
  imGetPrefsRec prefs{};
  prefs.prefsLength = 1200;
  EXPECT_EQ(xImportEntry(imGetSourceVideo, &std_parms, nullptr, &video), imNoContent);
  EXPECT_EQ(xImportEntry(imGetSourceVideo, &std_parms, nullptr, nullptr), imNoContent);
  EXPECT_EQ(xImportEntry(imImportAudio7, &std_parms, nullptr, &audio), imNoContent);
  EXPECT_EQ(xImportEntry(imImportAudio7, &std_parms, nullptr, nullptr), imNoContent);
  EXPECT_EQ(xImportEntry(imCalcSize8, &std_parms, &size, &access), imMemErr);
  EXPECT_EQ(xImportEntry(imCalcSize8, &std_parms, nullptr, &access), imMemErr);
  EXPECT_EQ(xImportEntry(imGetInfo8, &std_parms, &access, nullptr), imBadFile);
  EXPECT_EQ(xImportEntry(imGetPrefs8, &std_parms, &access, &prefs), imNoErr);
  EXPECT_EQ(xImportEntry(imOpenFile8, &std_parms, &file_ref, &open), malUnknownError);
  EXPECT_EQ(xImportEntry(imGetIndFormat, &std_parms, nullptr, nullptr), imBadFormatIndex);
}

TEST_F(EntryPointTest, FillsTheCapabilitiesItHasAndLeavesTheRestOfTheRecordAsTheHostFilledIt) {
  for (int32_t version : {5, 6}) {
    SCOPED_TRACE(version);
    imImportInfoRec expected;
    std::memset(&expected, kUntouchedByte, sizeof(expected));
    expected.canSave = 1;
    expected.canDelete = 1;
    expected.hasSetup = 1;
    expected.dontCache = 0;
    expected.setupOnDblClk = 0;
    expected.keepLoaded = 0;
    expected.priority = 0;
    expected.canCalcSizes = 1;
    expected.canTrim = 1;
    if (version >= 6) expected.avoidAudioConform = 1;
    const imImportInfoRec filled = StartWithInterfaceVersion(version);
    EXPECT_EQ(filled.avoidAudioConform, expected.avoidAudioConform);
    EXPECT_EQ(filled.canTrim, 1);
    EXPECT_EQ(std::memcmp(&filled, &expected, sizeof(expected)), 0);
  }
}

TEST_F(EntryPointTest, StartsTheCommandThreadAndSucceedsWhenSocketsFailToStart) {
  imStdParms std_parms{};
  std_parms.imInterfaceVer = 6;
  imImportInfoRec capabilities{};
  size_t before = LogText().size();
  // Shut-down's clean-up of the sockets layer takes this start, so others' sockets keep theirs.
  platform::StartSockets();
  EXPECT_EQ(StartUp(&std_parms, &capabilities, [] { return false; }), imNoErr);
  EXPECT_EQ(ShutDown(), imNoErr);
  std::string written = LogText().substr(before);
  EXPECT_NE(written.find("ERROR WSAStartup() failure SDK_File_Import:"), std::string::npos);
  EXPECT_NE(written.find("INFO  Start thread to read command from server... SDK_File_Import:"),
            std::string::npos);
  EXPECT_NE(written.find("INFO  Plugin is shutting down... SDK_File_Import:"), std::string::npos);
  const int32_t can_save = capabilities.canSave;
  EXPECT_EQ(can_save, 1);
}

TEST_F(EntryPointTest, ShutDownWithoutStartUpSucceeds) {
  platform::StartSockets();
  imStdParms std_parms{};
  EXPECT_EQ(xImportEntry(imShutdown, &std_parms, nullptr, nullptr), imNoErr);
}

}  // namespace
