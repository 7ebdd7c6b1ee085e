// UTF-8 to and from the wide (UTF-16) text of the Win32 calls, for the platform layer's own use.
#pragma once

#include <string>

namespace platform {

// An empty string for text that is not valid UTF-8.
std::wstring WidenUtf8(const std::string& utf8);

std::string NarrowToUtf8(const std::wstring& wide);

}  // namespace platform
