#include "qvo_host/info_report.h"

#include <cstdio>
#include <cstdlib>
#include <sstream>

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

namespace host_sim {
namespace {

using JsonWriter = rapidjson::PrettyWriter<rapidjson::StringBuffer>;

// Duration and rate as the host reads them from the time base; zero where a divisor is zero.
struct VideoTiming {
  double frames_per_second = 0;
  int64_t frames = 0;
  double seconds = 0;
};

VideoTiming TimingOf(const ClipFacts& facts) {
  VideoTiming timing;
  if (facts.vid_sample_size != 0) {
    timing.frames_per_second = static_cast<double>(facts.vid_scale) / facts.vid_sample_size;
    timing.frames = facts.vid_duration / facts.vid_sample_size;
  }
  if (facts.vid_scale != 0) {
    timing.seconds = static_cast<double>(facts.vid_duration) / facts.vid_scale;
  }
  // The host prefers a frame count, when the importer gives one, to vidDuration.
  if (facts.vid_duration_in_frames != 0) {
    timing.frames = facts.vid_duration_in_frames;
    timing.seconds = facts.vid_scale == 0 ? 0
                                          : static_cast<double>(timing.frames) *
                                                facts.vid_sample_size / facts.vid_scale;
  }
  return timing;
}

std::string ProjectionName(PrIVProjectionType projection) {
  if (projection == kPrIVProjectionType_None) return "none";
  if (projection == kPrIVProjectionType_Equirectangular) return "equirectangular";
  return "projection " + std::to_string(projection);
}

std::string LayoutName(PrIVFrameLayout layout) {
  if (layout == kPrIVFrameLayout_Monoscopic) return "mono";
  if (layout == kPrIVFrameLayout_StereoscopicOverUnder) return "over-under";
  return "layout " + std::to_string(layout);
}

// The four characters of a pixel format, first character in the lowest byte.
std::string FourCharacters(PrPixelFormat format) {
  std::string text;
  for (int shift = 0; shift < 32; shift += 8) {
    char c = static_cast<char>((format >> shift) & 0xFF);
    text += (c >= 0x20 && c < 0x7F) ? c : '.';
  }
  return text;
}

std::string Printf(const char* format, double value) {
  char text[64];
  std::snprintf(text, sizeof(text), format, value);
  return text;
}

std::string HexCode(uint32_t code) {
  char text[16];
  std::snprintf(text, sizeof(text), "0x%08X", static_cast<unsigned>(code));
  return text;
}

std::vector<std::pair<const char*, std::string>> HeaderTextFields(const HeaderTexts& texts) {
  return {{"orgtime", texts.orgtime},
          {"alttime", texts.alttime},
          {"orgreel", texts.orgreel},
          {"altreel", texts.altreel},
          {"logcomment", texts.logcomment}};
}

void AddVideoLines(const ClipFacts& facts, std::ostringstream* out) {
  if (!facts.has_video) {
    *out << "  picture        none\n";
    return;
  }
  VideoTiming timing = TimingOf(facts);
  *out << "  picture        " << facts.width << " x " << facts.height << "\n"
       << "  frame rate     " << facts.vid_scale << "/" << facts.vid_sample_size << " ("
       << Printf("%.6g", timing.frames_per_second) << " fps)\n"
       << "  duration       " << timing.frames << " frames, " << Printf("%.3f", timing.seconds)
       << " s\n"
       << "  spherical      " << ProjectionName(facts.projection) << ", "
       << LayoutName(facts.frame_layout) << ", " << facts.horizontal_view << " x "
       << facts.vertical_view << " degrees\n";
}

void AddSoundLine(const ClipFacts& facts, std::ostringstream* out) {
  *out << "  sound          ";
  if (!facts.has_audio) {
    *out << "none\n";
    return;
  }
  *out << facts.channels << " channels, " << Printf("%.6g", facts.sample_rate) << " Hz, "
       << facts.sample_frames << " sample frames\n";
}

void AddAnswerLines(const ClipFacts& facts, std::ostringstream* out) {
  *out << "  pixel formats ";
  if (facts.pixel_formats.empty()) *out << " none";
  for (PrPixelFormat format : facts.pixel_formats) {
    *out << " " << FourCharacters(format) << " (" << HexCode(format) << ")";
  }
  *out << "\n  codec          ";
  if (facts.codec_result == imNoErr) {
    *out << facts.codec_text << "\n";
  } else {
    *out << "(result " << facts.codec_result << ")\n";
  }
  *out << "  data rate      ";
  if (!facts.has_data_rate) {
    *out << "none announced\n";
  } else if (facts.data_rate_result != imNoErr) {
    *out << "(result " << facts.data_rate_result << ")\n";
  } else {
    *out << facts.data_rate_entries << " entries\n";
  }
  *out << "  header texts  ";
  if (facts.header_texts_result != imNoErr) {
    *out << " (result " << facts.header_texts_result << ")\n";
    return;
  }
  bool any = false;
  for (const auto& field : HeaderTextFields(facts.header_texts)) {
    if (field.second.empty()) continue;
    *out << " " << field.first << " \"" << field.second << "\"";
    any = true;
  }
  *out << (any ? "\n" : " empty\n");
}

void WriteVideo(const ClipFacts& facts, JsonWriter* json) {
  VideoTiming timing = TimingOf(facts);
  json->StartObject();
  json->Key("width");
  json->Int(facts.width);
  json->Key("height");
  json->Int(facts.height);
  json->Key("vidScale");
  json->Int(facts.vid_scale);
  json->Key("vidSampleSize");
  json->Int(facts.vid_sample_size);
  json->Key("framesPerSecond");
  json->Double(timing.frames_per_second);
  json->Key("frames");
  json->Int64(timing.frames);
  json->Key("seconds");
  json->Double(timing.seconds);
  json->Key("spherical");
  json->StartObject();
  json->Key("projection");
  json->String(ProjectionName(facts.projection).c_str());
  json->Key("layout");
  json->String(LayoutName(facts.frame_layout).c_str());
  json->Key("horizontalView");
  json->Uint(facts.horizontal_view);
  json->Key("verticalView");
  json->Uint(facts.vertical_view);
  json->EndObject();
  json->EndObject();
}

void WriteAudio(const ClipFacts& facts, JsonWriter* json) {
  json->StartObject();
  json->Key("channels");
  json->Int(facts.channels);
  json->Key("sampleRate");
  json->Double(facts.sample_rate);
  json->Key("sampleFrames");
  json->Int64(facts.sample_frames);
  json->EndObject();
}

void WriteAnswers(const ClipFacts& facts, JsonWriter* json) {
  json->Key("pixelFormats");
  json->StartArray();
  for (PrPixelFormat format : facts.pixel_formats) json->String(FourCharacters(format).c_str());
  json->EndArray();
  json->Key("codec");
  if (facts.codec_result == imNoErr) {
    json->String(facts.codec_text.c_str());
  } else {
    json->Null();
  }
  json->Key("dataRateEntries");
  if (facts.has_data_rate && facts.data_rate_result == imNoErr) {
    json->Uint64(facts.data_rate_entries);
  } else {
    json->Null();
  }
  json->Key("headerTexts");
  if (facts.header_texts_result != imNoErr) {
    json->Null();
    return;
  }
  json->StartObject();
  for (const auto& field : HeaderTextFields(facts.header_texts)) {
    json->Key(field.first);
    json->String(field.second.c_str());
  }
  json->EndObject();
}

void WriteClip(const ClipFacts& facts, JsonWriter* json) {
  json->StartObject();
  json->Key("file");
  json->String(facts.file.c_str());
  json->Key("fileType");
  json->StartObject();
  json->Key("code");
  json->Int(facts.file_type.file_type);
  json->Key("name");
  json->String(facts.file_type.name.c_str());
  json->EndObject();
  json->Key("video");
  if (facts.has_video) {
    WriteVideo(facts, json);
  } else {
    json->Null();
  }
  json->Key("audio");
  if (facts.has_audio) {
    WriteAudio(facts, json);
  } else {
    json->Null();
  }
  WriteAnswers(facts, json);
  json->EndObject();
}

}  // namespace

std::string DescribeAsTable(const ClipFacts& facts) {
  std::ostringstream out;
  out << facts.file << "\n"
      << "  file type      " << HexCode(static_cast<uint32_t>(facts.file_type.file_type)) << " "
      << facts.file_type.name << "\n";
  AddVideoLines(facts, &out);
  AddSoundLine(facts, &out);
  AddAnswerLines(facts, &out);
  return out.str();
}

std::string DescribeAsJson(const std::vector<ClipFacts>& clips) {
  rapidjson::StringBuffer buffer;
  JsonWriter json(buffer);
  json.StartArray();
  for (const ClipFacts& facts : clips) WriteClip(facts, &json);
  json.EndArray();
  return std::string(buffer.GetString(), buffer.GetSize()) + "\n";
}

}  // namespace host_sim
