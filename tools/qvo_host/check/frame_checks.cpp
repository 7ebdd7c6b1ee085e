#include "qvo_host/check/frame_checks.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <random>
#include <set>

#include "qvo_host/contact_sheet.h"

namespace host_sim {
namespace {

constexpr char kStitchLine[] = "get source video:";
constexpr int32_t kThumbnailWidth = 320;

struct FormatTally {
  PrPixelFormat format = 0;
  int64_t asked = 0;
  int64_t delivered = 0;
  std::string undelivered;  // "frame 12: result 99", for each frame asked but not delivered
  int64_t unwritten_rows = 0;
  int64_t written_outside = 0;
  int64_t same_on_second_fetch = 0;
  int64_t repeats_stitched = 0;
};

// A visible row that still holds nothing but the host's fresh bytes was never written.
int64_t UnwrittenRows(const HostFrame& frame) {
  int64_t unwritten = 0;
  for (int32_t p = 0; p < frame.plane_count; ++p) {
    const FramePlane& plane = frame.planes[p];
    for (int32_t r = 0; r < plane.rows; ++r) {
      const uint8_t* row = plane.bytes + static_cast<size_t>(r) * plane.row_bytes;
      if (std::all_of(row, row + plane.row_length,
                      [](uint8_t byte) { return byte == HostFrames::kFreshByte; })) {
        ++unwritten;
      }
    }
  }
  return unwritten;
}

std::vector<uint8_t> PictureBytes(const HostFrame& frame) {
  std::vector<uint8_t> bytes;
  for (int32_t p = 0; p < frame.plane_count; ++p) {
    const FramePlane& plane = frame.planes[p];
    for (int32_t r = 0; r < plane.rows; ++r) {
      const uint8_t* row = plane.bytes + static_cast<size_t>(r) * plane.row_bytes;
      bytes.insert(bytes.end(), row, row + plane.row_length);
    }
  }
  return bytes;
}

size_t FrameFaults(Host& host) { return host.Report().frame_faults.size(); }

std::string FormatName(PrPixelFormat format) {
  return format == PrPixelFormat_BGRA_4444_8u ? "BGRA" : "YUV 4:2:0";
}

// What the judge names when the call does not come back: "GetVideoFrame frame 12, BGRA 96x48".
std::string FrameCall(int64_t index, const imFrameFormat& format) {
  return "GetVideoFrame frame " + std::to_string(index) + ", " + FormatName(format.inPixelFormat) +
         " " + std::to_string(format.inFrameWidth) + "x" + std::to_string(format.inFrameHeight);
}

class FrameFetcher {
 public:
  FrameFetcher(HostSession& session, HostFile* file, const std::string& name, PrPixelFormat format,
               const ProfileLog& log, CheckJournal* journal)
      : host_(session.host()), file_(file), name_(name), log_(log), journal_(journal) {
    const imFileInfoRec8& info = *file->info().record();
    format_ = {info.vidInfo.imageWidth, info.vidInfo.imageHeight, format};
  }

  // Asks for the frame, timing the request when it was delivered stitched; null when none came,
  // with the plug-in's result in `*result`. The caller disposes of a non-null handle.
  PPixHand Fetch(int64_t index, int32_t* result) {
    const int64_t misses = host_.frame_cache().misses();
    PPixHand handle = nullptr;
    imFrameFormat format = format_;
    const auto start = std::chrono::steady_clock::now();
    {
      CallScope call(journal_, name_, FrameCall(index, format_));
      *result = file_->RequestFrame(index * file_->TicksPerFrame(), &format, &handle);
    }
    const double ms =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    if (*result == imNoErr && handle != nullptr && host_.frames().Find(handle) != nullptr) {
      if (host_.frame_cache().misses() != misses) journal_->FrameTime(name_, index, ms);
      return handle;
    }
    if (handle != nullptr) host_.frames().Dispose(handle);
    return nullptr;
  }

  // The checks of one frame: fetched afresh, fetched again from the cache, fetched afresh again.
  void CheckFrame(int64_t index, FormatTally* tally) {
    ++tally->asked;
    host_.frame_cache().ExpireAll();
    const size_t faults_before = FrameFaults(host_);
    int32_t result = imNoErr;
    PPixHand first = Fetch(index, &result);
    if (first == nullptr) {
      tally->undelivered +=
          "; frame " + std::to_string(index) + ": the plug-in answered " + std::to_string(result);
      return;
    }
    ++tally->delivered;
    const HostFrame& frame = *host_.frames().Find(first);
    tally->unwritten_rows += UnwrittenRows(frame);
    if (FrameFaults(host_) != faults_before) ++tally->written_outside;
    const std::vector<uint8_t> picture = PictureBytes(frame);
    KeepThumbnail(frame);
    CheckRepeatFromCache(index, tally);
    host_.frames().Dispose(first);
    host_.frame_cache().ExpireAll();
    PPixHand second = Fetch(index, &result);
    if (second != nullptr) {
      if (PictureBytes(*host_.frames().Find(second)) == picture) ++tally->same_on_second_fetch;
      host_.frames().Dispose(second);
    }
    host_.frame_cache().ExpireAll();
  }

 private:
  void CheckRepeatFromCache(int64_t index, FormatTally* tally) {
    const int64_t stitched_before = log_.CountLogged(kStitchLine);
    int32_t result = imNoErr;
    PPixHand repeat = Fetch(index, &result);
    if (repeat != nullptr) host_.frames().Dispose(repeat);
    if (repeat == nullptr || log_.CountLogged(kStitchLine) != stitched_before) {
      ++tally->repeats_stitched;
    }
  }

  void KeepThumbnail(const HostFrame& frame) {
    RgbImage image;
    if (journal_->keeps_thumbnails() && frame.planar && FrameToRgb(frame, &image)) {
      journal_->Thumbnail(name_, Thumbnail(image, kThumbnailWidth));
    }
  }

  Host& host_;
  HostFile* file_;
  const std::string& name_;
  const ProfileLog& log_;
  CheckJournal* journal_;
  imFrameFormat format_{};
};

void AddLines(const FormatTally& tally, const std::string& name, CheckJournal* journal) {
  const std::string lead = name + " " + FormatName(tally.format) + " frames: ";
  const std::string of = " of " + std::to_string(tally.asked);
  journal->Add(lead + "delivered", std::to_string(tally.delivered) + of + tally.undelivered,
               tally.asked > 0 && tally.delivered == tally.asked);
  journal->Add(lead + "every row written",
               std::to_string(tally.unwritten_rows) + " rows unwritten in " +
                   std::to_string(tally.delivered) + " frames",
               tally.unwritten_rows == 0);
  journal->Add(lead + "nothing written outside the buffer",
               std::to_string(tally.written_outside) + " frames written outside",
               tally.written_outside == 0);
  journal->Add(lead + "same bytes on a second fetch",
               std::to_string(tally.same_on_second_fetch) + of,
               tally.same_on_second_fetch == tally.delivered);
  journal->Add(lead + "repeat answered from the host's cache",
               std::to_string(tally.repeats_stitched) + " repeats stitched again" + of,
               tally.repeats_stitched == 0);
}

}  // namespace

std::vector<int64_t> FramesToCheck(int64_t frame_count, int32_t random_count) {
  std::set<int64_t> frames;
  if (frame_count <= 0) return {};
  frames.insert({0, frame_count - 1, frame_count / 2});
  std::mt19937_64 random(20240601);
  std::uniform_int_distribution<int64_t> pick(0, frame_count - 1);
  for (int32_t i = 0; i < random_count; ++i) frames.insert(pick(random));
  return std::vector<int64_t>(frames.begin(), frames.end());
}

void CheckFrames(HostSession& session, HostFile* file, const std::string& name,
                 const std::vector<int64_t>& frames, const ProfileLog& log, CheckJournal* journal) {
  for (PrPixelFormat format : {PrPixelFormat_YUV_420_MPEG4_FRAME_PICTURE_PLANAR_8u_709_FullRange,
                               PrPixelFormat_BGRA_4444_8u}) {
    FrameFetcher fetcher(session, file, name, format, log, journal);
    FormatTally tally;
    tally.format = format;
    for (int64_t index : frames) fetcher.CheckFrame(index, &tally);
    AddLines(tally, name, journal);
  }
}

}  // namespace host_sim
