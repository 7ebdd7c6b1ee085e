// Integration tests drive the built plug-in file through the host simulator. The plug-in is
// loaded and started once for the whole program and shut down at its end; each test gets a fresh
// host session and its own project files.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "command_server/command_server.h"
#include "host_sim/host_file.h"
#include "host_sim/host_session.h"
#include "host_sim/plugin_module.h"
#include "support/plugin_log_file.h"
#include "support/temp_folder.h"

template <typename T>
T ReadAt(const void* bytes, size_t offset) {
  T value;
  std::memcpy(&value, static_cast<const char*>(bytes) + offset, sizeof(T));
  return value;
}

class PluginTest : public ::testing::Test {
 protected:
  void SetUp() override;

  // Closes every clip, so that no test sees another's files in the plug-in's registry.
  void TearDown() override;

  // A project file of its own with `project` as its text, known to the host but not opened.
  // The fixture owns the clip.
  host_sim::HostFile* Clip(const std::string& project);

  // A clip opened and described, or a failed expectation.
  host_sim::HostFile* DescribedClip(const std::string& project);

  // The native path of a clip made by Clip.
  std::string PathOf(const host_sim::HostFile& clip) const;

  // A field of the sample file header at the start of the file's private record.
  template <typename T>
  static T HeaderField(const host_sim::HostFile& clip, size_t offset) {
    return ReadAt<T>(*static_cast<char**>(clip.private_data()), offset);
  }

  template <typename T>
  static T InfoField(const host_sim::HostFile& clip, size_t offset) {
    return ReadAt<T>(clip.info().record(), offset);
  }

  host_sim::Host& host() { return session_->host(); }

  // The command server the plug-in connects to; it is listening from the program's start.
  static command_server::CommandServer& Server();

  // Everything the plug-in has written to its Plugin.log.
  static std::string LogText();

  std::unique_ptr<host_sim::HostSession> session_;
  TempFolder folder_;

 private:
  std::vector<std::unique_ptr<host_sim::HostFile>> clips_;
};
