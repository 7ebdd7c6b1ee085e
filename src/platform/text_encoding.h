// Conversion of the host's wide (UTF-16) text to narrow code pages.
#pragma once

#include <cstdint>
#include <string>

namespace platform {

enum class CodePage : uint32_t {
  kSystemAnsi = 0,  // the system ANSI code page; Windows-1252 on POSIX
  kUtf8 = 65001,
};

// WideCharToMultiByte with flags 0 and the whole terminated string (length -1): characters the
// code page lacks become its default character ('?'). With `out_size` 0 it returns the bytes
// needed, terminator included; otherwise the bytes written, or 0 when `out` is too small.
int WideToMultiByte(CodePage code_page, const char16_t* wide, char* out, int out_size);

// The system ANSI code page's number: GetACP() on Windows; 1252 on POSIX.
uint32_t SystemAnsiCodePageNumber();

// True when the system ANSI code page has every character of `utf8`, so that text converted to
// it comes out exactly, without default characters or look-alikes; false for invalid UTF-8.
bool SystemAnsiCanSpell(const std::string& utf8);

}  // namespace platform
