#include "qvo_host/check/check_journal.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

namespace host_sim {
namespace {

// A field may hold any text but the separators.
std::string Clean(std::string text) {
  for (char& c : text) {
    if (c == '\t' || c == '\n' || c == '\r') c = ' ';
  }
  return text;
}

JournalRecord Parse(const std::string& line) {
  JournalRecord record;
  size_t start = 0;
  for (;;) {
    const size_t tab = line.find('\t', start);
    record.fields.push_back(line.substr(start, tab - start));
    if (tab == std::string::npos) return record;
    start = tab + 1;
  }
}

}  // namespace

std::string JournalRecord::Field(size_t index) const {
  return index < fields.size() ? fields[index] : std::string();
}

CheckJournal::CheckJournal(const std::string& path, std::string thumbnail_folder)
    : file_(path), thumbnail_folder_(std::move(thumbnail_folder)) {}

void CheckJournal::Write(const std::vector<std::string>& fields) {
  std::string line;
  for (const std::string& field : fields) {
    if (!line.empty()) line += '\t';
    line += Clean(field);
  }
  line += '\n';
  file_.Append(line.data(), line.size());
}

void CheckJournal::Add(const std::string& what, const std::string& figure, bool passed) {
  Write({journal::kCheck, passed ? "1" : "0", what, figure});
}

void CheckJournal::Stage(const std::string& stage, const std::string& detail) {
  Write({journal::kStage, stage, detail});
}

void CheckJournal::Calling(const std::string& clip, const std::string& call,
                           std::chrono::milliseconds own_limit) {
  Write({journal::kCall, clip, call, std::to_string(own_limit.count())});
}

void CheckJournal::Returned() { Write({journal::kReturned}); }

void CheckJournal::ClipReady(size_t clip_index) {
  Write({journal::kClipReady, std::to_string(clip_index)});
}

void CheckJournal::FrameTime(const std::string& clip, int64_t frame, double milliseconds) {
  char text[32];
  std::snprintf(text, sizeof(text), "%.3f", milliseconds);
  Write({journal::kTime, clip, std::to_string(frame), text});
}

void CheckJournal::Thumbnail(const std::string& clip, const RgbImage& image) {
  if (!keeps_thumbnails()) return;
  const std::filesystem::path path = std::filesystem::u8path(thumbnail_folder_) /
                                     ("thumbnail_" + std::to_string(thumbnails_++) + ".ppm");
  if (WritePpm(path.u8string(), image)) Write({journal::kThumbnail, clip, path.u8string()});
}

void CheckJournal::End() { Write({journal::kEnd}); }

std::vector<JournalRecord> JournalReader::ReadNew() {
  std::ifstream file(std::filesystem::u8path(path_), std::ios::binary);
  std::vector<JournalRecord> records;
  if (!file) return records;
  file.seekg(static_cast<std::streamoff>(offset_));
  const std::string added((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  offset_ += added.size();
  partial_ += added;
  size_t start = 0;
  for (size_t end = partial_.find('\n'); end != std::string::npos;
       end = partial_.find('\n', start)) {
    records.push_back(Parse(partial_.substr(start, end - start)));
    start = end + 1;
  }
  partial_.erase(0, start);
  return records;
}

bool WritePpm(const std::string& path, const RgbImage& image) {
  std::ofstream file(std::filesystem::u8path(path), std::ios::binary | std::ios::trunc);
  file << "P6\n" << image.width << " " << image.height << "\n255\n";
  file.write(reinterpret_cast<const char*>(image.pixels.data()),
             static_cast<std::streamsize>(image.pixels.size()));
  return static_cast<bool>(file);
}

bool ReadPpm(const std::string& path, RgbImage* image) {
  std::ifstream file(std::filesystem::u8path(path), std::ios::binary);
  std::string magic;
  int32_t maximum = 0;
  RgbImage read;
  if (!(file >> magic >> read.width >> read.height >> maximum) || magic != "P6" ||
      read.width <= 0 || read.height <= 0 || maximum != 255) {
    return false;
  }
  file.get();
  read.pixels.resize(static_cast<size_t>(read.width) * static_cast<size_t>(read.height) * 3);
  file.read(reinterpret_cast<char*>(read.pixels.data()),
            static_cast<std::streamsize>(read.pixels.size()));
  if (!file) return false;
  *image = std::move(read);
  return true;
}

}  // namespace host_sim
