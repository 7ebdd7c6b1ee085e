#include "open_files/context_registry.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <thread>
#include <vector>

#include "command_link/parse_json.h"
#include "support/plugin_log_file.h"
#include "support/temp_folder.h"

namespace {

std::atomic<int> expire_calls{0};

prSuiteError CountExpireAll() {
  ++expire_calls;
  return suiteError_NoError;
}

class ContextRegistryTest : public ::testing::Test {
 protected:
  // Opens a context on a project of its own, registered now; later ones are used later.
  FileContext* OpenContext() {
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
    auto context = std::make_unique<FileContext>();
    context->path = folder_.WriteFile("clip" + std::to_string(contexts_.size()) + ".qvo",
                                      R"({"width": 64, "height": 32, "frames": 10})");
    context->source = PrSourceFactory::Create(context->path, &context->media_info);
    EXPECT_TRUE(context->source) << context->path;
    registry_.Register(context.get());
    contexts_.push_back(std::move(context));
    return contexts_.back().get();
  }

  void Touch(FileContext* context) {
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
    registry_.TouchContext(context);
  }

  // Which contexts still have a source, in order of opening.
  std::vector<bool> Holding() const {
    std::vector<bool> holding;
    for (const auto& context : contexts_) holding.push_back(static_cast<bool>(context->source));
    return holding;
  }

  // Whether Plugin.log holds `line` after its first `from` bytes.
  static bool LoggedAfter(size_t from, const std::string& line) {
    return PluginLogText(CurrentProfile()).find(line, from) != std::string::npos;
  }

  void TearDown() override {
    for (auto& context : contexts_) registry_.ReleaseSource(context.get());
  }

  TempFolder folder_;
  ContextRegistry registry_;
  std::vector<std::unique_ptr<FileContext>> contexts_;
};

// The first context is removed before any eviction: were it still listed, it would go first.
TEST_F(ContextRegistryTest, EvictsTheLeastRecentlyUsedHalfOfTheListedContexts) {
  FileContext* removed = OpenContext();
  FileContext* a = OpenContext();
  registry_.RemoveContext(removed);
  EXPECT_EQ(registry_.size(), 1u);
  registry_.EvictHalf(nullptr);
  EXPECT_EQ(Holding(), std::vector<bool>({true, true})) << "nothing of one context";
  OpenContext();
  FileContext* c = OpenContext();
  OpenContext();
  Touch(a);
  Touch(c);
  registry_.EvictHalf(nullptr);
  EXPECT_EQ(Holding(), std::vector<bool>({true, true, false, true, false}));
}

TEST_F(ContextRegistryTest, PassesOverAContextThatTheCallerOrAnotherThreadHolds) {
  FileContext* oldest = OpenContext();
  OpenContext();
  {
    std::lock_guard<std::mutex> held(oldest->mutex);
    registry_.EvictHalf(oldest);
  }
  EXPECT_EQ(Holding(), std::vector<bool>({true, true}));

  std::promise<void> locked;
  std::promise<void> done;
  std::thread reader([&] {
    std::lock_guard<std::mutex> reading(oldest->mutex);
    locked.set_value();
    done.get_future().wait();
  });
  locked.get_future().wait();
  registry_.EvictHalf(nullptr);
  done.set_value();
  reader.join();
  EXPECT_EQ(Holding(), std::vector<bool>({true, true}));
}

TEST_F(ContextRegistryTest, ResettingAContextReleasesItsSourceAndSaysSo) {
  FileContext* context = OpenContext();
  PrivateFileRecord record{};
  const size_t before = PluginLogText(CurrentProfile()).size();
  registry_.ResetFileContext(context, &record);
  EXPECT_FALSE(context->source);
  EXPECT_TRUE(LoggedAfter(before, "INFO  reset file context SDK_File_Import:1621"));
}

// The command link's tests check which files an update refreshes.
TEST_F(ContextRegistryTest, AnUpdateExpiresTheCachedFramesOfEveryOtherFileThatHasASource) {
  PrSDKPPixCacheSuite cache_suite{};
  cache_suite.ExpireAllPPixesFromCache = CountExpireAll;
  FileContext* p = OpenContext();
  FileContext* q = OpenContext();
  for (FileContext* context : {p, q}) context->cache_suite = &cache_suite;
  expire_calls = 0;
  const size_t before = PluginLogText(CurrentProfile()).size();
  ExpireCacheAfterUpdate(registry_, p->path);
  EXPECT_EQ(expire_calls, 1);
  EXPECT_TRUE(LoggedAfter(before, "INFO  Expire all cache after update param SDK_File_Import:818"));

  registry_.ReleaseSource(q);
  ExpireCacheAfterUpdate(registry_, p->path);
  EXPECT_EQ(expire_calls, 1) << "a released source is left alone";
}

}  // namespace
