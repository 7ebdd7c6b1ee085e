// What every benchmark of the plug-in's costs stands on: a profile folder of the program's own
// (the plug-in logs there, and its log lines are part of what it costs), and the built plug-in file
// loaded and started once, as the host does it, with clips opened through it. Host frames are
// recycled, so that the host's allocation does not hide the plug-in's cost.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "host_sim/host_file.h"
#include "host_sim/host_session.h"
#include "host_sim/plugin_module.h"
#include "stitcher_api/pr_source.h"
#include "support/temp_folder.h"

constexpr PrPixelFormat kPlanarFormat = 0x46317659;

// Points USERPROFILE, HOMEDRIVE and HOMEPATH at a fresh profile folder with AppData\Local and no
// port file. Call once, first thing in main.
void UseBenchProfile();

class BenchHost {
 public:
  // Loads and starts the plug-in on first use.
  static BenchHost& Get();
  // Shuts the plug-in down if it was started; the program's last call.
  static void ShutDown();

  host_sim::Host& host() { return session_.host(); }
  host_sim::HostSession& session() { return session_; }

  // A clip with `project` as its stand-in project text, opened and described; it stays open.
  host_sim::HostFile* OpenClip(const std::string& project);

  // The native path of a clip made by OpenClip.
  static std::string PathOf(const host_sim::HostFile& clip);

 private:
  BenchHost();

  TempFolder folder_;
  host_sim::PluginModule plugin_;
  host_sim::HostSession session_;
  std::vector<std::unique_ptr<host_sim::HostFile>> clips_;
};

// For benchmarks timed by hand, where the host's bookkeeping between iterations must not count.
inline double Seconds(std::chrono::steady_clock::duration elapsed) {
  return std::chrono::duration<double>(elapsed).count();
}

// A clip of `width` x `width / 2` with the stand-in's cheapest picture ("render": "flat"), so that
// what remains of a frame's time is the plug-in's and the host's work; one per width, kept open.
host_sim::HostFile* FlatClipOfWidth(int64_t width);

// The stand-in's source of a clip, asked directly, as a stitcher's own cost is measured, and a
// host frame of the clip's flat width for it to write into.
class DirectSource {
 public:
  explicit DirectSource(const host_sim::HostFile& clip);
  // With a planar host frame of `width` x `width / 2` made for `WriteFrame`.
  DirectSource(const host_sim::HostFile& clip, int32_t width);
  ~DirectSource();
  DirectSource(const DirectSource&) = delete;
  DirectSource& operator=(const DirectSource&) = delete;

  PRSource* operator->() { return source_.get(); }

  // Frame `index` written straight into the host frame; the library's result.
  int32_t WriteFrame(int64_t index);

 private:
  std::shared_ptr<PRSource> source_;
  int32_t width_ = 0;
  PPixHand frame_ = nullptr;  // disposed with the source
  uint8_t* planes_[3] = {nullptr, nullptr, nullptr};
  int strides_[3] = {0, 0, 0};
};
