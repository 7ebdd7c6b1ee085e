#include "platform/text_encoding.h"

#include <windows.h>

namespace platform {

int WideToMultiByte(CodePage code_page, const char16_t* wide, char* out, int out_size) {
  return WideCharToMultiByte(static_cast<UINT>(code_page), 0, reinterpret_cast<LPCWCH>(wide), -1,
                             out, out_size, nullptr, nullptr);
}

}  // namespace platform
