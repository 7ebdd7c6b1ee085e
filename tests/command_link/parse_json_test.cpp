#include "command_link/parse_json.h"

#include <gtest/gtest.h>

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

}  // namespace
