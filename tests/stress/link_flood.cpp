#include "stress/link_flood.h"

#include <rapidjson/document.h>

#include <chrono>
#include <optional>

#include "command_server/requests.h"

namespace {

// Small enough that one write arrives as one receive: the plug-in answers each receive by itself.
constexpr int kBatch = 200;
// The plug-in queues one read every 2.5 s; slow builds take longer to answer a batch.
constexpr std::chrono::seconds kAnswerBound{30};
constexpr double kFps = 24.0;

}  // namespace

LinkFlood::LinkFlood(command_server::CommandServer& server, std::vector<std::string> paths,
                     std::vector<ClipShape> shapes, const std::atomic<bool>* stop)
    : server_(server), paths_(std::move(paths)), shapes_(std::move(shapes)), stop_(stop) {}

void LinkFlood::Run() {
  while (!*stop_) {
    std::vector<Sent> batch;
    std::string bytes;
    for (int i = 0; i < kBatch; ++i) {
      Sent sent{std::to_string(next_id_++), random_() % 4 == 0, random_() % paths_.size()};
      const std::string& path = paths_[sent.file];
      bytes += (sent.update ? command_server::UpdateParamRequest(sent.request_id, path)
                            : command_server::MediaInfoRequest(sent.request_id, path)) +
               "###";
      batch.push_back(sent);
    }
    if (!server_.SendRaw(bytes)) {
      faults_ = "the link would not take a batch";
      return;
    }
    for (const Sent& sent : batch) {
      const std::optional<std::string> response = server_.WaitForResponse(kAnswerBound);
      if (!response) {
        faults_ = "request " + sent.request_id + " was not answered";
        return;
      }
      if (!Check(sent, *response)) return;
    }
  }
}

bool LinkFlood::Check(const Sent& sent, const std::string& response) {
  rapidjson::Document answer;
  answer.Parse(response.c_str());
  bool right = !answer.HasParseError() && answer.IsObject() && answer.HasMember("requestId") &&
               answer["requestId"].IsString() &&
               answer["requestId"].GetString() == sent.request_id && answer.HasMember("data") &&
               answer["data"].IsObject();
  if (right && sent.update) {
    const rapidjson::Value& data = answer["data"];
    right = data.HasMember("msg") && data["msg"].IsString() &&
            std::string(data["msg"].GetString()) == "success";
    if (right) ++updates_answered_;
  } else if (right) {
    const rapidjson::Value& data = answer["data"];
    const double duration = static_cast<double>(shapes_[sent.file].frames) / kFps;
    right = data.HasMember("fps") && data["fps"].IsNumber() && data["fps"].GetDouble() == kFps &&
            data.HasMember("duration") && data["duration"].IsNumber() &&
            data["duration"].GetDouble() == duration;
    if (right) ++media_info_answered_;
  }
  if (!right) faults_ = "request " + sent.request_id + " answered with " + response;
  return right;
}
