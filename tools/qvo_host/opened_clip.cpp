#include "qvo_host/opened_clip.h"

namespace host_sim {
namespace {

std::string Failure(const char* step, int32_t result) {
  return std::string(step) + " failed with result " + std::to_string(result);
}

}  // namespace

std::unique_ptr<HostFile> OpenDescribedClip(HostSession& session, const std::string& native_path,
                                            std::string* error) {
  const RegisteredFileType* file_type = session.FileTypeFor(native_path);
  if (file_type == nullptr) {
    *error = "the plug-in registers no file type with this extension";
    return nullptr;
  }
  auto file = std::make_unique<HostFile>(session, native_path, file_type->file_type);
  int32_t result = file->Open();
  if (result != imNoErr) {
    if (file->private_data() != nullptr) file->Close();
    *error = Failure("open", result);
    return nullptr;
  }
  result = file->GetInfo();
  if (result != imNoErr) {
    QuietAndClose(file.get());
    *error = Failure("file information", result);
    return nullptr;
  }
  return file;
}

void QuietAndClose(HostFile* file) {
  file->Quiet();
  file->Close();
}

}  // namespace host_sim
