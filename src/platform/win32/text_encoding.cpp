#include "platform/text_encoding.h"

#include <windows.h>

#include "platform/win32/wide_text.h"

namespace platform {

int WideToMultiByte(CodePage code_page, const char16_t* wide, char* out, int out_size) {
  return WideCharToMultiByte(static_cast<UINT>(code_page), 0, reinterpret_cast<LPCWCH>(wide), -1,
                             out, out_size, nullptr, nullptr);
}

uint32_t SystemAnsiCodePageNumber() { return GetACP(); }

// Without best-fit mapping, a character the code page lacks becomes the default character and is
// reported, instead of turning silently into a look-alike.
bool SystemAnsiCanSpell(const std::string& utf8) {
  if (GetACP() == CP_UTF8) return true;
  const std::wstring wide = Widen(utf8);
  if (wide.empty()) return utf8.empty();
  BOOL used_default = FALSE;
  const int converted =
      WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, wide.data(), static_cast<int>(wide.size()),
                          nullptr, 0, nullptr, &used_default);
  return converted > 0 && !used_default;
}

}  // namespace platform
