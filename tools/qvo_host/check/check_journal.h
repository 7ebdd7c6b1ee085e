// The journal a check's worker keeps for its judge: one record a line, fields split by tabs, each
// line written to the file in one piece as it happens, so that whatever ends the worker, the judge
// knows every check it finished and the call it was in.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/record_file.h"
#include "qvo_host/frame_image.h"

namespace host_sim {

// The kinds of record, the first field of each line.
namespace journal {
constexpr char kCheck[] = "check";  // passed ("1" or "0"), what, figure
constexpr char kStage[] = "stage";  // start-up, clip (with its index), command link, finish
constexpr char kCall[] = "call";  // clip (or empty), what is about to be called, its own limit (ms)
constexpr char kReturned[] = "returned";  // the call returned
constexpr char kClipReady[] = "ready";    // clip index: checked and open for the command link
constexpr char kTime[] = "time";          // clip, frame, milliseconds of a stitched frame
constexpr char kThumbnail[] = "thumb";    // clip, the file of a checked frame's thumbnail
constexpr char kFault[] = "fault";        // kind, code, where, the address touched, bytes past
constexpr char kEnd[] = "end";            // the worker finished its plan
}  // namespace journal

struct JournalRecord {
  std::vector<std::string> fields;  // the kind first

  const std::string& kind() const { return fields[0]; }
  // Field `index`, or empty when the record is shorter.
  std::string Field(size_t index) const;
};

// The worker's side. Not thread-safe: the worker's one thread writes it.
class CheckJournal {
 public:
  // Creates the journal at `path` (UTF-8); thumbnails go into `thumbnail_folder`, or nowhere when
  // it is empty.
  CheckJournal(const std::string& path, std::string thumbnail_folder);

  bool opened() const { return file_.opened(); }
  const platform::RecordFile& file() const { return file_; }

  void Add(const std::string& what, const std::string& figure, bool passed);
  void Stage(const std::string& stage, const std::string& detail = "");
  // `own_limit`: for a wait the worker bounds itself, longer than the run's time limit may be.
  void Calling(const std::string& clip, const std::string& call,
               std::chrono::milliseconds own_limit);
  void Returned();
  void ClipReady(size_t clip_index);
  void FrameTime(const std::string& clip, int64_t frame, double milliseconds);
  bool keeps_thumbnails() const { return !thumbnail_folder_.empty(); }
  // Writes `image` beside the journal and records it.
  void Thumbnail(const std::string& clip, const RgbImage& image);
  void End();

 private:
  void Write(const std::vector<std::string>& fields);

  platform::RecordFile file_;
  std::string thumbnail_folder_;
  int64_t thumbnails_ = 0;
};

// Marks a call into the plug-in for as long as it lasts.
class CallScope {
 public:
  CallScope(CheckJournal* journal, const std::string& clip, const std::string& call,
            std::chrono::milliseconds own_limit = std::chrono::milliseconds(0))
      : journal_(journal) {
    journal_->Calling(clip, call, own_limit);
  }
  ~CallScope() { journal_->Returned(); }
  CallScope(const CallScope&) = delete;
  CallScope& operator=(const CallScope&) = delete;

 private:
  CheckJournal* journal_;
};

// The judge's side: reads the records that have come since the last call.
class JournalReader {
 public:
  explicit JournalReader(std::string path) : path_(std::move(path)) {}
  // Whole lines written since the last call; a line still being written waits for the next call.
  std::vector<JournalRecord> ReadNew();

 private:
  std::string path_;
  uint64_t offset_ = 0;
  std::string partial_;
};

// Thumbnails travel as binary PPM files.
bool WritePpm(const std::string& path, const RgbImage& image);
bool ReadPpm(const std::string& path, RgbImage* image);

}  // namespace host_sim
