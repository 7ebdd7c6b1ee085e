#include "project_file.h"

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <limits>

#include <rapidjson/document.h>

namespace omni_standin {
namespace {

using rapidjson::Value;

// Each reader leaves *out as it is when the member is absent and fails when it is present but
// of the wrong type or outside [min, the type's maximum].
template <typename Int>
bool ReadInteger(const Value& object, const char* name, int64_t min, Int* out) {
  auto member = object.FindMember(name);
  if (member == object.MemberEnd()) return true;
  if (!member->value.IsInt64()) return false;
  int64_t value = member->value.GetInt64();
  if (value < min || value > static_cast<int64_t>(std::numeric_limits<Int>::max())) return false;
  *out = static_cast<Int>(value);
  return true;
}

bool ReadPositiveNumber(const Value& object, const char* name, double* out) {
  auto member = object.FindMember(name);
  if (member == object.MemberEnd()) return true;
  if (!member->value.IsNumber()) return false;
  double value = member->value.GetDouble();
  if (!std::isfinite(value) || value <= 0.0) return false;
  *out = value;
  return true;
}

bool ReadBool(const Value& object, const char* name, bool* out) {
  auto member = object.FindMember(name);
  if (member == object.MemberEnd()) return true;
  if (!member->value.IsBool()) return false;
  *out = member->value.GetBool();
  return true;
}

bool ReadString(const Value& object, const char* name, std::string* out) {
  auto member = object.FindMember(name);
  if (member == object.MemberEnd()) return true;
  if (!member->value.IsString()) return false;
  out->assign(member->value.GetString(), member->value.GetStringLength());
  return true;
}

bool ReadIndexSet(const Value& object, const char* name, std::set<int64_t>* out) {
  auto member = object.FindMember(name);
  if (member == object.MemberEnd()) return true;
  if (!member->value.IsArray()) return false;
  for (const Value& index : member->value.GetArray()) {
    if (!index.IsInt64()) return false;
    out->insert(index.GetInt64());
  }
  return true;
}

bool ReadRender(const Value& object, bool* flat) {
  std::string render = "scene";
  if (!ReadString(object, "render", &render)) return false;
  *flat = render == "flat";
  return render == "scene" || render == "flat";
}

bool ReadFaults(const Value& object, InjectedFaults* faults) {
  auto member = object.FindMember("faults");
  if (member == object.MemberEnd()) return true;
  const Value& f = member->value;
  return f.IsObject() && ReadBool(f, "create", &faults->create) &&
         ReadInteger(f, "create_ok_times", 0, &faults->create_ok_times) &&
         ReadIndexSet(f, "video_fail_once", &faults->video_fail_once) &&
         ReadIndexSet(f, "video_fail_always", &faults->video_fail_always) &&
         ReadInteger(f, "video_delay_ms", 0, &faults->video_delay_ms) &&
         ReadInteger(f, "rows_unwritten", 0, &faults->rows_unwritten) &&
         ReadBool(f, "write_past_end", &faults->write_past_end) &&
         ReadBool(f, "write_before_start", &faults->write_before_start) &&
         ReadBool(f, "unstable_picture", &faults->unstable_picture) &&
         ReadBool(f, "sound_short", &faults->sound_short) &&
         ReadBool(f, "sound_long", &faults->sound_long) &&
         ReadBool(f, "write_far_past_end", &faults->write_far_past_end) &&
         ReadIndexSet(f, "crash_frames", &faults->crash_frames) &&
         ReadIndexSet(f, "hang_frames", &faults->hang_frames) &&
         ReadIndexSet(f, "throw_frames", &faults->throw_frames);
}

// Reads "audio" and settles the sample count, which by default follows from the clip length:
// frames and fps must have been read already.
bool ReadAudio(const Value& object, ProjectFile* project) {
  auto member = object.FindMember("audio");
  bool present = member != object.MemberEnd();
  if (present && member->value.IsNull()) {
    project->has_audio = false;
    project->audio_rate = 0;
    project->audio_channels = 0;
    project->audio_sample_frames = 0;
    return true;
  }
  if (present &&
      (!member->value.IsObject() || !ReadInteger(member->value, "rate", 1, &project->audio_rate) ||
       !ReadInteger(member->value, "channels", 1, &project->audio_channels))) {
    return false;
  }
  double nominal = static_cast<double>(project->frames) / project->fps * project->audio_rate;
  if (!(nominal < 9e18)) return false;
  // A clip length that is an exact number of samples must not lose one to a rounding error of
  // the fraction, hence the millionth of a sample before rounding down.
  project->audio_sample_frames = static_cast<int64_t>(std::floor(nominal + 1e-6));
  return !present || ReadInteger(member->value, "sample_frames", 0, &project->audio_sample_frames);
}

}  // namespace

std::optional<ProjectFile> ReadProjectFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return std::nullopt;
  std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  // Editors on Windows like to start UTF-8 files with a byte order mark.
  if (text.compare(0, 3, "\xEF\xBB\xBF") == 0) text.erase(0, 3);

  rapidjson::Document document;
  document.Parse<rapidjson::kParseValidateEncodingFlag>(text.data(), text.size());
  if (document.HasParseError() || !document.IsObject()) return std::nullopt;

  ProjectFile project;
  bool valid = ReadInteger(document, "width", 1, &project.width) &&
               ReadInteger(document, "height", 1, &project.height) &&
               ReadPositiveNumber(document, "fps", &project.fps) &&
               ReadInteger(document, "frames", 0, &project.frames) &&
               ReadInteger(document, "bitrate", 0, &project.bitrate) &&
               ReadBool(document, "stereo", &project.stereo) &&
               ReadString(document, "offset", &project.offset) && ReadAudio(document, &project) &&
               ReadRender(document, &project.flat_render) && ReadFaults(document, &project.faults);
  if (!valid) return std::nullopt;
  return project;
}

}  // namespace omni_standin
