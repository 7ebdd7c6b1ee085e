#include "command_link/parse_json.h"

#include "command_link/message_delimiter.h"
#include "logging/log_sites.h"
#include "logging/plugin_log.h"
#include "logging/stream_logger.h"
#include "open_files/media_info_cache.h"
#include "platform/compiler.h"

namespace {

// The member's string, or empty when the member is absent. A present member is read as a string
// without a test of our own: the command server is trusted.
std::string StringMember(const rapidjson::Value& object, const char* name) {
  auto member = object.FindMember(name);
  return member == object.MemberEnd() ? std::string() : std::string(member->value.GetString());
}

bool HasMember(const rapidjson::Value& object, const char* name) {
  return object.FindMember(name) != object.MemberEnd();
}

std::string FilePathOf(const rapidjson::Document& request) {
  auto arguments = request.FindMember("request");
  if (arguments == request.MemberEnd() || !arguments->value.IsObject() ||
      !HasMember(arguments->value, "filepath")) {
    return std::string();
  }
  std::string filepath = StringMember(arguments->value, "filepath");
  PluginLog::Get()->Write(kLogInfo, kLogSource, log_site::kRequestFilePath, "Request File Path: %s",
                          filepath.c_str());
  return filepath;
}

rapidjson::Value MessageObject(const char* message, rapidjson::Document::AllocatorType& allocator) {
  rapidjson::Value object(rapidjson::kObjectType);
  object.AddMember("msg", rapidjson::Value(message, allocator), allocator);
  return object;
}

void AddMediaInfo(const std::string& filepath, rapidjson::Document& response) {
  auto& allocator = response.GetAllocator();
  MediaInfo media;
  size_t entries = 0;
  if (filepath.empty() || !LookUpMediaInfo(filepath, &media, &entries)) {
    PluginLog::Get()->Write(kLogError, kLogSource, log_site::kInvalidFilePath,
                            "Request file path is invalid!");
    response.AddMember("err", MessageObject("invalid file path", allocator), allocator);
    return;
  }
  PluginLog::Get()->Write(kLogInfo, kLogSource, log_site::kSizeOfMap, "Size of map: %d",
                          static_cast<int>(entries));
  rapidjson::Value data(rapidjson::kObjectType);
  const double fps = media.fps;
  data.AddMember("duration", static_cast<double>(media.frame_count) / fps, allocator);
  data.AddMember("bitrate", static_cast<int64_t>(media.bitrate), allocator);
  data.AddMember("fps", fps, allocator);
  data.AddMember("offset", rapidjson::Value(media.offset.c_str(), allocator), allocator);
  response.AddMember("data", data, allocator);
}

std::vector<char> Serialized(const rapidjson::Document& response) {
  rapidjson::StringBuffer text;
  rapidjson::Writer<rapidjson::StringBuffer> writer(text);
  response.Accept(writer);
  PluginLog::Get()->Write(kLogInfo, kLogSource, log_site::kResponse, "Response: %s",
                          text.GetString());
  std::vector<char> bytes(text.GetString(), text.GetString() + text.GetSize());
  bytes.insert(bytes.end(), kMessageDelimiter, kMessageDelimiter + kMessageDelimiterSize);
  return bytes;
}

}  // namespace

std::vector<char> parseJson(const rapidjson::Document& request) {
  PluginLog* log = PluginLog::Get();
  const std::string request_id = StringMember(request, "requestId");
  if (HasMember(request, "requestId")) {
    log->Write(kLogInfo, kLogSource, log_site::kRequestId, "Request ID: %s", request_id.c_str());
  }
  const std::string type = StringMember(request, "type");
  if (HasMember(request, "type")) {
    log->Write(kLogInfo, kLogSource, log_site::kRequestType, "Request Type: %s", type.c_str());
  }
  const std::string filepath = FilePathOf(request);

  rapidjson::Document response;
  response.SetObject();
  auto& allocator = response.GetAllocator();
  response.AddMember("requestId", rapidjson::Value(request_id.c_str(), allocator), allocator);
  response.AddMember("type", rapidjson::Value(type.c_str(), allocator), allocator);
  if (LogOptions::Get().threshold < kStreamWarning) {
    LogMessage(kLogSource, "parseJson", log_site::kParseJsonStream, kStreamInfo).stream()
        << filepath;
  }

  if (type == "get_media_info") {
    AddMediaInfo(filepath, response);
  } else if (type == "request_update_param") {
    response.AddMember("data", MessageObject("success", allocator), allocator);
    ExpireCacheAfterUpdate(ContextRegistry::Instance(), filepath);
  } else {
    response.AddMember("data", MessageObject("success", allocator), allocator);
  }
  return Serialized(response);
}

namespace {

// Without the context's mutex, as the design has it: a host thread may meanwhile read from the
// source, or release it and make it again, and Update may then reach a source being freed.
QUORVEL_NOINLINE bool UpdateOtherSource(FileContext* context) {
  if (!context->source) return false;
  context->source->Update();
  return true;
}

// The suite pointer is read while a file-information request may be writing the same pointer.
QUORVEL_NOINLINE void ExpireCachedFramesOf(FileContext* context) {
  if (context->cache_suite == nullptr) return;
  context->cache_suite->ExpireAllPPixesFromCache();
  PluginLog::Get()->Write(kLogInfo, kLogSource, log_site::kExpireAllCache,
                          "Expire all cache after update param");
}

}  // namespace

void ExpireCacheAfterUpdate(ContextRegistry& registry, const std::string& filepath) {
  registry.ForEachContext([&filepath](FileContext* context) {
    // The file the request names keeps its source and cache; every other one is refreshed.
    if (context->path.compare(filepath) == 0) return;
    if (UpdateOtherSource(context)) ExpireCachedFramesOf(context);
  });
}
