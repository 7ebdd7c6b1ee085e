#include "command_link_faults/link_fault_fixture.h"

#include <filesystem>
#include <thread>

#include "platform/environment.h"
#include "qvo_host/log_parsing.h"
#include "support/plugin_log_file.h"

namespace {

using namespace std::chrono_literals;

constexpr int32_t kInterfaceVersion = 23;

// One pause of the command thread and one connect time-out, with a margin for a loaded machine.
// A bound on waiting, not a measure of speed.
constexpr auto kShutDownBound = 6s;

constexpr char kTrafficClip[] =
    R"({"width": 64, "height": 32, "frames": 30, "fps": 30, "audio": {"rate": 3000, "channels": 2}})";

}  // namespace

LinkFaultTest::LinkFaultTest() {
  std::filesystem::create_directories(profile_.path() / "AppData" / "Local");
  platform::SetEnvironment("USERPROFILE", home());
  SetHomeDriveAndPath(home());
}

void LinkFaultTest::TearDown() {
  if (session_ && !shut_down_) ShutDownAndUnload();
}

void LinkFaultTest::StartPlugin() {
  plugin_ = std::make_unique<host_sim::PluginModule>(host_sim::DefaultPluginPath());
  ASSERT_TRUE(plugin_->loaded()) << plugin_->error();
  session_ = std::make_unique<host_sim::HostSession>(*plugin_, kInterfaceVersion);
  imImportInfoRec capabilities;
  ASSERT_EQ(session_->StartUp(&capabilities), imNoErr);
  int32_t last_result = 0;
  session_->FileTypes(&last_result);
}

host_sim::HostFile* LinkFaultTest::OpenClip(const std::string& project) {
  const std::string path =
      clip_folder_.WriteFile("clip" + std::to_string(clips_.size() + 1) + ".qvo", project);
  clips_.push_back(std::make_unique<host_sim::HostFile>(*session_, path,
                                                        session_->FileTypeFor(path)->file_type));
  host_sim::HostFile* clip = clips_.back().get();
  EXPECT_EQ(clip->Open(), imNoErr);
  EXPECT_EQ(clip->GetInfo(), imNoErr);
  return clip;
}

std::string LinkFaultTest::PathOf(const host_sim::HostFile& clip) {
  // The host hands "\\?\" and the native path.
  return std::filesystem::path(clip.host_path().substr(4)).u8string();
}

const host_sim::HostFile& LinkFaultTest::StartHostTraffic() {
  host_sim::HostFile* clip = OpenClip(kTrafficClip);
  traffic_ = std::make_unique<HostTraffic>(*session_, *clip);
  return *clip;
}

void LinkFaultTest::ExpectHostServedMeanwhile() {
  ASSERT_TRUE(traffic_);
  EXPECT_TRUE(traffic_->ServedMore(4, kLinkWait)) << "the host's requests stalled";
  EXPECT_EQ(traffic_->failures(), 0);
}

void LinkFaultTest::ShutDownAndUnload() {
  if (traffic_) traffic_->Stop();
  CloseClips();
  const auto shutting_down = std::chrono::steady_clock::now();
  EXPECT_EQ(session_->ShutDown(), imNoErr);
  EXPECT_LT(std::chrono::steady_clock::now() - shutting_down, kShutDownBound);
  shut_down_ = true;
  traffic_.reset();
  clips_.clear();
  session_.reset();
  EXPECT_TRUE(plugin_->Unload());
}

void LinkFaultTest::CloseClips() {
  for (auto& clip : clips_) {
    if (clip->private_data() != nullptr) {
      EXPECT_EQ(clip->Close(), imNoErr);
    }
  }
}

std::vector<std::string> LinkFaultTest::Logged(const std::string& start) const {
  host_sim::ParsedLog log;
  for (const auto& file : PluginLogFiles(profile_.path())) {
    host_sim::ParsePluginLog(ReadWholeFile(file), &log);
  }
  std::vector<std::string> messages;
  for (const host_sim::LogEntry& entry : log.entries) {
    if (entry.message.compare(0, start.size(), start) == 0) {
      messages.push_back(entry.message.substr(start.size()));
    }
  }
  return messages;
}

bool LinkFaultTest::WaitForLogged(const std::string& start, size_t count,
                                  std::chrono::milliseconds timeout) {
  return WaitUntil([&] { return Logged(start).size() >= count; }, timeout);
}

bool WaitUntil(const std::function<bool()>& done, std::chrono::milliseconds timeout) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  while (!done()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(100ms);
  }
  return true;
}
