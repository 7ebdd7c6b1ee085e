// Conversion of the host's wide (UTF-16) text to narrow code pages.
#pragma once

#include <cstdint>

namespace platform {

enum class CodePage : uint32_t {
  kSystemAnsi = 0,  // the system ANSI code page; Windows-1252 on POSIX
  kUtf8 = 65001,
};

// WideCharToMultiByte with flags 0 and the whole terminated string (length -1): characters the
// code page lacks become its default character ('?'). With `out_size` 0 it returns the bytes
// needed, terminator included; otherwise the bytes written, or 0 when `out` is too small.
int WideToMultiByte(CodePage code_page, const char16_t* wide, char* out, int out_size);

}  // namespace platform
