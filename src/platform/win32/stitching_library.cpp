#include "platform/stitching_library.h"

#include <windows.h>

#include <mutex>
#include <string>
#include <vector>

namespace platform {
namespace {

constexpr wchar_t kLibraryName[] = L"OmniStitcher.dll";

std::mutex load_mutex;
bool library_loaded = false;  // guarded by load_mutex; never unloaded once true

// The full path of the module that holds this code: the plug-in file, which also holds
// xImportEntry.
std::wstring ThisModulePath() {
  HMODULE module = nullptr;
  GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<LPCWSTR>(&ThisModulePath), &module);
  std::vector<wchar_t> path(MAX_PATH);
  for (;;) {
    DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) return std::wstring(path.data(), length);
    path.resize(path.size() * 2);
  }
}

std::wstring LibraryBesideThisModule() {
  std::wstring path = ThisModulePath();
  return path.substr(0, path.find_last_of(L"\\/") + 1) + kLibraryName;
}

std::string Utf8(const std::wstring& wide) {
  int needed = WideCharToMultiByte(CP_UTF8, 0, wide.c_str(), -1, nullptr, 0, nullptr, nullptr);
  std::vector<char> utf8(static_cast<size_t>(needed > 0 ? needed : 1));
  WideCharToMultiByte(CP_UTF8, 0, wide.c_str(), -1, utf8.data(), needed, nullptr, nullptr);
  return utf8.data();
}

}  // namespace

StitchingLibraryLoad LoadStitchingLibrary() {
  const std::wstring path = LibraryBesideThisModule();
  StitchingLibraryLoad load;
  load.path = Utf8(path);
  std::lock_guard<std::mutex> lock(load_mutex);
  // The library's own dependencies are looked for in its folder too. The handle is never freed.
  if (!library_loaded) {
    library_loaded =
        LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH) != nullptr;
    if (!library_loaded) load.error = GetLastError();
  }
  load.loaded = library_loaded;
  return load;
}

}  // namespace platform
