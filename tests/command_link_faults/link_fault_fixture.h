// Each test loads the built plug-in file into a profile of its own, has a misbehaving command
// server listen at the port in that profile's port file, starts the plug-in, and shuts it down
// and unloads it at the end: the plug-in never clears its stop flag, so one load starts once.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "command_link_faults/host_traffic.h"
#include "command_server/command_server.h"
#include "host_sim/host_file.h"
#include "host_sim/host_session.h"
#include "host_sim/plugin_module.h"
#include "support/environment.h"
#include "support/temp_folder.h"

// Long enough for one pass of the command thread, its pause and a connect time-out, with room.
constexpr std::chrono::milliseconds kLinkWait = std::chrono::seconds(10);

// True when `done` holds within `timeout`, asked every 100 ms.
bool WaitUntil(const std::function<bool()>& done, std::chrono::milliseconds timeout);

class LinkFaultTest : public ::testing::Test {
 protected:
  // Points USERPROFILE, HOMEDRIVE and HOMEPATH at a fresh profile, where the plug-in logs and
  // finds its port file.
  LinkFaultTest();

  // Ends what the test left running, in the order the host ends it.
  void TearDown() override;

  // The profile folder, where a server writes its port file.
  std::string home() const { return profile_.path().string(); }

  // Loads the plug-in file and starts it up, as the host does once per load.
  void StartPlugin();

  // A stand-in clip with `project` as its text, opened and described.
  host_sim::HostFile* OpenClip(const std::string& project);

  // The path of a clip as the plug-in knows it, and as a request names it.
  static std::string PathOf(const host_sim::HostFile& clip);

  // Starts a host thread fetching frames and sound of a clip of its own, which it returns.
  const host_sim::HostFile& StartHostTraffic();

  // The usual start: `server`'s port in the port file, the plug-in started, the host thread
  // running and the plug-in connected to `server` (the tool's command server or a raw peer).
  template <typename Server>
  void StartLinkedTo(Server& server) {
    ASSERT_TRUE(server.WritePortFile(home()));
    ASSERT_NO_FATAL_FAILURE(StartPlugin());
    StartHostTraffic();
    ASSERT_TRUE(server.WaitForConnection(kLinkWait));
  }

  // Checks that the host thread is served while the fault lasts.
  void ExpectHostServedMeanwhile();

  // Stops the host thread, shuts the plug-in down and unloads it, checking that shut-down
  // returns within one pause of the command thread and one connect time-out.
  void ShutDownAndUnload();

  // The messages of every Plugin.log line, rotated files first, whose message begins with
  // `start`, without that beginning.
  std::vector<std::string> Logged(const std::string& start) const;

  // True when Logged(start) has `count` entries within `timeout`.
  bool WaitForLogged(const std::string& start, size_t count, std::chrono::milliseconds timeout);

 private:
  void CloseClips();

  SavedEnvironment saved_environment_{{"USERPROFILE", "HOMEDRIVE", "HOMEPATH"}, false};
  TempFolder profile_;
  TempFolder clip_folder_;
  std::unique_ptr<host_sim::PluginModule> plugin_;
  std::unique_ptr<host_sim::HostSession> session_;
  std::vector<std::unique_ptr<host_sim::HostFile>> clips_;
  std::unique_ptr<HostTraffic> traffic_;
  bool shut_down_ = false;
};
