#include "qvo_host/opened_clip.h"

#include <atomic>
#include <filesystem>

#include "qvo_host/code_page_problem.h"

namespace host_sim {
namespace {

std::atomic<int64_t> records_kept_by_failed_opens{0};

// The step that failed and its result, and why the library cannot be given the path when the
// system code page cannot spell the path the plug-in was handed (without the "\\?\" prefix).
std::string Failure(const char* step, int32_t result, const HostFile& file) {
  const std::string failure = std::string(step) + " failed with result " + std::to_string(result);
  const std::string problem =
      CodePageProblem(std::filesystem::path(file.host_path().substr(4)).u8string());
  return problem.empty() ? failure : failure + "; " + problem;
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
    if (file->private_data() != nullptr) {
      records_kept_by_failed_opens.fetch_add(1);
      file->Close();
    }
    *error = Failure("open", result, *file);
    return nullptr;
  }
  result = file->GetInfo();
  if (result != imNoErr) {
    QuietAndClose(file.get());
    *error = Failure("file information", result, *file);
    return nullptr;
  }
  return file;
}

int64_t RecordsKeptByFailedOpens() { return records_kept_by_failed_opens.load(); }

void QuietAndClose(HostFile* file) {
  file->Quiet();
  file->Close();
}

}  // namespace host_sim
