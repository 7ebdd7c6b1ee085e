// What Premiere does with a DLL in its plug-in folder, done with the Win32 calls it uses: the
// plug-in file is loaded by full path from a folder that is not the host program's, with the
// stitching library beside it (or missing).
#include <gtest/gtest.h>
// Winsock first: it must come before windows.h.
#include <winsock2.h>

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "host_sim/host_file.h"
#include "host_sim/host_session.h"
#include "host_sim/plugin_module.h"
#include "platform/dynamic_library.h"
#include "support/plugin_log_file.h"
#include "support/temp_folder.h"

namespace {

namespace fs = std::filesystem;

constexpr char kStitcher[] = "OmniStitcher.dll";
// The library's calls (stitcher_api/pr_source.h), as each compiler decorates their declarations.
#if defined(_MSC_VER)
constexpr const char* kStitcherCalls[] = {
    "?Create@PrSourceFactory@@SA?AV?$shared_ptr@VPRSource@@@std@@AEBV?$basic_string@DU?$char_"
    "traits@D@std@@V?$allocator@D@2@@3@PEAUMediaInfo@@@Z",
    "?Destroy@PrSourceFactory@@SAXAEAV?$shared_ptr@VPRSource@@@std@@@Z",
    "?GetVideoFrame@PRSource@@QEAAH_JHHPEAPEAEPEAH@Z", "?GetAudioFrame@PRSource@@QEAAH_J0PEAPEAM@Z",
    "?Update@PRSource@@QEAA_NXZ"};
#else
constexpr const char* kStitcherCalls[] = {
    "_ZN15PrSourceFactory6CreateERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEEP9MediaInfo",
    "_ZN15PrSourceFactory7DestroyERSt10shared_ptrI8PRSourceE",
    "_ZN8PRSource13GetVideoFrameExiiPPhPi", "_ZN8PRSource13GetAudioFrameExxPPf",
    "_ZN8PRSource6UpdateEv"};
#endif

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), ::tolower);
  return text;
}

// A loaded module's import and delay-import tables, read from its image.
class ModuleImage {
 public:
  explicit ModuleImage(HMODULE module) : base_(reinterpret_cast<const BYTE*>(module)) {}

  // Lower-case names of the DLLs in the import table.
  std::vector<std::string> ImportedDlls() const {
    std::vector<std::string> names;
    auto* descriptor = At<IMAGE_IMPORT_DESCRIPTOR>(Directory(IMAGE_DIRECTORY_ENTRY_IMPORT));
    for (; descriptor->Name != 0; ++descriptor) names.push_back(Lower(At<char>(descriptor->Name)));
    return names;
  }

  // The functions delay-imported from `dll`, by name.
  std::vector<std::string> DelayImportedFunctions(const std::string& dll) const {
    std::vector<std::string> names;
    const IMAGE_DELAYLOAD_DESCRIPTOR* descriptor = FindDelayDescriptor(dll);
    if (descriptor == nullptr) return names;
    for (auto* thunk = At<ULONGLONG>(descriptor->ImportNameTableRVA); *thunk != 0; ++thunk) {
      if ((*thunk & IMAGE_ORDINAL_FLAG64) == 0) {
        names.push_back(At<IMAGE_IMPORT_BY_NAME>(static_cast<DWORD>(*thunk))->Name);
      }
    }
    return names;
  }

 private:
  template <typename T>
  const T* At(DWORD rva) const {
    return reinterpret_cast<const T*>(base_ + rva);
  }

  const IMAGE_NT_HEADERS64* Headers() const {
    return At<IMAGE_NT_HEADERS64>(static_cast<DWORD>(At<IMAGE_DOS_HEADER>(0)->e_lfanew));
  }

  DWORD Directory(int entry) const {
    return Headers()->OptionalHeader.DataDirectory[entry].VirtualAddress;
  }

  bool Names(DWORD rva, const std::string& dll) const { return Lower(At<char>(rva)) == Lower(dll); }

  // From the delay-import directory when the linker filled it (MSVC does); GNU ld leaves it
  // empty, so otherwise the descriptor is found in the image by its DLL name.
  const IMAGE_DELAYLOAD_DESCRIPTOR* FindDelayDescriptor(const std::string& dll) const {
    if (DWORD directory = Directory(IMAGE_DIRECTORY_ENTRY_DELAY_IMPORT)) {
      for (auto* d = At<IMAGE_DELAYLOAD_DESCRIPTOR>(directory); d->DllNameRVA != 0; ++d) {
        if (Names(d->DllNameRVA, dll)) return d;
      }
      return nullptr;
    }
    const IMAGE_NT_HEADERS64* headers = Headers();
    const IMAGE_SECTION_HEADER* section = IMAGE_FIRST_SECTION(headers);
    for (WORD s = 0; s < headers->FileHeader.NumberOfSections; ++s, ++section) {
      if ((section->Characteristics & IMAGE_SCN_MEM_DISCARDABLE) != 0) continue;
      const DWORD end = section->VirtualAddress + section->Misc.VirtualSize;
      for (DWORD rva = section->VirtualAddress; rva + sizeof(IMAGE_DELAYLOAD_DESCRIPTOR) <= end;
           rva += 4) {
        auto* d = At<IMAGE_DELAYLOAD_DESCRIPTOR>(rva);
        if (d->Attributes.AllAttributes == 1 && d->DllNameRVA > 0 &&
            d->DllNameRVA < headers->OptionalHeader.SizeOfImage && d->ImportNameTableRVA > 0 &&
            Names(d->DllNameRVA, dll)) {
          return d;
        }
      }
    }
    return nullptr;
  }

  const BYTE* base_;
};

class HostLoadingTest : public ::testing::Test {
 protected:
  // The plug-in file in a plug-in folder of its own, with the stitching library beside it or not.
  std::string InstallPlugin(bool with_stitcher) {
    const fs::path folder = plugins_.path() / (with_stitcher ? "Complete" : "Incomplete");
    fs::create_directories(folder);
    const std::string plugin = host_sim::DefaultPluginPath();
    fs::copy_file(fs::u8path(plugin), folder / fs::u8path(plugin).filename());
    if (with_stitcher)
      fs::copy_file(fs::u8path(platform::ExecutableFolder()) / kStitcher, folder / kStitcher);
    return (folder / fs::u8path(plugin).filename()).u8string();
  }

  TempFolder plugins_;
  TempFolder clips_;
};

TEST_F(HostLoadingTest, IsAnImporterThatDelayLoadsTheStitchingLibrary) {
  host_sim::PluginModule plugin(host_sim::DefaultPluginPath());
  ASSERT_TRUE(plugin.loaded()) << plugin.error();
  HMODULE module = GetModuleHandleW(L"QuorvelOmniImporter.prm");
  ASSERT_NE(module, nullptr);

  HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(1000), L"IMPT");
  ASSERT_NE(resource, nullptr);
  ASSERT_EQ(SizeofResource(module, resource), 4u);
  uint32_t code = 0;
  std::memcpy(&code, LockResource(LoadResource(module, resource)), sizeof(code));
  EXPECT_EQ(code, 0x0071766Fu);

  std::vector<std::string> system_dlls = {"kernel32.dll", "ws2_32.dll", "msvcrt.dll",  "user32.dll",
                                          "advapi32.dll", "ntdll.dll",  "ucrtbase.dll"};
#if defined(_MSC_VER)
  // The Visual C++ runtime of a /MD build, which the stitching library needs as well.
  system_dlls.insert(system_dlls.end(), {"msvcp140.dll", "vcruntime140.dll", "vcruntime140_1.dll"});
#endif
  for (const std::string& name : ModuleImage(module).ImportedDlls()) {
    bool system = name.rfind("api-ms-win-", 0) == 0 ||
                  std::find(system_dlls.begin(), system_dlls.end(), name) != system_dlls.end();
    EXPECT_TRUE(system) << name << " is loaded with the plug-in, wherever it is searched for";
  }
  std::vector<std::string> delayed = ModuleImage(module).DelayImportedFunctions(kStitcher);
  for (const char* call : kStitcherCalls) {
    EXPECT_NE(std::find(delayed.begin(), delayed.end(), call), delayed.end()) << call;
  }
}

// What Properties > Details shows of the file.
TEST_F(HostLoadingTest, CarriesTheProjectVersionAndNames) {
  const std::wstring path = fs::u8path(host_sim::DefaultPluginPath()).wstring();
  DWORD ignored = 0;
  std::vector<BYTE> block(GetFileVersionInfoSizeW(path.c_str(), &ignored));
  ASSERT_FALSE(block.empty());
  ASSERT_TRUE(GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()));
  auto text = [&block](const wchar_t* name) {
    wchar_t* value = nullptr;
    UINT length = 0;
    const std::wstring key = std::wstring(L"\\StringFileInfo\\040904B0\\") + name;
    if (!VerQueryValueW(block.data(), key.c_str(), reinterpret_cast<void**>(&value), &length)) {
      return std::wstring();
    }
    return std::wstring(value);
  };
  const std::string expected = QUORVEL_EXPECTED_VERSION;
  EXPECT_EQ(text(L"FileVersion"), std::wstring(expected.begin(), expected.end()));
  EXPECT_EQ(text(L"ProductVersion"), std::wstring(expected.begin(), expected.end()));
  EXPECT_EQ(text(L"ProductName"), L"Quorvel Omni Importer");
  EXPECT_EQ(text(L"CompanyName"), L"Quorvel");
  EXPECT_EQ(text(L"FileDescription"), L"Quorvel Omni Project importer for Adobe Premiere Pro");

  VS_FIXEDFILEINFO* fixed = nullptr;
  UINT length = 0;
  ASSERT_TRUE(VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&fixed), &length));
  const std::string numbers = std::to_string(HIWORD(fixed->dwFileVersionMS)) + "." +
                              std::to_string(LOWORD(fixed->dwFileVersionMS)) + "." +
                              std::to_string(HIWORD(fixed->dwFileVersionLS)) + "." +
                              std::to_string(LOWORD(fixed->dwFileVersionLS));
  EXPECT_EQ(numbers, expected);
}

TEST_F(HostLoadingTest, LoadingStartsNoWinsock) {
  ASSERT_EQ(WSACleanup(), SOCKET_ERROR);
  ASSERT_EQ(WSAGetLastError(), WSANOTINITIALISED) << "the test program itself started Winsock";
  host_sim::PluginModule plugin(host_sim::DefaultPluginPath());
  ASSERT_TRUE(plugin.loaded()) << plugin.error();
  EXPECT_EQ(WSACleanup(), SOCKET_ERROR);
  EXPECT_EQ(WSAGetLastError(), WSANOTINITIALISED);
}

// Without the library beside it the plug-in still loads and answers, failing each open; with it,
// the library is found there and not beside the host program.
TEST_F(HostLoadingTest, FindsTheStitchingLibraryBesideThePluginOrAnswersWithoutIt) {
  for (const bool with_stitcher : {false, true}) {
    SCOPED_TRACE(with_stitcher ? "with the stitching library" : "without it");
    host_sim::PluginModule plugin(InstallPlugin(with_stitcher));
    ASSERT_TRUE(plugin.loaded()) << plugin.error();
    {
      host_sim::HostSession session(plugin, 23);
      imImportInfoRec capabilities;
      EXPECT_EQ(session.StartUp(&capabilities), imNoErr);
      int32_t last_result = 0;
      session.FileTypes(&last_result);
      const std::string path = clips_.WriteFile(with_stitcher ? "with.qvo" : "without.qvo",
                                                R"({"width": 64, "height": 32})");
      host_sim::HostFile clip(session, path, session.FileTypeFor(path)->file_type);
      if (!with_stitcher) {
        EXPECT_EQ(clip.Open(), malUnknownError);
        const std::string tried = (plugins_.path() / "Incomplete" / kStitcher).u8string();
        EXPECT_NE(PluginLogText(CurrentProfile())
                      .find("ERROR Stitching library could not be loaded from " + tried +
                            " (error 126) SDK_File_Import:124"),
                  std::string::npos);
        EXPECT_NE(
            PluginLogText(CurrentProfile()).find("ERROR  PRSource failed. SDK_File_Import:862"),
            std::string::npos);
      } else {
        ASSERT_EQ(clip.Open(), imNoErr);
        ASSERT_EQ(clip.GetInfo(), imNoErr);
        wchar_t loaded_from[MAX_PATH] = {};
        GetModuleFileNameW(GetModuleHandleW(L"OmniStitcher.dll"), loaded_from, MAX_PATH);
        EXPECT_EQ(fs::path(loaded_from).parent_path(), (plugins_.path() / "Complete"));
        EXPECT_EQ(clip.Close(), imNoErr);
      }
      EXPECT_EQ(session.ShutDown(), imNoErr);
    }
    EXPECT_TRUE(plugin.Unload());
  }
}

}  // namespace
