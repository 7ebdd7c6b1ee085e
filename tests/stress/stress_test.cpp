// The built plug-in under load for a bounded time (QUORVEL_STRESS_SECONDS, 60 by default): host
// threads asking for frames and sound of several files at random, a thread opening and closing
// files, stitching that fails and stalls so that sources are released and made again, and the
// command server flooding the link. Every frame and sample is checked against the stand-in's own
// output, every link request must be answered in order, and the log must hold every line whole.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <future>
#include <iostream>
#include <memory>
#include <mutex>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "command_server/command_server.h"
#include "command_server/requests.h"
#include "host_sim/host_file.h"
#include "host_sim/host_session.h"
#include "host_sim/plugin_module.h"
#include "qvo_host/log_parsing.h"
#include "standin_stitcher/omni_standin_counters.h"
#include "stress/stand_in_output.h"
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
constexpr size_t kLogHeadStart = 5 * 1024 * 1024 - 256 * 1024;
// A run that makes no progress for this long has hung.
constexpr auto kHangBound = 60s;
// Link requests in one write: small enough that one write arrives as one receive, since the
// plug-in answers each receive by itself.
constexpr int kBatch = 200;
// The plug-in queues one read every 2.5 s; slow builds take longer to answer a batch.
constexpr auto kAnswerBound = 30s;
// The answers to the link's requests after their request IDs. Media information says what the
// host was told of every file: kFrames frames at 24 fps, the stand-in's bitrate and no offset.
constexpr char kMediaInfoAnswer[] =
    R"(get_media_info","data":{"duration":1.0,"bitrate":120000000,"fps":24.0,"offset":""}})";
constexpr char kUpdateAnswer[] = R"(request_update_param","data":{"msg":"success"}})";

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

struct Clip {
  ClipShape shape;
  std::string path;
  StandInPictures pictures;
  int64_t sample_frames = 0;
  PrTime ticks_per_frame = 0;
  std::unique_ptr<host_sim::HostFile> file;
};

// Every frame's first read fails, and kAlwaysFailing's every read.
std::string ProjectText(const ClipShape& shape, int delay_ms) {
  std::string fail_once = "0";
  for (int64_t index = 1; index < shape.frames; ++index) fail_once += "," + std::to_string(index);
  return R"({"width": )" + std::to_string(shape.width) + R"(, "height": )" +
         std::to_string(shape.height) + R"(, "fps": 24, "frames": )" +
         std::to_string(shape.frames) + (shape.stereo ? R"(, "stereo": true)" : "") +
         R"(, "audio": {"rate": )" + std::to_string(kRate) +
         R"(, "channels": 2}, "faults": {"video_fail_once": [)" + fail_once +
         R"(], "video_fail_always": [)" + std::to_string(kAlwaysFailing[0]) + ", " +
         std::to_string(kAlwaysFailing[1]) + R"(], "video_delay_ms": )" + std::to_string(delay_ms) +
         "}}";
}

// Lines that look like the plug-in's, up to just short of the rotation size.
void WriteLogHeadStart(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  const std::string line = "2026-01-01 00:00:00 INFO  head start SDK_File_Import:1\n";
  std::string text;
  while (text.size() + line.size() <= kLogHeadStart) text += line;
  ASSERT_TRUE(std::ofstream(folder / "Plugin.log", std::ios::binary) << text);
}

// How many of `log`'s messages begin with `start`.
int64_t Starting(const host_sim::ParsedLog& log, const std::string& start) {
  return std::count_if(
      log.entries.begin(), log.entries.end(),
      [&start](const host_sim::LogEntry& entry) { return entry.message.rfind(start, 0) == 0; });
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
  }

  void OpenClips() {
    const ClipShape shapes[] = {{64, 32, kFrames, false}, {48, 24, kFrames, false},
                                {64, 64, kFrames, true},  {33, 17, kFrames, false},
                                {96, 48, kFrames, false}, {40, 40, kFrames, true}};
    for (const ClipShape& shape : shapes) {
      const int delay_ms = clips_.size() % 2 == 0 ? 1 : 0;
      const std::string path = folder_.WriteFile("clip" + std::to_string(clips_.size()) + ".qvo",
                                                 ProjectText(shape, delay_ms));
      auto file = std::make_unique<host_sim::HostFile>(*session_, path, file_type_);
      ASSERT_EQ(file->Open(), imNoErr);
      ASSERT_EQ(file->GetInfo(), imNoErr);
      clips_.push_back(std::unique_ptr<Clip>(new Clip{shape, path, StandInPictures(shape),
                                                      file->info().record()->audDuration,
                                                      file->TicksPerFrame(), std::move(file)}));
    }
  }

  // Notes a wrong answer, from any thread.
  void Record(const std::string& fault) {
    std::lock_guard<std::mutex> lock(faults_mutex_);
    if (faults_.size() < 10) faults_.push_back(fault);
    ++fault_count_;
  }

  void RequestFrame(Clip& clip, std::mt19937_64& random) {
    const int64_t index = static_cast<int64_t>(random() % clip.shape.frames);
    const PrPixelFormat format = random() % 2 == 0 ? kPlanar : kBgra;
    // The clip's size, left to the plug-in, or one it does not offer: frames come at the clip's.
    const imFrameFormat formats[] = {{0, 0, format},
                                     {clip.shape.width, clip.shape.height, format},
                                     {clip.shape.width / 2 + 1, clip.shape.height * 2, format}};
    imFrameFormat wanted = formats[random() % 3];
    const PrTime time =
        index * clip.ticks_per_frame + static_cast<PrTime>(random() % clip.ticks_per_frame);
    PPixHand handle = nullptr;
    const int32_t result = clip.file->RequestFrame(time, &wanted, &handle);
    const bool failing = index == kAlwaysFailing[0] || index == kAlwaysFailing[1];
    const std::string what = clip.path + " frame " + std::to_string(index);
    if (result != (failing ? malUnknownError : imNoErr)) {
      Record(what + ": result " + std::to_string(result));
    } else if (failing) {
      ++frames_failed_;
    } else {
      const host_sim::HostFrame* frame = session_->host().frames().Find(handle);
      if (frame == nullptr || !clip.pictures.Matches(*frame, index)) {
        Record(what + ": bytes differ from the stand-in's");
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
      return Record(what + ": not answered with success");
    }
    int64_t written = 0;
    while (written < size + 16 && channels[0][written] != kUnwritten) ++written;
    for (const std::vector<float>& channel : channels) {
      if (std::any_of(channel.begin() + written, channel.end(),
                      [](float sample) { return sample != kUnwritten; })) {
        Record(what + ": written past its count");
      }
    }
    // The range reaches at most the end of the file; sequential reads start where some read ended.
    const int64_t expected = position >= 0
                                 ? std::clamp<int64_t>(clip.sample_frames - position, 0, size)
                                 : std::min<int64_t>(written, size);
    if (written != expected) {
      return Record(what + ": " + std::to_string(written) + " sample frames written");
    }
    if (written == 0) return;
    const int64_t start = tone_.StartOf(buffers, written);
    const bool cut = written < size;
    const int64_t known_start = position >= 0 ? position : cut ? clip.sample_frames - written : -1;
    if (start < 0 || (known_start >= 0 && known_start % tone_.period() != start)) {
      return Record(what + ": samples differ from the stand-in's");
    }
    ++sound_reads_;
    if (sequential) ++sequential_reads_;
    sample_frames_checked_ += written;
  }

  void HostThread(uint64_t seed) {
    std::mt19937_64 random(seed);
    for (; !stop_; ++progress_) {
      Clip& clip = *clips_[random() % clips_.size()];
      if (random() % 4 == 0) {
        ReadSound(clip, random);
      } else {
        RequestFrame(clip, random);
      }
    }
  }

  // Opens, describes (now and then twice, which acquires the host's suites twice), reads from and
  // closes a file of its own, over and over.
  void OpeningThread() {
    std::mt19937_64 random(99);
    const std::string path = folder_.WriteFile("opened.qvo", ProjectText({32, 16, 4, false}, 0));
    for (; !stop_; ++opens_, ++progress_) {
      host_sim::HostFile file(*session_, path, file_type_);
      if (file.Open() != imNoErr || file.GetInfo() != imNoErr) {
        return Record("a file could not be opened and described");
      }
      if (random() % 4 == 0) {
        file.GetInfo();
        ++extra_descriptions_;
      }
      PPixHand handle = nullptr;
      if (file.RequestFrame(0, {0, 0, kPlanar}, &handle) != imNoErr) {
        Record("an opened file's first frame failed");
      }
      if (handle != nullptr) session_->host().frames().Dispose(handle);
      if (file.Close() != imNoErr) Record("a file could not be closed");
      // A host opens files far less often than it asks for frames; unpaced, this thread's log
      // lines would drown the others'.
      std::this_thread::sleep_for(1ms);
    }
  }

  // The command server's side: batches of "get_media_info" and "request_update_param" requests,
  // each batch in one write and the next one sent as soon as every answer of the last has come,
  // so the link carries as much as it takes. Each answer must come in the order of the requests
  // and say what the host was told of the file; the flood ends at the first that does not.
  void FloodLink() {
    std::mt19937_64 random(7);
    for (int64_t next_id = 1; !stop_;) {
      std::string bytes;
      std::vector<std::pair<std::string, bool>> answers;  // with whether it answers an update
      for (int i = 0; i < kBatch; ++i) {
        const std::string id = std::to_string(next_id++);
        const bool update = random() % 4 == 0;
        const std::string& path = clips_[random() % clips_.size()]->path;
        bytes += (update ? command_server::UpdateParamRequest(id, path)
                         : command_server::MediaInfoRequest(id, path)) +
                 "###";
        answers.emplace_back(R"({"requestId":")" + id + R"(","type":")" +
                                 (update ? kUpdateAnswer : kMediaInfoAnswer),
                             update);
      }
      if (!server_.SendRaw(bytes)) return Record("the link would not take a batch");
      for (const auto& [answer, update] : answers) {
        const std::optional<std::string> response = server_.WaitForResponse(kAnswerBound);
        if (response != answer) {
          return Record("link answer " + response.value_or("missing") + " instead of " + answer);
        }
        ++(update ? updates_answered_ : media_info_answered_);
      }
    }
  }

  // Fails the run at once when the host threads stop getting answers.
  void Watchdog(std::future<void> finished) {
    for (int64_t seen = -1; finished.wait_for(kHangBound) == std::future_status::timeout;
         seen = progress_) {
      if (progress_ == seen) {
        std::cerr << "stress: no request answered in " << kHangBound.count()
                  << " s: the plug-in hangs\n";
        std::abort();
      }
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

  // Every line whole, and none lost: each frame the host's cache missed was fetched and logged,
  // and each link request received. The figures go to the output after the run's own.
  void CheckLog() {
    host_sim::ParsedLog log;
    const std::vector<std::filesystem::path> files = PluginLogFiles(CurrentProfile());
    for (const auto& file : files) host_sim::ParsePluginLog(ReadWholeFile(file), &log);
    EXPECT_EQ(log.malformed_lines, 0);
    EXPECT_GE(files.size(), 2u) << "the log rotated";
    EXPECT_EQ(Starting(log, "get source video:"), session_->host().frame_cache().misses());
    EXPECT_EQ(Starting(log, "Received json: "), media_info_answered_ + updates_answered_);
    std::cout << "stress: log lines " << log.entries.size() << " in " << files.size() << " files, "
              << log.malformed_lines << " malformed\n"
              << "stress: faults injected " << Starting(log, "second try result:")
              << " (first reads failed and retried), sources released "
              << Starting(log, "clean up resource:") << ", sources made again "
              << OmniStandin_CallCount(kOmniStandinCreate, nullptr) - opens_ -
                     static_cast<int64_t>(clips_.size())
              << "\n";
  }

  void PrintFigures(std::chrono::seconds elapsed) {
    const host_sim::FrameCache& cache = session_->host().frame_cache();
    std::cout << "stress: " << elapsed.count() << " s, " << kHostThreads << " host threads over "
              << clips_.size() << " files, 1 opening thread, 1 link flood\n"
              << "stress: frames right byte for byte " << planar_frames_ + packed_frames_
              << " (planar " << planar_frames_ << ", packed " << packed_frames_
              << "), failed as injected " << frames_failed_ << "; host cache hits " << cache.hits()
              << ", misses " << cache.misses() << ", expired " << cache.expire_all_calls()
              << " times\n"
              << "stress: sound requests right " << sound_reads_ << " (sequential "
              << sequential_reads_ << "), sample frames checked " << sample_frames_checked_ << "\n"
              << "stress: files opened and closed " << opens_
              << "; link requests answered in order " << media_info_answered_ + updates_answered_
              << " (media information " << media_info_answered_ << ", updates " << updates_answered_
              << ")\n";
  }

  TempFolder folder_;
  command_server::CommandServer server_;
  std::unique_ptr<host_sim::HostSession> session_;
  int32_t file_type_ = 0;
  std::vector<std::unique_ptr<Clip>> clips_;
  const StandInTone tone_{kRate, 2};

  std::atomic<bool> stop_{false};
  std::atomic<int64_t> progress_{0};
  std::atomic<int64_t> planar_frames_{0}, packed_frames_{0}, frames_failed_{0};
  std::atomic<int64_t> sound_reads_{0}, sequential_reads_{0}, sample_frames_checked_{0};
  std::atomic<int64_t> opens_{0}, extra_descriptions_{0};
  std::atomic<int64_t> media_info_answered_{0}, updates_answered_{0};

  std::mutex faults_mutex_;
  std::vector<std::string> faults_;  // guarded by faults_mutex_; the first few, to be shown
  int64_t fault_count_ = 0;          // guarded by faults_mutex_
};

TEST_F(StressTest, EveryAnswerIsRightUnderLoadFaultsAndAFloodedLink) {
  ASSERT_NO_FATAL_FAILURE(OpenClips());
  const Clock::time_point start = Clock::now();
  std::promise<void> finished;
  std::thread watchdog(
      [this, hang = finished.get_future()]() mutable { Watchdog(std::move(hang)); });
  std::vector<std::thread> threads;
  for (uint64_t seed = 1; seed <= kHostThreads; ++seed) {
    threads.emplace_back([this, seed] { HostThread(seed); });
  }
  threads.emplace_back([this] { OpeningThread(); });
  threads.emplace_back([this] { FloodLink(); });
  std::this_thread::sleep_for(RunTime());
  stop_ = true;
  for (std::thread& thread : threads) thread.join();
  const auto elapsed = std::chrono::round<std::chrono::seconds>(Clock::now() - start);
  finished.set_value();
  watchdog.join();

  EXPECT_EQ(fault_count_, 0) << ::testing::PrintToString(faults_);
  EXPECT_GT(media_info_answered_ + updates_answered_, 0);
  for (auto& clip : clips_) EXPECT_EQ(clip->file->Close(), imNoErr);
  CheckHostBalance();
  PrintFigures(elapsed);
  CheckLog();
}

}  // namespace
