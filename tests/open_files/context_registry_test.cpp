#include "open_files/context_registry.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <memory>
#include <thread>
#include <vector>

#include "logging/plugin_log.h"
#include "platform/c_runtime_files.h"
#include "support/temp_folder.h"

namespace {

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

  void TearDown() override {
    for (auto& context : contexts_) registry_.ReleaseSource(context.get());
  }

  TempFolder folder_;
  ContextRegistry registry_;
  std::vector<std::unique_ptr<FileContext>> contexts_;
};

TEST_F(ContextRegistryTest, EvictsNothingOfOneContextAndTheOlderOfTwo) {
  FileContext* first = OpenContext();
  registry_.EvictHalf(nullptr);
  EXPECT_EQ(Holding(), std::vector<bool>({true}));
  OpenContext();
  Touch(first);
  registry_.EvictHalf(nullptr);
  EXPECT_EQ(Holding(), std::vector<bool>({true, false}));
}

TEST_F(ContextRegistryTest, EvictsOnlyTheLeastRecentlyUsedOfThree) {
  FileContext* a = OpenContext();
  OpenContext();
  FileContext* c = OpenContext();
  Touch(a);
  Touch(c);
  registry_.EvictHalf(nullptr);
  EXPECT_EQ(Holding(), std::vector<bool>({true, false, true}));
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
  const std::string log_file = platform::NativePath(PluginLog::Get()->folder() + "\\Plugin.log");
  const size_t before = ReadWholeFile(log_file).size();
  registry_.ResetFileContext(context, &record);
  EXPECT_FALSE(context->source);
  EXPECT_NE(ReadWholeFile(log_file).find("INFO  reset file context SDK_File_Import:1621", before),
            std::string::npos);
}

TEST_F(ContextRegistryTest, RemovedContextsAreNeitherListedNorEvicted) {
  FileContext* a = OpenContext();
  OpenContext();
  registry_.RemoveContext(a);
  EXPECT_EQ(registry_.size(), 1u);
  registry_.EvictHalf(nullptr);
  EXPECT_EQ(Holding(), std::vector<bool>({true, true}));
}

}  // namespace
