#include "command_link_faults/link_fault_fixture.h"

#include <algorithm>
#include <filesystem>
#include <thread>

#include "platform/environment.h"
#include "support/plugin_log_file.h"

namespace {

using namespace std::chrono_literals;

constexpr int32_t kInterfaceVersion = 23;

// One pause of the command thread and one connect time-out, with a margin for a loaded machine.
// A bound on waiting, not a measure of speed.
constexpr auto kShutDownBound = 6s;

constexpr char kTrafficClip[] =
    R"({"width": 64, "height": 32, "frames": 30, "fps": 30, "audio": {"rate": 3000, "channels": 2}})";

// "2026-11-16 04:33:19 ERROR " and "... INFO  ": the message starts after the date, the time and
// the level word with its blank.
constexpr size_t kMessageColumn = 26;
constexpr char kLineTail[] = " SDK_File_Import:";

// Plugin.log and the files rotation moved aside, oldest first: their time-stamped names sort in
// time, and before "Plugin.log".
std::vector<std::filesystem::path> LogFiles(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
    const std::string name = entry.path().filename().string();
    if (name.rfind("Plugin.", 0) == 0 && name.size() > 4 && name.substr(name.size() - 4) == ".log")
      files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

void AddMessages(const std::string& text, const std::string& start,
                 std::vector<std::string>* messages) {
  size_t line_start = 0;
  while (line_start < text.size()) {
    size_t line_end = text.find('\n', line_start);
    if (line_end == std::string::npos) line_end = text.size();
    const size_t tail = text.rfind(kLineTail, line_end);
    const size_t message = line_start + kMessageColumn;
    if (tail != std::string::npos && tail >= message &&
        text.compare(message, start.size(), start) == 0) {
      messages->push_back(text.substr(message + start.size(), tail - message - start.size()));
    }
    line_start = line_end + 1;
  }
}

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
  std::vector<std::string> messages;
  for (const auto& file : LogFiles(PluginLogFolder(profile_.path())))
    AddMessages(ReadWholeFile(file), start, &messages);
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
