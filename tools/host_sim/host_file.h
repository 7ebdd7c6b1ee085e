// One file as the host handles it: opened by path, asked about, quieted and closed. It keeps what
// the host keeps between selectors: the file reference, the private-data handle, the latest
// information record and the preferences block. Every call returns the plug-in's result;
// selectors the plug-in does not serve come back as imUnsupported like any other result. One
// thread drives a HostFile.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host_sdk/premiere_importer.h"
#include "host_sim/host_records.h"
#include "host_sim/host_session.h"

namespace host_sim {

// The five text fields of imTimeInfoRec8.
struct HeaderTexts {
  std::string orgtime;
  std::string alttime;
  std::string orgreel;
  std::string altreel;
  std::string logcomment;
};

class HostFile {
 public:
  // `session` must outlive the file. `native_path` is UTF-8, relative or absolute; `file_type`
  // is the registered type the host picked for it. Nothing is sent to the plug-in yet.
  HostFile(HostSession& session, const std::string& native_path, int32_t file_type);

  // imOpenFile8 with the file-reference slot and a fresh open record. The private data the
  // plug-in leaves in the record is kept, whatever the result.
  int32_t Open();

  // imGetInfo8 with a fresh information record, holding the private data the host keeps; the
  // private data the plug-in leaves there is kept.
  int32_t GetInfo();

  // imGetPrefs8 with a null preferences record.
  int32_t GetPrefsWithoutRecord();

  // imGetPrefs8 twice: without a block, for the length, then with a block of that length, which
  // the file keeps. Returns the last result; a result other than imNoErr, or a length that is not
  // positive, ends the exchange after the first call.
  int32_t GetPrefs();

  // imGetIndPixelFormat for index 0, 1, ... until the plug-in answers something other than
  // imNoErr (or kMostListEntries times); `last_result` receives the last answer.
  std::vector<PrPixelFormat> PixelFormats(int32_t* last_result);

  // imAnalysis with a buffer of `kCodecTextCapacity` bytes.
  int32_t CodecText(std::string* text);

  // imDataRateAnalysis twice: without a buffer, for its size, then with a buffer of that size.
  // Returns the last result; a size that is not a whole, positive number of entries ends the
  // exchange after the first call.
  int32_t DataRates(std::vector<imDataSample>* samples, int32_t* base_rate);

  // imGetTimeInfo8.
  int32_t ReadHeaderTexts(HeaderTexts* texts);

  // imQuietFile: the file-reference slot and the private data.
  int32_t Quiet();

  // imCloseFile: the file-reference slot and the private data, which the host then forgets.
  int32_t Close();

  const std::u16string& host_path() const { return host_path_; }
  int32_t importer_id() const { return importer_id_; }
  imFileRef file_ref() const { return file_ref_; }
  void* private_data() const { return private_data_; }
  // REQUIRES: GetInfo has been called.
  const FileInfoBlock& info() const { return *info_; }
  // Empty until GetPrefs has received a block.
  const std::vector<char>& prefs() const { return prefs_; }

  static constexpr int32_t kCodecTextCapacity = 256;

 private:
  imFileAccessRec8 AccessRecord();
  void* PrefsOrNull();

  HostSession& session_;
  const std::u16string host_path_;  // what every record points at, alive as long as the file
  const int32_t file_type_;
  const int32_t importer_id_;
  imFileRef file_ref_;
  void* private_data_ = nullptr;
  std::unique_ptr<FileInfoBlock> info_;
  std::vector<char> prefs_;
};

}  // namespace host_sim
