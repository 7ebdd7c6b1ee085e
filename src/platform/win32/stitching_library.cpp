#include "platform/stitching_library.h"

#include <windows.h>

#include <mutex>
#include <string>
#include <vector>

#include "platform/win32/wide_text.h"

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

}  // namespace

StitchingLibraryLoad LoadStitchingLibrary() {
  StitchingLibraryLoad load;
  std::lock_guard<std::mutex> lock(load_mutex);
  // Once loaded, every later open asks again: answered without looking the path up.
  if (library_loaded) {
    load.loaded = true;
    return load;
  }
  const std::wstring path = LibraryBesideThisModule();
  load.path = Utf8(path);
  // The library's own dependencies are looked for in its folder too. The handle is never freed.
  library_loaded = LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH) != nullptr;
  if (!library_loaded) load.error = GetLastError();
  load.loaded = library_loaded;
  return load;
}

std::string StitchingLibraryFileName() { return "OmniStitcher.dll"; }

}  // namespace platform
