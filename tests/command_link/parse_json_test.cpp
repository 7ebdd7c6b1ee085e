#include "command_link/parse_json.h"

#include <gtest/gtest.h>

#include "command_server/requests.h"

namespace {

std::string Answer(const char* request_text) {
  rapidjson::Document request;
  request.Parse(request_text);
  std::vector<char> response = parseJson(request);
  return std::string(response.begin(), response.end());
}

TEST(ParseJsonTest, AnswersAnUnknownOrEmptyPathWithAnError) {
  // Overlong, cut short, a surrogate, and bytes that never occur in UTF-8: taken as they stand.
  const std::string bad = "\xC0\xAF|\xE2\x82|\xED\xA0\x80|\xFF\xFE";
  const std::string error = R"(","type":"get_media_info","err":{"msg":"invalid file path"}}###)";
  EXPECT_EQ(Answer(command_server::MediaInfoRequest(bad, bad).c_str()),
            R"({"requestId":")" + bad + error);
  EXPECT_EQ(Answer(R"({"requestId":"1","type":"get_media_info"})"), R"({"requestId":"1)" + error);
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
