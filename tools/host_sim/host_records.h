// The host's records, made the way the host makes them: zero-filled, with what the host itself
// fills in. Each builder returns the record by value; the caller keeps every buffer and path a
// record points at alive for as long as the plug-in may read it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "host_sdk/premiere_importer.h"

namespace host_sim {

// The wide path the host hands the plug-in: the UTF-8 `native_path` made absolute, in UTF-16,
// with the "\\?\" prefix.
std::u16string HostWidePath(const std::string& native_path);

// The host asks for entries of an index list (file types, pixel formats) until the plug-in answers
// something other than imNoErr; past this many it stops, so that a plug-in that never ends the list
// cannot hang the host.
constexpr int32_t kMostListEntries = 256;

// The text of a host text field, which may be filled to the brim without a terminator.
template <size_t N>
std::string FieldText(const char (&field)[N]) {
  return std::string(field, strnlen(field, N));
}

// imFileInfoRec8 as the newest host allocates it: 5376 bytes, longer than the declared record,
// zero-filled except the importer ID and the private data the host already holds.
class FileInfoBlock {
 public:
  static constexpr size_t kNewestHostSize = 5376;

  FileInfoBlock(int32_t importer_id, void* private_data);
  FileInfoBlock(const FileInfoBlock&) = delete;
  FileInfoBlock& operator=(const FileInfoBlock&) = delete;

  imFileInfoRec8* record() { return record_; }
  const imFileInfoRec8* record() const { return record_; }

  // True while the bytes past the declared record, which only newer hosts have, are still zero.
  bool TailUntouched() const;

 private:
  std::unique_ptr<unsigned char[]> bytes_;
  imFileInfoRec8* record_;  // placed at the start of bytes_
};

// `file_ref` is the open file's reference, or kBadFileRef before open.
imFileAccessRec8 MakeAccessRecord(void* import_id, int32_t file_type, const std::u16string& path,
                                  imFileRef file_ref);

// Read-only access to stream 0.
imFileOpenRec8 MakeOpenRecord(const imFileAccessRec8& access, void* private_data,
                              int32_t importer_id);

// The picture and sound fields are copied from the file's information record; they stay zero
// when `info` is null.
imGetPrefsRec MakePrefsRecord(char* prefs, int32_t prefs_length, const imFileInfoRec8* info);

imIndPixelFormatRec MakePixelFormatRecord(void* private_data, const void* prefs);

imAnalysisRec MakeAnalysisRecord(void* private_data, void* prefs, char* buffer,
                                 int32_t buffer_size);

// A null `buffer` asks the plug-in for the size it needs.
imDataRateAnalysisRec MakeDataRateRecord(void* private_data, void* prefs, char* buffer,
                                         int32_t buffer_size);

// Text fields empty, data type 1 (SMPTE timecode).
imTimeInfoRec8 MakeTimeInfoRecord(void* private_data, void* prefs);

// No progress callback.
imSaveFileRec8 MakeSaveRecord(const std::u16string& source, const std::u16string& destination,
                              bool move);

imDeleteFileRec8 MakeDeleteRecord(int32_t file_type, const std::u16string& path);

}  // namespace host_sim
