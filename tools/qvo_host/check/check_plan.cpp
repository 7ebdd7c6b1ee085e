#include "qvo_host/check/check_plan.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace host_sim {
namespace {

const char* const kTaskNames[] = {"check", "open", "skip"};

void WriteString(rapidjson::Writer<rapidjson::StringBuffer>* writer, const char* key,
                 const std::string& value) {
  writer->Key(key);
  writer->String(value.c_str(), static_cast<rapidjson::SizeType>(value.size()));
}

bool ReadString(const rapidjson::Value& object, const char* key, std::string* value) {
  const auto member = object.FindMember(key);
  if (member == object.MemberEnd() || !member->value.IsString()) return false;
  value->assign(member->value.GetString(), member->value.GetStringLength());
  return true;
}

bool ReadClip(const rapidjson::Value& value, PlannedClip* clip) {
  std::string task;
  if (!value.IsObject() || !ReadString(value, "path", &clip->path) ||
      !ReadString(value, "task", &task)) {
    return false;
  }
  for (int i = 0; i < 3; ++i) {
    if (task == kTaskNames[i]) clip->task = static_cast<ClipTask>(i);
  }
  return true;
}

}  // namespace

bool WritePlan(const WorkerPlan& plan, const std::string& path) {
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  writer.StartObject();
  WriteString(&writer, "plugin", plan.plugin_path);
  WriteString(&writer, "profile", plan.profile_folder);
  WriteString(&writer, "journal", plan.journal_path);
  WriteString(&writer, "thumbnails", plan.thumbnail_folder);
  writer.Key("random_frames");
  writer.Int(plan.random_frames);
  writer.Key("clips");
  writer.StartArray();
  for (const PlannedClip& clip : plan.clips) {
    writer.StartObject();
    WriteString(&writer, "path", clip.path);
    WriteString(&writer, "task", kTaskNames[static_cast<int>(clip.task)]);
    writer.EndObject();
  }
  writer.EndArray();
  writer.EndObject();
  std::ofstream file(std::filesystem::u8path(path), std::ios::binary | std::ios::trunc);
  file << buffer.GetString();
  return static_cast<bool>(file);
}

bool ReadPlan(const std::string& path, WorkerPlan* plan) {
  std::ifstream file(std::filesystem::u8path(path), std::ios::binary);
  const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  rapidjson::Document document;
  document.Parse(text.c_str());
  if (document.HasParseError() || !document.IsObject()) return false;
  const auto frames = document.FindMember("random_frames");
  const auto clips = document.FindMember("clips");
  if (!ReadString(document, "plugin", &plan->plugin_path) ||
      !ReadString(document, "profile", &plan->profile_folder) ||
      !ReadString(document, "journal", &plan->journal_path) ||
      !ReadString(document, "thumbnails", &plan->thumbnail_folder) ||
      frames == document.MemberEnd() || !frames->value.IsInt() || clips == document.MemberEnd() ||
      !clips->value.IsArray()) {
    return false;
  }
  plan->random_frames = frames->value.GetInt();
  plan->clips.clear();
  for (const rapidjson::Value& value : clips->value.GetArray()) {
    PlannedClip clip;
    if (!ReadClip(value, &clip)) return false;
    plan->clips.push_back(clip);
  }
  return true;
}

}  // namespace host_sim
