#include "platform/dynamic_library.h"

#include <windows.h>

#include <vector>

namespace platform {
namespace {

std::wstring Widen(const std::string& utf8) {
  int needed = MultiByteToWideChar(CP_UTF8, 0, utf8.c_str(), -1, nullptr, 0);
  std::vector<wchar_t> wide(static_cast<size_t>(needed > 0 ? needed : 1));
  MultiByteToWideChar(CP_UTF8, 0, utf8.c_str(), -1, wide.data(), needed);
  return wide.data();
}

}  // namespace

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
  std::wstring wide(path, length);
  wide = wide.substr(0, wide.find_last_of(L"\\/"));
  int needed = WideCharToMultiByte(CP_UTF8, 0, wide.c_str(), -1, nullptr, 0, nullptr, nullptr);
  std::vector<char> utf8(static_cast<size_t>(needed > 0 ? needed : 1));
  WideCharToMultiByte(CP_UTF8, 0, wide.c_str(), -1, utf8.data(), needed, nullptr, nullptr);
  return utf8.data();
}

std::string PluginFileName(const std::string& stem) { return stem + ".prm"; }

}  // namespace platform
