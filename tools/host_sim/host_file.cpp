#include "host_sim/host_file.h"

#include <cstring>

#include "host_sdk/host_assumptions.h"

namespace host_sim {
namespace {

// Preferences and data-rate tables beyond this are taken for a plug-in's fault, not allocated.
constexpr int32_t kLargestBlock = 256 * 1024 * 1024;

void* IndexParam(int32_t index) { return reinterpret_cast<void*>(static_cast<intptr_t>(index)); }

imFileRef ClosedFileRef() { return reinterpret_cast<imFileRef>(kBadFileRef); }

// Places the file-reference slot and the open record where host_assumptions.h's accessors read
// them, so that correcting the reading there corrects the host as well.
void OrderOpenParams(imFileRef* slot, imFileOpenRec8* record, void** param1, void** param2) {
  bool slot_first = OpenFileRefSlot(slot, record) == slot;
  *param1 = slot_first ? static_cast<void*>(slot) : static_cast<void*>(record);
  *param2 = slot_first ? static_cast<void*>(record) : static_cast<void*>(slot);
}

}  // namespace

HostFile::HostFile(HostSession& session, const std::string& native_path, int32_t file_type)
    : session_(session),
      host_path_(HostWidePath(native_path)),
      file_type_(file_type),
      importer_id_(session.NextImporterId()),
      file_ref_(ClosedFileRef()) {}

imFileAccessRec8 HostFile::AccessRecord() {
  // The host's own identification of the import; the plug-in leaves it alone.
  return MakeAccessRecord(this, file_type_, host_path_, file_ref_);
}

void* HostFile::PrefsOrNull() { return prefs_.empty() ? nullptr : prefs_.data(); }

int32_t HostFile::PrefsSize() const { return static_cast<int32_t>(prefs_.size()); }

int32_t HostFile::Open() {
  imFileOpenRec8 record = MakeOpenRecord(AccessRecord(), private_data_, importer_id_);
  void* param1 = nullptr;
  void* param2 = nullptr;
  OrderOpenParams(&file_ref_, &record, &param1, &param2);
  int32_t result = session_.Call(imOpenFile8, param1, param2);
  private_data_ = record.privatedata;
  return result;
}

int32_t HostFile::GetInfo() {
  imFileAccessRec8 access = AccessRecord();
  info_ = std::make_unique<FileInfoBlock>(importer_id_, private_data_);
  info_->record()->prefs = PrefsOrNull();
  int32_t result = session_.Call(imGetInfo8, &access, info_->record());
  private_data_ = info_->record()->privatedata;
  return result;
}

int32_t HostFile::GetPrefsWithoutRecord() {
  imFileAccessRec8 access = AccessRecord();
  return session_.Call(imGetPrefs8, &access, nullptr);
}

int32_t HostFile::GetPrefs() {
  imFileAccessRec8 access = AccessRecord();
  const imFileInfoRec8* info = info_ != nullptr ? info_->record() : nullptr;
  imGetPrefsRec asking = MakePrefsRecord(nullptr, 0, info);
  int32_t result = session_.Call(imGetPrefs8, &access, &asking);
  int32_t length = asking.prefsLength;
  if (result != imNoErr || length <= 0 || length > kLargestBlock) return result;
  std::vector<char> block(static_cast<size_t>(length), 0);
  imGetPrefsRec filling = MakePrefsRecord(block.data(), length, info);
  result = session_.Call(imGetPrefs8, &access, &filling);
  prefs_ = std::move(block);
  return result;
}

std::vector<PrPixelFormat> HostFile::PixelFormats(int32_t* last_result) {
  std::vector<PrPixelFormat> formats;
  for (int32_t index = 0; index < kMostListEntries; ++index) {
    imIndPixelFormatRec record = MakePixelFormatRecord(private_data_, PrefsOrNull());
    *last_result = session_.Call(imGetIndPixelFormat, IndexParam(index), &record);
    if (*last_result != imNoErr) return formats;
    formats.push_back(record.outPixelFormat);
  }
  return formats;
}

int32_t HostFile::CodecText(std::string* text) {
  char buffer[kCodecTextCapacity] = {};
  imAnalysisRec record =
      MakeAnalysisRecord(private_data_, PrefsOrNull(), buffer, kCodecTextCapacity);
  int32_t result = session_.Call(imAnalysis, file_ref_, &record);
  *text = FieldText(buffer);
  return result;
}

int32_t HostFile::DataRates(std::vector<imDataSample>* samples, int32_t* base_rate) {
  samples->clear();
  imDataRateAnalysisRec asking = MakeDataRateRecord(private_data_, PrefsOrNull(), nullptr, 0);
  int32_t result = session_.Call(imDataRateAnalysis, file_ref_, &asking);
  *base_rate = asking.baserate;
  int32_t size = asking.buffersize;
  bool whole_entries = size > 0 && size % static_cast<int32_t>(sizeof(imDataSample)) == 0;
  if (result != imNoErr || !whole_entries || size > kLargestBlock) return result;
  std::vector<char> buffer(static_cast<size_t>(size), 0);
  imDataRateAnalysisRec filling =
      MakeDataRateRecord(private_data_, PrefsOrNull(), buffer.data(), size);
  result = session_.Call(imDataRateAnalysis, file_ref_, &filling);
  *base_rate = filling.baserate;
  samples->resize(buffer.size() / sizeof(imDataSample));
  std::memcpy(samples->data(), buffer.data(), buffer.size());
  return result;
}

int32_t HostFile::ReadHeaderTexts(HeaderTexts* texts) {
  imTimeInfoRec8 record = MakeTimeInfoRecord(private_data_, PrefsOrNull());
  int32_t result = session_.Call(imGetTimeInfo8, file_ref_, &record);
  *texts = {FieldText(record.orgtime), FieldText(record.alttime), FieldText(record.orgreel),
            FieldText(record.altreel), FieldText(record.logcomment)};
  return result;
}

int32_t HostFile::Quiet() { return session_.Call(imQuietFile, &file_ref_, private_data_); }

int32_t HostFile::Close() {
  int32_t result = session_.Call(imCloseFile, &file_ref_, private_data_);
  private_data_ = nullptr;
  return result;
}

}  // namespace host_sim
