#include "host_sim/host_session.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <filesystem>

#include "host_sim/host_records.h"

namespace host_sim {
namespace {

// Extensions are separated by NUL characters and end with an empty one.
std::vector<std::string> ExtensionsOf(const imIndFormatRec& record) {
  char list[sizeof(record.PlatformExtension)];
  std::memcpy(list, record.PlatformExtension, sizeof(list));
  std::vector<std::string> extensions;
  const char* end = list + sizeof(list);
  for (const char* extension = list; extension < end && *extension != '\0';) {
    size_t length = strnlen(extension, static_cast<size_t>(end - extension));
    extensions.emplace_back(extension, length);
    extension += length + 1;
  }
  return extensions;
}

std::string LowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

}  // namespace

HostSession::HostSession(const PluginModule& plugin, int32_t interface_version)
    : plugin_(plugin), host_(interface_version) {}

int32_t HostSession::Call(int32_t selector, void* param1, void* param2) {
  return plugin_.Call(selector, host_.std_parms(), param1, param2);
}

int32_t HostSession::StartUp(imImportInfoRec* capabilities) {
  // The host presets every option to false before the call.
  std::memset(capabilities, 0, sizeof(*capabilities));
  return Call(imInit, capabilities, nullptr);
}

std::vector<RegisteredFileType> HostSession::FileTypes(int32_t* last_result) {
  file_types_.clear();
  for (int32_t index = 0; index < kMostListEntries; ++index) {
    imIndFormatRec record{};
    *last_result =
        Call(imGetIndFormat, reinterpret_cast<void*>(static_cast<intptr_t>(index)), &record);
    if (*last_result != imNoErr) return file_types_;
    file_types_.push_back({record.filetype, FieldText(record.FormatName),
                           FieldText(record.FormatShortName), ExtensionsOf(record)});
  }
  return file_types_;
}

const RegisteredFileType* HostSession::FileTypeFor(const std::string& native_path) const {
  std::string extension = LowerCase(std::filesystem::u8path(native_path).extension().u8string());
  if (extension.empty()) return nullptr;
  for (const RegisteredFileType& type : file_types_) {
    for (const std::string& registered : type.extensions) {
      if ("." + LowerCase(registered) == extension) return &type;
    }
  }
  return nullptr;
}

int32_t HostSession::Save(const std::string& source, const std::string& destination, bool move) {
  std::u16string source_path = HostWidePath(source);
  std::u16string destination_path = HostWidePath(destination);
  imSaveFileRec8 record = MakeSaveRecord(source_path, destination_path, move);
  return Call(imSaveFile8, &record, nullptr);
}

int32_t HostSession::Delete(int32_t file_type, const std::string& native_path) {
  std::u16string path = HostWidePath(native_path);
  imDeleteFileRec8 record = MakeDeleteRecord(file_type, path);
  return Call(imDeleteFile8, &record, nullptr);
}

int32_t HostSession::ShutDown() { return Call(imShutdown, nullptr, nullptr); }

}  // namespace host_sim
