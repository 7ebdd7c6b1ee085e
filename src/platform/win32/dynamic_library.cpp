#include "platform/dynamic_library.h"

#include <windows.h>

#include "platform/win32/wide_text.h"

namespace platform {
DynamicLibrary::DynamicLibrary(const std::string& path) {
  handle_ = LoadLibraryW(Widen(path).c_str());
  if (handle_ == nullptr)
    error_ = "LoadLibraryW failed with error " + std::to_string(GetLastError());
}

DynamicLibrary::~DynamicLibrary() { Unload(); }

void* DynamicLibrary::Symbol(const char* name) const {
  if (handle_ == nullptr) return nullptr;
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), name));
}

bool DynamicLibrary::Unload() {
  if (handle_ == nullptr) return false;
  bool freed = FreeLibrary(static_cast<HMODULE>(handle_)) != 0;
  handle_ = nullptr;
  return freed;
}

std::string ExecutableFolder() {
  wchar_t path[MAX_PATH];
  DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
  const std::wstring wide(path, length);
  return Utf8(wide.substr(0, wide.find_last_of(L"\\/")));
}

std::string PluginFileName(const std::string& stem) { return stem + ".prm"; }

std::string ProgramFileName(const std::string& stem) { return stem + ".exe"; }

}  // namespace platform
