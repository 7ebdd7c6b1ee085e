#include "integration/plugin_fixture.h"

#include <filesystem>
#include <optional>
#include <regex>

#include "platform/environment.h"

namespace {

constexpr int32_t kInterfaceVersion = 23;

host_sim::PluginModule* plugin = nullptr;
command_server::CommandServer* server = nullptr;
// Where the plug-in settled its log at start-up; the test main points USERPROFILE elsewhere later.
std::filesystem::path* plugin_profile = nullptr;

// Start-up and shut-down run once: shut-down waits for the command thread's pause. The plug-in's
// profile is a folder of the program's own, where it logs; the command server is listening, with
// its port in the port file there, before the plug-in starts, as it is when the maker's
// application runs beside the host.
class PluginEnvironment : public ::testing::Environment {
 public:
  void SetUp() override {
    const std::string home = home_.path().string();
    std::filesystem::create_directories(home_.path() / "AppData" / "Local");
    platform::SetEnvironment("USERPROFILE", home);
    plugin_profile = new std::filesystem::path(home_.path());
    SetHomeDriveAndPath(home);
    server = new command_server::CommandServer();
    ASSERT_TRUE(server->WritePortFile(home));

    plugin = new host_sim::PluginModule(host_sim::DefaultPluginPath());
    ASSERT_TRUE(plugin->loaded()) << plugin->error();
    host_sim::HostSession starting(*plugin, kInterfaceVersion);
    imImportInfoRec capabilities;
    starting.StartUp(&capabilities);
    // The command thread logs first and connects on its first pass: once it is connected, the
    // plug-in's log has settled in this profile, whatever the environment says later.
    ASSERT_TRUE(server->WaitForConnection(std::chrono::seconds(10)));
  }

  // The plug-in stays loaded to the program's end, as in a host that quits without unloading it:
  // the records it keeps on purpose for the life of its load are then still known by name to the
  // leak checker, which lets them be.
  void TearDown() override {
    {
      host_sim::HostSession stopping(*plugin, kInterfaceVersion);
      stopping.ShutDown();
    }
    delete server;
    delete plugin_profile;
  }

 private:
  TempFolder home_;
};

const auto* const environment = ::testing::AddGlobalTestEnvironment(new PluginEnvironment);

}  // namespace

command_server::CommandServer& PluginTest::Server() { return *server; }

void PluginTest::SetUp() {
  session_ = std::make_unique<host_sim::HostSession>(*plugin, kInterfaceVersion);
  int32_t last_result = 0;
  session_->FileTypes(&last_result);
  log_start_ = PluginLogText(*plugin_profile).size();
}

void PluginTest::TearDown() {
  for (auto& clip : clips_) {
    if (clip->private_data() != nullptr) clip->Close();
  }
  EXPECT_EQ(host().Report().frame_faults, std::vector<std::string>{})
      << "the plug-in misused a host frame or wrote outside one";
}

host_sim::HostFile* PluginTest::Clip(const std::string& project) {
  std::string path =
      folder_.WriteFile("clip" + std::to_string(clips_.size() + 1) + ".qvo", project);
  clips_.push_back(std::make_unique<host_sim::HostFile>(*session_, path,
                                                        session_->FileTypeFor(path)->file_type));
  return clips_.back().get();
}

host_sim::HostFile* PluginTest::DescribedClip(const std::string& project) {
  host_sim::HostFile* clip = Clip(project);
  EXPECT_EQ(clip->Open(), imNoErr);
  EXPECT_EQ(clip->GetInfo(), imNoErr);
  return clip;
}

bool PluginTest::Logged(const std::string& pattern) const {
  const std::string written = PluginLogText(*plugin_profile).substr(log_start_);
  const std::regex line("(^|\\n)\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d " + pattern + "\\r?\\n");
  return std::regex_search(written, line);
}

std::string PluginTest::Literal(const std::string& text) {
  return std::regex_replace(text, std::regex(R"([.^$|()\[\]{}*+?\\])"), R"(\$&)");
}

std::string PluginTest::PathOf(const host_sim::HostFile& clip) const {
  // The host hands "\\?\" and the native path.
  const std::u16string& wide = clip.host_path();
  return std::filesystem::path(wide.substr(4)).u8string();
}
