// The built plug-in under load for a bounded time (QUORVEL_STRESS_SECONDS, 60 by default): host
// threads asking for frames and sound of several files at random, a thread opening and closing
// files, stitching that fails and stalls so that sources are released and made again, and the
// command server flooding the link. Every frame and sample is checked against the stand-in's own
// output, every link request must be answered in order, and the log must hold every line whole.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "command_server/command_server.h"
#include "host_sim/host_file.h"
#include "host_sim/host_session.h"
#include "host_sim/plugin_module.h"
#include "qvo_host/log_parsing.h"
#include "standin_stitcher/omni_standin_counters.h"
#include "stress/link_flood.h"
#include "stress/stand_in_output.h"
#include "support/environment.h"
#include "support/plugin_log_file.h"
#include "support/temp_folder.h"

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr int32_t kInterfaceVersion = 23;
constexpr PrPixelFormat kPlanar = 0x46317659;
constexpr PrPixelFormat kBgra = 0x61726762;
constexpr int kHostThreads = 6;
constexpr int32_t kFrames = 24;
constexpr int32_t kRate = 48000;
constexpr float kUnwritten = 8.0f;  // beyond the tone's amplitude
// Frames whose every read fails: each request for one of them makes the plug-in release the
// least recently used half of the sources and try once more.
constexpr int64_t kAlwaysFailing[] = {7, 19};
// The log rotates at 5 MiB; it starts just short of that, so that the run crosses rotations.
constexpr size_t kLogRotationBytes = 5 * 1024 * 1024;
constexpr size_t kLogHeadStart = kLogRotationBytes - 256 * 1024;
// A run that makes no progress for this long has hung.
constexpr auto kHangBound = 60s;

// Loaded once and never unloaded, as a host that quits leaves it: the records the plug-in keeps
// for the life of its load stay known to the leak checker.
const host_sim::PluginModule& Plugin() {
  static const host_sim::PluginModule* const plugin =
      new host_sim::PluginModule(host_sim::DefaultPluginPath());
  return *plugin;
}

std::chrono::seconds RunTime() {
  const char* seconds = std::getenv("QUORVEL_STRESS_SECONDS");
  return std::chrono::seconds(seconds != nullptr ? std::atoi(seconds) : 60);
}

// Faults seen by any thread: counted, and the first few kept to be shown.
class Faults {
 public:
  void Record(const std::string& fault) {
    std::lock_guard<std::mutex> lock(mutex_);
    if (first_.size() < 10) first_.push_back(fault);
    ++count_;
  }
  int64_t count() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return count_;
  }
  std::string Shown() const {
    std::lock_guard<std::mutex> lock(mutex_);
    std::string text;
    for (const std::string& fault : first_) text += fault + "\n";
    return text;
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> first_;  // guarded by mutex_
  int64_t count_ = 0;               // guarded by mutex_
};

struct Clip {
  Clip(const ClipShape& clip_shape, std::string native_path)
      : shape(clip_shape), path(std::move(native_path)), pictures(shape), tone(kRate, 2) {}

  ClipShape shape;
  std::string path;
  StandInPictures pictures;
  StandInTone tone;
  int64_t sample_frames = 0;
  PrTime ticks_per_frame = 0;
  std::unique_ptr<host_sim::HostFile> file;
};

std::string ProjectText(const ClipShape& shape, int delay_ms) {
  std::string fail_once;
  for (int32_t index = 0; index < shape.frames; ++index) {
    fail_once += (index == 0 ? "" : ",") + std::to_string(index);
  }
  return "{\"width\": " + std::to_string(shape.width) +
         ", \"height\": " + std::to_string(shape.height) +
         ", \"fps\": 24, \"frames\": " + std::to_string(shape.frames) +
         (shape.stereo ? ", \"stereo\": true" : "") +
         ", \"audio\": {\"rate\": " + std::to_string(kRate) +
         ", \"channels\": 2}, \"faults\": {\"video_fail_once\": [" + fail_once +
         "], \"video_fail_always\": [" + std::to_string(kAlwaysFailing[0]) + ", " +
         std::to_string(kAlwaysFailing[1]) + "], \"video_delay_ms\": " + std::to_string(delay_ms) +
         "}}";
}

// Lines that look like the plug-in's, up to just short of the rotation size.
void WriteLogHeadStart(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  const std::string line = "2026-01-01 00:00:00 INFO  head start SDK_File_Import:1\n";
  std::string text;
  while (text.size() + line.size() <= kLogHeadStart) text += line;
  FILE* file = std::fopen((folder / "Plugin.log").string().c_str(), "wb");
  ASSERT_NE(file, nullptr);
  std::fwrite(text.data(), 1, text.size(), file);
  std::fclose(file);
}

class StressTest : public ::testing::Test {
 protected:
  void SetUp() override {
    WriteLogHeadStart(PluginLogFolder(CurrentProfile()));
    SetHomeDriveAndPath(CurrentProfile().string());
    ASSERT_TRUE(server_.WritePortFile(CurrentProfile().string()));
    ASSERT_TRUE(Plugin().loaded()) << Plugin().error();
    session_ = std::make_unique<host_sim::HostSession>(Plugin(), kInterfaceVersion);
    imImportInfoRec capabilities;
    ASSERT_EQ(session_->StartUp(&capabilities), imNoErr);
    int32_t last_result = 0;
    session_->FileTypes(&last_result);
    file_type_ = session_->FileTypeFor("a.qvo")->file_type;
    ASSERT_TRUE(server_.WaitForConnection(10s));
  }

  void TearDown() override {
    clips_.clear();
    if (session_) session_->ShutDown();
    session_.reset();
  }

  void OpenClips() {
    const ClipShape shapes[] = {
        {64, 32, kFrames, false, kRate, 2}, {48, 24, kFrames, false, kRate, 2},
        {64, 64, kFrames, true, kRate, 2},  {33, 17, kFrames, false, kRate, 2},
        {96, 48, kFrames, false, kRate, 2}, {40, 40, kFrames, true, kRate, 2}};
    for (const ClipShape& shape : shapes) {
      const int delay_ms = clips_.size() % 2 == 0 ? 1 : 0;
      const std::string name = "clip" + std::to_string(clips_.size()) + ".qvo";
      auto clip =
          std::make_unique<Clip>(shape, folder_.WriteFile(name, ProjectText(shape, delay_ms)));
      clip->file = std::make_unique<host_sim::HostFile>(*session_, clip->path, file_type_);
      ASSERT_EQ(clip->file->Open(), imNoErr);
      ASSERT_EQ(clip->file->GetInfo(), imNoErr);
      clip->ticks_per_frame = clip->file->TicksPerFrame();
      clip->sample_frames = clip->file->info().record()->audDuration;
      clips_.push_back(std::move(clip));
    }
  }

  void RequestFrame(Clip& clip, std::mt19937_64& random) {
    const int64_t index = static_cast<int64_t>(random() % clip.shape.frames);
    const PrPixelFormat format = random() % 2 == 0 ? kPlanar : kBgra;
    // The clip's size, left to the plug-in, or one it does not offer: frames come at the clip's.
    const int32_t sizes[][2] = {{0, 0},
                                {clip.shape.width, clip.shape.height},
                                {clip.shape.width / 2 + 1, clip.shape.height * 2}};
    const int32_t* size = sizes[random() % 3];
    imFrameFormat wanted{size[0], size[1], format};
    const PrTime time =
        index * clip.ticks_per_frame + static_cast<PrTime>(random() % clip.ticks_per_frame);
    PPixHand handle = nullptr;
    const int32_t result = clip.file->RequestFrame(time, &wanted, &handle);
    const bool failing = std::find(std::begin(kAlwaysFailing), std::end(kAlwaysFailing), index) !=
                         std::end(kAlwaysFailing);
    const std::string what = clip.path + " frame " + std::to_string(index);
    if (result != (failing ? malUnknownError : imNoErr)) {
      faults_.Record(what + ": result " + std::to_string(result));
    } else if (failing) {
      ++frames_failed_;
    } else {
      const host_sim::HostFrame* frame = session_->host().frames().Find(handle);
      if (frame == nullptr || !clip.pictures.Matches(*frame, index)) {
        faults_.Record(what + ": bytes differ from the stand-in's");
      } else {
        ++(format == kPlanar ? planar_frames_ : packed_frames_);
      }
    }
    if (handle != nullptr) session_->host().frames().Dispose(handle);
  }

  void ReadSound(Clip& clip, std::mt19937_64& random) {
    const uint32_t size = 1 + static_cast<uint32_t>(random() % 2048);
    const bool sequential = random() % 2 == 0;
    const int64_t position =
        sequential ? -1 : static_cast<int64_t>(random() % (clip.sample_frames + 512));
    std::vector<float> channels[2] = {std::vector<float>(size + 16, kUnwritten),
                                      std::vector<float>(size + 16, kUnwritten)};
    float* buffers[2] = {channels[0].data(), channels[1].data()};
    const std::string what = clip.path + " sound at " + std::to_string(position);
    if (clip.file->ReadAudio(position, size, buffers) != imNoErr) {
      faults_.Record(what + ": not answered with success");
      return;
    }
    int64_t written = 0;
    while (written < size + 16 && channels[0][written] != kUnwritten) ++written;
    for (const std::vector<float>& channel : channels) {
      for (size_t i = written; i < channel.size(); ++i) {
        if (channel[i] != kUnwritten) faults_.Record(what + ": written past its count");
      }
    }
    // The range reaches at most the end of the file; sequential reads start where some read ended.
    const int64_t remaining = position >= 0 ? clip.sample_frames - position : -1;
    const int64_t expected = position >= 0
                                 ? std::max<int64_t>(0, std::min<int64_t>(size, remaining))
                                 : std::min<int64_t>(written, size);
    if (written != expected) {
      faults_.Record(what + ": " + std::to_string(written) + " sample frames written");
      return;
    }
    if (written == 0) return;
    const int64_t start = clip.tone.StartOf(buffers, written);
    const bool cut = written < size;
    const int64_t known_start = position >= 0 ? position : cut ? clip.sample_frames - written : -1;
    if (start < 0 || (known_start >= 0 && known_start % clip.tone.period() != start)) {
      faults_.Record(what + ": samples differ from the stand-in's");
      return;
    }
    ++sound_reads_;
    if (sequential) ++sequential_reads_;
    sample_frames_checked_ += written;
  }

  void HostThread(uint64_t seed) {
    std::mt19937_64 random(seed);
    while (!stop_) {
      Clip& clip = *clips_[random() % clips_.size()];
      if (random() % 4 == 0) {
        ReadSound(clip, random);
      } else {
        RequestFrame(clip, random);
      }
      ++progress_;
    }
  }

  // Opens, describes (now and then twice, which acquires the host's suites twice), reads from and
  // closes files of its own, over and over.
  void OpeningThread() {
    std::mt19937_64 random(99);
    const ClipShape shape{32, 16, 4, false, kRate, 2};
    Clip clip(shape, folder_.WriteFile("opened.qvo", ProjectText(shape, 0)));
    while (!stop_) {
      host_sim::HostFile file(*session_, clip.path, file_type_);
      if (file.Open() != imNoErr || file.GetInfo() != imNoErr) {
        faults_.Record("a file could not be opened and described");
        return;
      }
      if (random() % 4 == 0) {
        file.GetInfo();
        ++extra_descriptions_;
      }
      PPixHand handle = nullptr;
      if (file.RequestFrame(0, {0, 0, kPlanar}, &handle) != imNoErr) {
        faults_.Record("an opened file's first frame failed");
      }
      if (handle != nullptr) session_->host().frames().Dispose(handle);
      if (file.Close() != imNoErr) faults_.Record("a file could not be closed");
      ++opens_;
      ++progress_;
      // A host opens files far less often than it asks for frames; unpaced, this thread's log
      // lines would drown the others'.
      std::this_thread::sleep_for(1ms);
    }
  }

  // Fails the run at once when the host threads stop getting answers.
  void Watchdog() {
    std::unique_lock<std::mutex> lock(watchdog_mutex_);
    int64_t seen = -1;
    while (!watchdog_done_.wait_for(lock, kHangBound, [this] { return watchdog_stop_; })) {
      if (progress_ == seen) {
        std::fprintf(stderr, "stress: no request answered in %lld s: the plug-in hangs\n",
                     static_cast<long long>(kHangBound.count()));
        std::abort();
      }
      seen = progress_;
    }
  }

  void CheckHostBalance() {
    const host_sim::HostReport report = session_->host().Report();
    EXPECT_EQ(report.handles_still_locked.size(), 0u) << report.ToString();
    EXPECT_EQ(report.memory_faults.size(), 0u) << report.ToString();
    EXPECT_EQ(report.frame_faults.size(), 0u) << report.ToString();
    // Describing a file acquires five suites anew each time; closing releases them once, and the
    // audio suite twice.
    const int64_t closes = opens_ + static_cast<int64_t>(clips_.size());
    for (const host_sim::SuiteBalance& suite : report.suites_unbalanced) {
      const bool audio = suite.name == kPrSDKAudioSuite;
      EXPECT_EQ(suite.acquired - suite.released, extra_descriptions_ - (audio ? closes : 0))
          << suite.name;
    }
    if (extra_descriptions_ > 0) {
      EXPECT_EQ(report.suites_unbalanced.size(), 5u);
    }
  }

  // Every line whole, and none lost: each frame the host's cache missed was fetched and logged.
  void CheckLog(const LinkFlood& flood) {
    host_sim::ParsedLog log;
    int64_t files = 0;
    for (const auto& file : PluginLogFiles(CurrentProfile())) {
      host_sim::ParsePluginLog(ReadWholeFile(file), &log);
      ++files;
    }
    int64_t fetches = 0, received = 0, retries = 0, released = 0;
    for (const host_sim::LogEntry& entry : log.entries) {
      const std::string& message = entry.message;
      fetches += message.rfind("get source video:", 0) == 0;
      received += message.rfind("Received json: ", 0) == 0;
      retries += message.rfind("second try result:", 0) == 0;
      released += message.rfind("clean up resource:", 0) == 0;
    }
    EXPECT_EQ(log.malformed_lines, 0);
    EXPECT_GE(files, 2) << "the log rotated";
    EXPECT_EQ(fetches, session_->host().frame_cache().misses());
    EXPECT_EQ(received, flood.answered());
    std::printf("stress: log lines %zu in %lld files, %lld malformed\n", log.entries.size(),
                static_cast<long long>(files), static_cast<long long>(log.malformed_lines));
    std::printf(
        "stress: faults injected %lld (first reads failed and retried), "
        "sources released %lld, sources made again %lld\n",
        static_cast<long long>(retries), static_cast<long long>(released),
        static_cast<long long>(OmniStandin_CallCount(kOmniStandinCreate, nullptr) - opens_ -
                               static_cast<int64_t>(clips_.size())));
  }

  void PrintFigures(std::chrono::duration<double> elapsed, const LinkFlood& flood) {
    const host_sim::FrameCache& cache = session_->host().frame_cache();
    std::printf("stress: %.0f s, %d host threads over %zu files, 1 opening thread, 1 link flood\n",
                elapsed.count(), kHostThreads, clips_.size());
    std::printf(
        "stress: frames right byte for byte %lld (planar %lld, packed %lld), "
        "failed as injected %lld; host cache hits %lld, misses %lld, expired %lld times\n",
        static_cast<long long>(planar_frames_ + packed_frames_),
        static_cast<long long>(planar_frames_.load()),
        static_cast<long long>(packed_frames_.load()),
        static_cast<long long>(frames_failed_.load()), static_cast<long long>(cache.hits()),
        static_cast<long long>(cache.misses()), static_cast<long long>(cache.expire_all_calls()));
    std::printf("stress: sound requests right %lld (sequential %lld), sample frames checked %lld\n",
                static_cast<long long>(sound_reads_.load()),
                static_cast<long long>(sequential_reads_.load()),
                static_cast<long long>(sample_frames_checked_.load()));
    std::printf(
        "stress: files opened and closed %lld; link requests answered in order %lld "
        "(media information %lld, updates %lld)\n",
        static_cast<long long>(opens_.load()), static_cast<long long>(flood.answered()),
        static_cast<long long>(flood.media_info_answered()),
        static_cast<long long>(flood.updates_answered()));
  }

  TempFolder folder_;
  command_server::CommandServer server_;
  std::unique_ptr<host_sim::HostSession> session_;
  int32_t file_type_ = 0;
  std::vector<std::unique_ptr<Clip>> clips_;

  std::atomic<bool> stop_{false};
  Faults faults_;
  std::atomic<int64_t> progress_{0};
  std::atomic<int64_t> planar_frames_{0}, packed_frames_{0}, frames_failed_{0};
  std::atomic<int64_t> sound_reads_{0}, sequential_reads_{0}, sample_frames_checked_{0};
  std::atomic<int64_t> opens_{0}, extra_descriptions_{0};

  std::mutex watchdog_mutex_;
  std::condition_variable watchdog_done_;
  bool watchdog_stop_ = false;  // guarded by watchdog_mutex_
};

TEST_F(StressTest, EveryAnswerIsRightUnderLoadFaultsAndAFloodedLink) {
  OpenClips();
  ASSERT_FALSE(HasFatalFailure());
  std::vector<std::string> paths;
  std::vector<ClipShape> shapes;
  for (const auto& clip : clips_) {
    paths.push_back(clip->path);
    shapes.push_back(clip->shape);
  }
  LinkFlood flood(server_, paths, shapes, &stop_);

  const Clock::time_point start = Clock::now();
  std::thread watchdog([this] { Watchdog(); });
  std::vector<std::thread> threads;
  for (uint64_t t = 1; t <= kHostThreads; ++t) threads.emplace_back([this, t] { HostThread(t); });
  threads.emplace_back([this] { OpeningThread(); });
  threads.emplace_back([&flood] { flood.Run(); });
  std::this_thread::sleep_for(RunTime());
  stop_ = true;
  for (std::thread& thread : threads) thread.join();
  const std::chrono::duration<double> elapsed = Clock::now() - start;
  {
    std::lock_guard<std::mutex> lock(watchdog_mutex_);
    watchdog_stop_ = true;
  }
  watchdog_done_.notify_one();
  watchdog.join();

  EXPECT_EQ(faults_.count(), 0) << faults_.Shown();
  EXPECT_EQ(flood.faults(), "");
  EXPECT_GT(flood.answered(), 0);
  for (auto& clip : clips_) EXPECT_EQ(clip->file->Close(), imNoErr);
  CheckHostBalance();
  PrintFigures(elapsed, flood);
  CheckLog(flood);
}

}  // namespace
