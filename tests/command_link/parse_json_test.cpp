#include "command_link/parse_json.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>

#include "standin_stitcher/omni_standin_counters.h"
#include "support/plugin_log_file.h"
#include "support/temp_folder.h"

namespace {

std::string Answer(const char* request_text) {
  rapidjson::Document request;
  request.Parse(request_text);
  std::vector<char> response = parseJson(request);
  return std::string(response.begin(), response.end());
}

TEST(ParseJsonTest, AnswersAnUnknownOrEmptyPathWithAnError) {
  const char* expected =
      R"({"requestId":"1","type":"get_media_info","err":{"msg":"invalid file path"}}###)";
  EXPECT_EQ(
      Answer(R"({"requestId":"1","type":"get_media_info","request":{"filepath":"D:\\never"}})"),
      expected);
  EXPECT_EQ(Answer(R"({"requestId":"1","type":"get_media_info"})"), expected);
}

TEST(ParseJsonTest, AcknowledgesOtherTypesAndMissingMembersWithSuccess) {
  EXPECT_EQ(Answer(R"({"type":"ping"})"),
            R"({"requestId":"","type":"ping","data":{"msg":"success"}}###)");
  EXPECT_EQ(Answer(R"({"requestId":"9"})"),
            R"({"requestId":"9","type":"","data":{"msg":"success"}}###)");
  EXPECT_EQ(Answer(R"({"requestId":"2","type":"request_update_param","request":"not an object"})"),
            R"({"requestId":"2","type":"request_update_param","data":{"msg":"success"}}###)");
}

TEST(ParseJsonDeathTest, AbortsOnARequestThatIsNotAnObjectOrAMemberThatIsNotAString) {
  EXPECT_DEATH(Answer("42"), "IsObject\\(\\)");
  EXPECT_DEATH(Answer(R"({"requestId":7,"type":"ping"})"), "IsString\\(\\)");
}

std::atomic<int> expire_calls{0};

prSuiteError CountExpireAll() {
  ++expire_calls;
  return suiteError_NoError;
}

class ExpireCacheAfterUpdateTest : public ::testing::Test {
 protected:
  FileContext* Open(const std::string& name) {
    auto context = std::make_unique<FileContext>();
    context->path = folder_.WriteFile(name, R"({"width": 64, "height": 32})");
    context->source = PrSourceFactory::Create(context->path, &context->media_info);
    context->cache_suite = &cache_suite_;
    registry_.Register(context.get());
    contexts_.push_back(std::move(context));
    return contexts_.back().get();
  }

  static int64_t Updates(const FileContext* context) {
    return OmniStandin_CallCount(kOmniStandinUpdate, context->path.c_str());
  }

  void TearDown() override {
    for (auto& context : contexts_) registry_.ReleaseSource(context.get());
  }

  TempFolder folder_;
  PrSDKPPixCacheSuite cache_suite_{};
  ContextRegistry registry_;
  std::vector<std::unique_ptr<FileContext>> contexts_;
};

TEST_F(ExpireCacheAfterUpdateTest, UpdatesEveryOtherFileAndExpiresTheCacheForEach) {
  cache_suite_.ExpireAllPPixesFromCache = CountExpireAll;
  FileContext* p = Open("p.qvo");
  FileContext* q = Open("q.qvo");
  expire_calls = 0;
  const size_t log_start = PluginLogText(CurrentProfile()).size();
  ExpireCacheAfterUpdate(registry_, p->path);
  EXPECT_EQ(Updates(p), 0);
  EXPECT_EQ(Updates(q), 1);
  EXPECT_EQ(expire_calls, 1);
  EXPECT_NE(PluginLogText(CurrentProfile())
                .find("INFO  Expire all cache after update param SDK_File_Import:818", log_start),
            std::string::npos);

  registry_.ReleaseSource(q);
  ExpireCacheAfterUpdate(registry_, p->path);
  EXPECT_EQ(Updates(q), 1) << "a released source is left alone";
  EXPECT_EQ(expire_calls, 1);
}

}  // namespace
