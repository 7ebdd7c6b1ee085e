#include "command_server/requests.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace command_server {

namespace {

void WriteString(rapidjson::Writer<rapidjson::StringBuffer>& writer, const std::string& text) {
  writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

std::string Request(const std::string& request_id, const char* type, const std::string& filepath) {
  rapidjson::StringBuffer text;
  rapidjson::Writer<rapidjson::StringBuffer> writer(text);
  writer.StartObject();
  writer.Key("requestId");
  WriteString(writer, request_id);
  writer.Key("type");
  writer.String(type);
  writer.Key("request");
  writer.StartObject();
  writer.Key("filepath");
  WriteString(writer, filepath);
  writer.EndObject();
  writer.EndObject();
  return std::string(text.GetString(), text.GetSize());
}

}  // namespace

std::string MediaInfoRequest(const std::string& request_id, const std::string& filepath) {
  return Request(request_id, "get_media_info", filepath);
}

std::string UpdateParamRequest(const std::string& request_id, const std::string& filepath) {
  return Request(request_id, "request_update_param", filepath);
}

}  // namespace command_server
