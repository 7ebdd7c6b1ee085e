#include "host_sim/host_session.h"

#include <cstring>

namespace host_sim {
namespace {

// Host text fields are terminated within their capacity; a plug-in that fills one to the brim
// must still not make us read past it.
template <size_t N>
std::string FieldText(const char (&field)[N]) {
  return std::string(field, strnlen(field, N));
}

}  // namespace

HostSession::HostSession(const PluginModule& plugin, int32_t interface_version) : plugin_(plugin) {
  std_parms_.imInterfaceVer = interface_version;
}

int32_t HostSession::StartUp(imImportInfoRec* capabilities) {
  // The host presets every option to false before the call.
  std::memset(capabilities, 0, sizeof(*capabilities));
  return plugin_.Call(imInit, &std_parms_, capabilities, nullptr);
}

std::vector<RegisteredFileType> HostSession::FileTypes(int32_t* last_result) {
  std::vector<RegisteredFileType> types;
  for (int32_t index = 0;; ++index) {
    imIndFormatRec record{};
    *last_result = plugin_.Call(imGetIndFormat, &std_parms_,
                                reinterpret_cast<void*>(static_cast<intptr_t>(index)), &record);
    if (*last_result != imNoErr) return types;
    // Extensions are separated by NUL characters and end with an empty one.
    std::string extensions;
    const char* end = record.PlatformExtension + sizeof(record.PlatformExtension);
    for (const char* ext = record.PlatformExtension; ext < end && *ext != '\0';) {
      size_t length = strnlen(ext, static_cast<size_t>(end - ext));
      if (!extensions.empty()) extensions += ", ";
      extensions.append(ext, length);
      ext += length + 1;
    }
    types.push_back({record.filetype, FieldText(record.FormatName),
                     FieldText(record.FormatShortName), extensions});
  }
}

int32_t HostSession::ShutDown() { return plugin_.Call(imShutdown, &std_parms_, nullptr, nullptr); }

}  // namespace host_sim
