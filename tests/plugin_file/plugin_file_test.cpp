// The built plug-in file, loaded as the host loads it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "host_sim/host_session.h"
#include "host_sim/plugin_module.h"

namespace {

TEST(PluginFileTest, ExportsTheEntryPointAndTheStitchingLibrarysStatics) {
  host_sim::PluginModule plugin(host_sim::DefaultPluginPath());
  ASSERT_TRUE(plugin.loaded()) << plugin.error();
  for (const char* symbol :
       {"_ZN15PrSourceFactory6mutex_E", "_ZN15PrSourceFactory5refs_B5cxx11E",
        "_ZN15PrSourceFactory8sources_B5cxx11E", "_ZN15PrSourceFactoryaSERKS_"}) {
    EXPECT_NE(plugin.Symbol(symbol), nullptr) << symbol;
  }
  EXPECT_EQ(plugin.Symbol("_Z9HandlerOfi"), nullptr) << "internal code must stay hidden";
}

// Runs with the production pause: shut-down waits for the command thread's current pause.
TEST(PluginFileTest, StartsUpAndShutsDownThroughTheFileAndUnloads) {
  host_sim::PluginModule plugin(host_sim::DefaultPluginPath());
  ASSERT_TRUE(plugin.loaded()) << plugin.error();
  host_sim::HostSession session(plugin, 6);
  imImportInfoRec capabilities;
  EXPECT_EQ(session.StartUp(&capabilities), imNoErr);
  const int32_t words[] = {capabilities.canSave, capabilities.canTrim,
                           capabilities.avoidAudioConform};
  EXPECT_THAT(words, ::testing::Each(1));
  EXPECT_EQ(session.ShutDown(), imNoErr);
  EXPECT_TRUE(plugin.Unload());
}

}  // namespace
