#include "importer/selector_table.h"

#include <array>
#include <exception>

#include "delivery/audio_delivery.h"
#include "delivery/size_calculation.h"
#include "delivery/trimming.h"
#include "delivery/video_frames.h"
#include "host_sdk/host_assumptions.h"
#include "importer/file_info.h"
#include "importer/file_lifecycle.h"
#include "importer/format_registration.h"
#include "importer/sample_header_answers.h"
#include "importer/start_up_and_shut_down.h"
#include "logging/log_sites.h"
#include "logging/plugin_log.h"
#include "platform/sockets.h"

namespace {

int32_t OnInit(imStdParms* std_parms, void* param1, void*) {
  return StartUp(std_parms, static_cast<imImportInfoRec*>(param1), platform::StartSockets);
}

int32_t OnShutdown(imStdParms*, void*, void*) { return ShutDown(); }

// The importer keeps no metadata of its own: both metadata selectors succeed without effect.
int32_t OnMetaData(imStdParms*, void*, void*) { return imNoErr; }

int32_t OnGetSupports8(imStdParms*, void*, void*) { return malSupports8; }

// Selectors that pass an index travel it in the low 32 bits of the first parameter.
int32_t IndexOf(void* param) { return static_cast<int32_t>(reinterpret_cast<intptr_t>(param)); }

int32_t OnQuietFile(imStdParms*, void* param1, void* param2) {
  return CloseFile(QuietFileRefSlot(param1), param2);
}

int32_t OnCloseFile(imStdParms*, void* param1, void* param2) {
  return ReleaseFile(CloseFileRefSlot(param1), param2);
}

int32_t OnAnalysis(imStdParms*, void*, void* param2) {
  return GetCodecText(static_cast<imAnalysisRec*>(param2));
}

int32_t OnDataRateAnalysis(imStdParms*, void*, void* param2) {
  return GetDataRateTable(static_cast<imDataRateAnalysisRec*>(param2));
}

int32_t OnGetIndFormat(imStdParms*, void* param1, void* param2) {
  return GetIndFormat(IndexOf(param1), static_cast<imIndFormatRec*>(param2));
}

int32_t OnGetIndPixelFormat(imStdParms*, void* param1, void* param2) {
  return GetIndPixelFormat(IndexOf(param1), static_cast<imIndPixelFormatRec*>(param2));
}

int32_t OnGetInfo8(imStdParms* std_parms, void* param1, void* param2) {
  return GetFileInfo(std_parms, static_cast<imFileAccessRec8*>(param1),
                     static_cast<imFileInfoRec8*>(param2));
}

int32_t OnGetPrefs8(imStdParms*, void* param1, void* param2) {
  return GetPrefs(static_cast<imFileAccessRec8*>(param1), static_cast<imGetPrefsRec*>(param2));
}

int32_t OnOpenFile8(imStdParms* std_parms, void* param1, void* param2) {
  return OpenFile(std_parms, OpenFileRefSlot(param1, param2), OpenRecord(param1, param2));
}

int32_t OnSaveFile8(imStdParms*, void* param1, void*) {
  return SaveFile8(static_cast<imSaveFileRec8*>(param1));
}

int32_t OnDeleteFile8(imStdParms*, void* param1, void*) {
  return DeleteFile8(static_cast<imDeleteFileRec8*>(param1));
}

int32_t OnImportAudio7(imStdParms*, void*, void* param2) {
  return ImportAudio(static_cast<imImportAudioRec7*>(param2));
}

int32_t OnCalcSize8(imStdParms*, void* param1, void* param2) {
  return CalculateSize(static_cast<imCalcSizeRec*>(param1), static_cast<imFileAccessRec8*>(param2));
}

// The importer keeps the host's trim bounds as they are.
int32_t OnCheckTrim8(imStdParms*, void*, void*) { return imNoErr; }

int32_t OnTrimFile8(imStdParms*, void* param1, void* param2) {
  return TrimFile(static_cast<imFileAccessRec8*>(param1), static_cast<imTrimFileRec8*>(param2));
}

int32_t OnGetPreferredFrameSize(imStdParms*, void* param1, void*) {
  return GetPreferredFrameSize(static_cast<imPreferredFrameSizeRec*>(param1));
}

int32_t OnGetSourceVideo(imStdParms* std_parms, void*, void* param2) {
  return GetSourceVideo(std_parms, static_cast<imSourceVideoRec*>(param2));
}

int32_t OnGetTimeInfo8(imStdParms*, void*, void* param2) {
  return GetTimeInfo(static_cast<imTimeInfoRec8*>(param2));
}

int32_t OnSetTimeInfo8(imStdParms*, void* param1, void* param2) {
  return SetTimeInfo(param1, static_cast<imTimeInfoRec8*>(param2));
}

std::array<SelectorHandler, kSelectorCount> MakeTable() {
  std::array<SelectorHandler, kSelectorCount> table{};
  table[imInit] = OnInit;
  table[imShutdown] = OnShutdown;
  table[imGetMetaData] = OnMetaData;
  table[imSetMetaData] = OnMetaData;
  table[imGetSupports8] = OnGetSupports8;
  table[imQuietFile] = OnQuietFile;
  table[imCloseFile] = OnCloseFile;
  table[imAnalysis] = OnAnalysis;
  table[imDataRateAnalysis] = OnDataRateAnalysis;
  table[imGetIndFormat] = OnGetIndFormat;
  table[imGetIndPixelFormat] = OnGetIndPixelFormat;
  table[imGetInfo8] = OnGetInfo8;
  table[imGetPrefs8] = OnGetPrefs8;
  table[imOpenFile8] = OnOpenFile8;
  table[imSaveFile8] = OnSaveFile8;
  table[imDeleteFile8] = OnDeleteFile8;
  table[imImportAudio7] = OnImportAudio7;
  table[imCalcSize8] = OnCalcSize8;
  table[imCheckTrim8] = OnCheckTrim8;
  table[imTrimFile8] = OnTrimFile8;
  table[imGetPreferredFrameSize] = OnGetPreferredFrameSize;
  table[imGetSourceVideo] = OnGetSourceVideo;
  table[imGetTimeInfo8] = OnGetTimeInfo8;
  table[imSetTimeInfo8] = OnSetTimeInfo8;
  return table;
}

}  // namespace

SelectorHandler HandlerOf(int32_t selector) {
  static const std::array<SelectorHandler, kSelectorCount> table = MakeTable();
  if (selector < 0 || selector >= kSelectorCount) return nullptr;
  return table[static_cast<size_t>(selector)];
}

int32_t CallHandler(int32_t selector, SelectorHandler handler, imStdParms* std_parms, void* param1,
                    void* param2) {
  // Logged inside each handler: the text of an exception ends with the exception.
  const auto log_failure = [selector](const char* what) {
    PluginLog::Get()->Write(kLogError, kLogSource, log_site::kSelectorException,
                            "Selector %d failed: %s", selector, what);
  };
  try {
    return handler(std_parms, param1, param2);
  } catch (const std::exception& error) {
    log_failure(error.what());
  } catch (...) {
    log_failure("unknown exception");
  }
  return malUnknownError;
}
