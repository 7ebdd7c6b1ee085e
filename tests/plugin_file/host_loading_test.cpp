// What Premiere checks before it treats a DLL as an importer, checked with the Win32 calls it uses.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "host_sim/plugin_module.h"

namespace {

std::wstring PluginPathW() {
  std::string path = host_sim::DefaultPluginPath();
  return std::wstring(path.begin(), path.end());
}

class HostLoadingTest : public ::testing::Test {
 protected:
  void SetUp() override {
    module_ = LoadLibraryW(PluginPathW().c_str());
    ASSERT_NE(module_, nullptr) << "LoadLibraryW error " << GetLastError();
  }
  void TearDown() override {
    if (module_ != nullptr) FreeLibrary(module_);
  }

  std::vector<std::string> ImportedDllNames() const {
    auto* base = reinterpret_cast<const BYTE*>(module_);
    auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    auto* nt = reinterpret_cast<const IMAGE_NT_HEADERS64*>(base + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY& imports =
        nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    std::vector<std::string> names;
    auto* descriptor =
        reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + imports.VirtualAddress);
    for (; descriptor->Name != 0; ++descriptor) {
      std::string name = reinterpret_cast<const char*>(base + descriptor->Name);
      std::transform(name.begin(), name.end(), name.begin(), ::tolower);
      names.push_back(name);
    }
    return names;
  }

  HMODULE module_ = nullptr;
};

TEST_F(HostLoadingTest, ExportsXImportEntryUndecorated) {
  EXPECT_NE(GetProcAddress(module_, "xImportEntry"), nullptr);
}

TEST_F(HostLoadingTest, CarriesTheImporterResource) {
  HRSRC resource = FindResourceW(module_, MAKEINTRESOURCEW(1000), L"IMPT");
  ASSERT_NE(resource, nullptr);
  ASSERT_EQ(SizeofResource(module_, resource), 4u);
  uint32_t code = 0;
  std::memcpy(&code, LockResource(LoadResource(module_, resource)), sizeof(code));
  EXPECT_EQ(code, 0x0071766Fu);
}

TEST_F(HostLoadingTest, ImportsOnlySystemDllsAndTheStitchingLibrary) {
  const std::vector<std::string> system_dlls = {"kernel32.dll", "ws2_32.dll",   "msvcrt.dll",
                                                "user32.dll",   "advapi32.dll", "ntdll.dll",
                                                "ucrtbase.dll"};
  std::vector<std::string> names = ImportedDllNames();
  EXPECT_NE(std::find(names.begin(), names.end(), "omnistitcher.dll"), names.end());
  for (const std::string& name : names) {
    bool allowed = name == "omnistitcher.dll" || name.rfind("api-ms-win-", 0) == 0 ||
                   std::find(system_dlls.begin(), system_dlls.end(), name) != system_dlls.end();
    EXPECT_TRUE(allowed) << name;
  }
}

}  // namespace
