#include "host_sim/host_records.h"

#include <filesystem>
#include <new>
#include <system_error>

namespace host_sim {

static_assert(sizeof(imFileInfoRec8) <= FileInfoBlock::kNewestHostSize,
              "the newest host's record holds the declared one");

std::u16string HostWidePath(const std::string& native_path) {
  std::filesystem::path path = std::filesystem::u8path(native_path);
  std::error_code error;
  std::filesystem::path absolute = std::filesystem::absolute(path, error);
  if (!error) path = absolute;
  return u"\\\\?\\" + path.make_preferred().u16string();
}

FileInfoBlock::FileInfoBlock(int32_t importer_id, void* private_data)
    : bytes_(new unsigned char[kNewestHostSize]()), record_(new (bytes_.get()) imFileInfoRec8()) {
  record_->vidInfo.importerID = importer_id;
  record_->privatedata = private_data;
}

bool FileInfoBlock::TailUntouched() const {
  for (size_t offset = sizeof(imFileInfoRec8); offset < kNewestHostSize; ++offset) {
    if (bytes_[offset] != 0) return false;
  }
  return true;
}

imFileAccessRec8 MakeAccessRecord(void* import_id, int32_t file_type, const std::u16string& path,
                                  imFileRef file_ref) {
  imFileAccessRec8 record{};
  record.importID = import_id;
  record.filetype = file_type;
  record.filepath = path.c_str();
  record.fileref = file_ref;
  return record;
}

imFileOpenRec8 MakeOpenRecord(const imFileAccessRec8& access, void* private_data,
                              int32_t importer_id) {
  imFileOpenRec8 record{};
  record.fileinfo.importID = access.importID;
  record.fileinfo.filetype = access.filetype;
  record.fileinfo.filepath = access.filepath;
  record.fileinfo.fileref = access.fileref;
  record.fileinfo.newfilename = access.newfilename;
  record.privatedata = private_data;
  record.inReadWrite = PrFileOpenAccess_ReadOnly;
  record.inImporterID = importer_id;
  record.inStreamIdx = 0;
  return record;
}

imGetPrefsRec MakePrefsRecord(char* prefs, int32_t prefs_length, const imFileInfoRec8* info) {
  imGetPrefsRec record{};
  record.prefs = prefs;
  record.prefsLength = prefs_length;
  record.firstTime = 1;
  if (info == nullptr) return record;
  record.imageWidth = info->vidInfo.imageWidth;
  record.imageHeight = info->vidInfo.imageHeight;
  record.pixelAspectNum = info->vidInfo.pixelAspectNum;
  record.pixelAspectDen = info->vidInfo.pixelAspectDen;
  record.vidScale = info->vidScale;
  record.vidSampleSize = info->vidSampleSize;
  record.sampleRate = info->audInfo.sampleRate;
  return record;
}

imIndPixelFormatRec MakePixelFormatRecord(void* private_data, const void* prefs) {
  imIndPixelFormatRec record{};
  record.privatedata = private_data;
  record.prefs = prefs;
  return record;
}

imAnalysisRec MakeAnalysisRecord(void* private_data, void* prefs, char* buffer,
                                 int32_t buffer_size) {
  imAnalysisRec record{};
  record.privatedata = private_data;
  record.prefs = prefs;
  record.buffersize = buffer_size;
  record.buffer = buffer;
  return record;
}

imDataRateAnalysisRec MakeDataRateRecord(void* private_data, void* prefs, char* buffer,
                                         int32_t buffer_size) {
  imDataRateAnalysisRec record{};
  record.privatedata = private_data;
  record.prefs = prefs;
  record.buffersize = buffer_size;
  record.buffer = buffer;
  return record;
}

imTimeInfoRec8 MakeTimeInfoRecord(void* private_data, void* prefs) {
  imTimeInfoRec8 record{};
  record.privatedata = private_data;
  record.prefs = prefs;
  record.dataType = 1;
  return record;
}

imSaveFileRec8 MakeSaveRecord(const std::u16string& source, const std::u16string& destination,
                              bool move) {
  imSaveFileRec8 record{};
  record.sourcePath = source.c_str();
  record.destPath = destination.c_str();
  record.move = move ? 1 : 0;
  return record;
}

imDeleteFileRec8 MakeDeleteRecord(int32_t file_type, const std::u16string& path) {
  imDeleteFileRec8 record{};
  record.filetype = file_type;
  record.deleteFilePath = path.c_str();
  return record;
}

}  // namespace host_sim
