// The built plug-in file, loaded as the host loads it.
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "command_server/command_server.h"
#include "host_sim/host_session.h"
#include "host_sim/plugin_module.h"
#include "support/temp_folder.h"

namespace {

// PrSourceFactory's members that the plug-in exports for the library (stitcher_api/pr_source.h),
// and HandlerOf (importer/selector_table.h), which must stay hidden, as each compiler decorates
// their declarations.
#if defined(_MSC_VER)
#define QUORVEL_MSVC_STRING "V?$basic_string@DU?$char_traits@D@std@@V?$allocator@D@2@@std@@"
#define QUORVEL_MSVC_KEY_TRAITS                                        \
  "U?$hash@" QUORVEL_MSVC_STRING "@2@U?$equal_to@" QUORVEL_MSVC_STRING \
  "@2@V?$allocator@U?$pair@$$CB" QUORVEL_MSVC_STRING
constexpr const char* kExportedMembers[] = {
    "?mutex_@PrSourceFactory@@2Vmutex@std@@A",
    "?refs_@PrSourceFactory@@2V?$unordered_map@" QUORVEL_MSVC_STRING "H" QUORVEL_MSVC_KEY_TRAITS
    "H@std@@@2@@std@@A",
    "?sources_@PrSourceFactory@@2V?$unordered_map@" QUORVEL_MSVC_STRING
    "V?$shared_ptr@VPRSource@@@2@" QUORVEL_MSVC_KEY_TRAITS
    "V?$shared_ptr@VPRSource@@@2@@std@@@2@@std@@A",
    "??4PrSourceFactory@@QEAAAEAV0@AEBV0@@Z"};
constexpr char kHiddenHandlerOf[] = "?HandlerOf@@YAP6AHPEAUimStdParms@@PEAX1@ZH@Z";
#else
constexpr const char* kExportedMembers[] = {
    "_ZN15PrSourceFactory6mutex_E", "_ZN15PrSourceFactory5refs_B5cxx11E",
    "_ZN15PrSourceFactory8sources_B5cxx11E", "_ZN15PrSourceFactoryaSERKS_"};
constexpr char kHiddenHandlerOf[] = "_Z9HandlerOfi";
#endif

TEST(PluginFileTest, ExportsTheEntryPointAndTheStitchingLibrarysStatics) {
  host_sim::PluginModule plugin(host_sim::DefaultPluginPath());
  ASSERT_TRUE(plugin.loaded()) << plugin.error();
  for (const char* symbol : kExportedMembers) {
    EXPECT_NE(plugin.Symbol(symbol), nullptr) << symbol;
  }
  EXPECT_EQ(plugin.Symbol(kHiddenHandlerOf), nullptr) << "internal code must stay hidden";
}

// Runs with the production values: the command thread connects on its first pass, and shut-down
// waits at most for the pause the thread is in. A plug-in unloaded and loaded again starts afresh.
TEST(PluginFileTest, ShutsDownWhileConnectedWithinOnePauseUnloadsAndStartsAgain) {
  TempFolder home;
  const std::string home_path = home.path().string();
  SetHomeDriveAndPath(home_path);
  command_server::CommandServer server;
  ASSERT_TRUE(server.WritePortFile(home_path));

  for (int load = 1; load <= 2; ++load) {
    SCOPED_TRACE("load " + std::to_string(load));
    host_sim::PluginModule plugin(host_sim::DefaultPluginPath());
    ASSERT_TRUE(plugin.loaded()) << plugin.error();
    host_sim::HostSession session(plugin, 6);
    imImportInfoRec capabilities;
    EXPECT_EQ(session.StartUp(&capabilities), imNoErr);
    ASSERT_TRUE(server.WaitForConnection(std::chrono::seconds(10)));
    const auto shutting_down = std::chrono::steady_clock::now();
    EXPECT_EQ(session.ShutDown(), imNoErr);
    EXPECT_LT(std::chrono::steady_clock::now() - shutting_down, std::chrono::milliseconds(3500));
    EXPECT_TRUE(server.WaitForDisconnection(std::chrono::seconds(2)));
    EXPECT_TRUE(plugin.Unload());
  }
}

}  // namespace
