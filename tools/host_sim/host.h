// The host's side of the importer interface in one object: the allocator, the suite account, the
// frames and the frame cache behind the host's function tables, and the standard parameters that
// lead the plug-in to them.
//
// The host's C tables carry no context pointer, so their functions reach the host through one
// process-wide current-host pointer: constructing a Host makes it current, destroying it clears
// the pointer, and only one Host exists at a time. The tables themselves are shared by every Host
// and live as long as the process, so a plug-in that kept a table from an earlier Host reaches
// the current one, or, with none current, gets the failure answers and null blocks.
#pragma once

#include <cstdint>

#include "host_sdk/premiere_importer.h"
#include "host_sim/frame_cache.h"
#include "host_sim/host_frames.h"
#include "host_sim/host_memory.h"
#include "host_sim/host_report.h"
#include "host_sim/suite_registry.h"

namespace host_sim {

// The newest interface version the host declarations know.
constexpr int32_t kNewestInterfaceVersion = 23;

class Host {
 public:
  // Becomes the current host; throws std::logic_error when another Host is current.
  // `interface_version` is what imStdParms::imInterfaceVer reports.
  explicit Host(int32_t interface_version = kNewestInterfaceVersion);
  // Destroy only after the plug-in has shut down: its threads may still call in until then.
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  // Handed to the plug-in with every selector; valid while the Host lives.
  imStdParms* std_parms() { return &std_parms_; }

  HostMemory& memory() { return memory_; }
  SuiteRegistry& suites() { return suites_; }
  HostFrames& frames() { return frames_; }
  FrameCache& frame_cache() { return frame_cache_; }

  // What the plug-in has left behind or done wrong so far.
  HostReport Report() const;

 private:
  HostMemory memory_;
  SuiteRegistry suites_;
  HostFrames frames_;
  FrameCache frame_cache_{frames_};  // after frames_, which it holds references into
  imCallbackFuncs callback_functions_{};
  piSuites pi_suites_{};
  imStdParms std_parms_{};
};

// The current Host, or null. Any thread.
Host* CurrentHost();

}  // namespace host_sim
