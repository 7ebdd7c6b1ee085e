#include "importer/file_lifecycle.h"

#include "logging/log_sites.h"
#include "logging/plugin_log.h"
#include "open_files/context_registry.h"
#include "open_files/host_suites.h"
#include "open_files/private_file_record.h"
#include "platform/file_handles.h"
#include "platform/stitching_library.h"
#include "stitcher_api/path_conversion.h"

namespace {

bool IsClosed(imFileRef file_ref) {
  return reinterpret_cast<intptr_t>(file_ref) == imInvalidHandleValue;
}

}  // namespace

int32_t OpenFile(const imStdParms* std_parms, imFileRef* file_ref, imFileOpenRec8* record) {
  if (file_ref == nullptr || record == nullptr || record->fileinfo.filepath == nullptr) {
    return malUnknownError;
  }
  const PlugMemoryFuncs* memory = std_parms->piSuites->memFuncs;
  void* slot = record->privatedata;
  bool created = false;
  PrMemoryHandle handle = LockPrivateHandle(memory, &slot, &created);
  record->privatedata = slot;
  if (created) RecordOf(handle)->importer_id = static_cast<uint32_t>(record->inImporterID);

  const char16_t* host_path = record->fileinfo.filepath;
  auto* context = new FileContext;
  context->path = NarrowPath(host_path);
  PluginLog::Get()->Write(kLogInfo, kLogSource, log_site::kOpenFile, "Open File: %s",
                          context->path.c_str());
  context->utf8_path = Utf8Path(host_path);

  // Nothing calls into a stitching library that is not there.
  if (platform::LoadStitchingLibrary().loaded) {
    context->source = PrSourceFactory::Create(context->path, &context->media_info);
  }
  if (!context->source) {
    PluginLog::Get()->Write(kLogError, kLogSource, log_site::kPRSourceFailed, " PRSource failed.");
    delete context;
    return malUnknownError;
  }

  ContextRegistry::Instance().Register(context);
  PrivateFileRecord* private_record = RecordOf(handle);
  private_record->context = context;
  memory->lockHandle(handle);
  private_record->header.version = kSampleFileVersion;
  *file_ref = context;
  record->fileinfo.fileref = context;
  memory->unlockHandle(handle);
  return imNoErr;
}

int32_t CloseFile(imFileRef* file_ref, void* private_data) {
  if (!IsClosed(*file_ref)) {
    PrivateFileRecord* record = RecordOf(private_data);
    if (record != nullptr && record->basic_suite != nullptr) {
      ReleaseSuite(record->basic_suite, kPrSDKAudioSuite, kPrSDKAudioSuiteVersion);
    }
    if (record != nullptr && record->context != nullptr) {
      PluginLog::Get()->Write(kLogInfo, kLogSource, log_site::kCloseSourceFile,
                              "Close premiere source file.");
      ContextRegistry& registry = ContextRegistry::Instance();
      registry.ReleaseSource(record->context);
      registry.ResetFileContext(record->context, record);
      registry.RemoveContext(record->context);
    }
  }
  *file_ref = reinterpret_cast<imFileRef>(imInvalidHandleValue);
  return imNoErr;
}

int32_t ReleaseFile(imFileRef* file_ref, void* private_data) {
  if (!IsClosed(*file_ref)) CloseFile(file_ref, private_data);
  PrivateFileRecord* record = RecordOf(private_data);
  if (record == nullptr || record->basic_suite == nullptr) return imNoErr;
  SPBasicSuite* basic = record->basic_suite;
  ReleaseSuite(basic, kPrSDKPPixCreatorSuite, kPrSDKPPixCreatorSuiteVersion);
  ReleaseSuite(basic, kPrSDKPPixCacheSuite, kPrSDKPPixCacheSuiteVersion);
  ReleaseSuite(basic, kPrSDKPPixSuite, kPrSDKPPixSuiteVersion);
  ReleaseSuite(basic, kPrSDKTimeSuite, kPrSDKTimeSuiteVersion);
  record->memory_funcs->disposeHandle(static_cast<PrMemoryHandle>(private_data));
  return imNoErr;
}

int32_t SaveFile8(const imSaveFileRec8* record) {
  const char16_t* source = record->sourcePath;
  const char16_t* destination = record->destPath;
  bool saved = record->move != 0 ? platform::MoveFileTo(source, destination)
                                 : platform::CopyFileNoReplace(source, destination);
  return saved ? imNoErr : imSaveErr;
}

int32_t DeleteFile8(const imDeleteFileRec8* record) {
  return platform::DeleteFileAt(record->deleteFilePath) ? imDeleteErr : imNoErr;
}
