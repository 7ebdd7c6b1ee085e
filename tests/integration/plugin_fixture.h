// Integration tests drive the built plug-in file through the host simulator. The plug-in is
// loaded and started once for the whole program and shut down at its end; each test gets a fresh
// host session and its own project files.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "command_server/command_server.h"
#include "host_sim/host_file.h"
#include "host_sim/host_session.h"
#include "host_sim/plugin_module.h"
#include "sample_file/sample_file_header.h"
#include "support/plugin_log_file.h"
#include "support/temp_folder.h"

// The one pixel format the plug-in announces: planar 8-bit YUV 4:2:0.
constexpr PrPixelFormat kPlanar = 0x46317659;

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

  // The sample file header at the start of the file's private record.
  static const SampleFileHeader& Header(const host_sim::HostFile& clip) {
    return *reinterpret_cast<const SampleFileHeader*>(*static_cast<char**>(clip.private_data()));
  }

  // The file-information record as the plug-in left it. REQUIRES: GetInfo has been called.
  static const imFileInfoRec8& Info(const host_sim::HostFile& clip) {
    return *clip.info().record();
  }

  host_sim::Host& host() { return session_->host(); }

  // The command server the plug-in connects to; it is listening from the program's start.
  static command_server::CommandServer& Server();

  // Whether a whole line written to Plugin.log since the test began matches `pattern`
  // (ECMAScript), which stands for what follows the time stamp.
  bool Logged(const std::string& pattern) const;

  // `text` with every character that a pattern would take as special escaped.
  static std::string Literal(const std::string& text);

  std::unique_ptr<host_sim::HostSession> session_;
  TempFolder folder_;

 private:
  std::vector<std::unique_ptr<host_sim::HostFile>> clips_;
  size_t log_start_ = 0;
};
