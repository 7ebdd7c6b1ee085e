#include "importer/format_registration.h"

#include <cstring>

#include "host_sdk/host_assumptions.h"

namespace {

constexpr char kFormatName[] = "Quorvel Omni Project";
constexpr char kExtensions[] = "qvo";  // without a dot; several would be NUL-separated

template <size_t N, size_t M>
void CopyText(char (&field)[N], const char (&text)[M]) {
  static_assert(M <= N, "the text must fit its field with its terminator");
  std::memcpy(field, text, M);
}

}  // namespace

int32_t GetIndFormat(int32_t index, imIndFormatRec* record) {
  if (index != 0 || record == nullptr) return imBadFormatIndex;
  record->filetype = kQuorvelFileType;
  record->canWriteTimecode = 0;
  CopyText(record->FormatName, kFormatName);
  CopyText(record->FormatShortName, kFormatName);
  CopyText(record->PlatformExtension, kExtensions);
  return imNoErr;
}

int32_t GetIndPixelFormat(int32_t index, imIndPixelFormatRec* record) {
  if (index != 0) return imBadFormatIndex;
  record->outPixelFormat = kAnnouncedPixelFormat;
  return imNoErr;
}
