// The checks of one file's frames, without knowing what the pictures should look like: every
// visible row written, nothing written outside the host's buffer, the same bytes on a second
// fetch, and a repeated request answered from the host's cache. Each runs for the planar YUV 4:2:0
// format and for packed BGRA, at the clip's size.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host_sim/host_file.h"
#include "host_sim/host_session.h"
#include "qvo_host/check/check_journal.h"
#include "qvo_host/check/profile_log.h"

namespace host_sim {

// The first, the last, the middle and `random_count` more picked at random (with a fixed seed, so
// that a run can be repeated), in order, each once; none for a clip without frames.
std::vector<int64_t> FramesToCheck(int64_t frame_count, int32_t random_count);

// Fetches `frames` of `file` in both formats and adds one line per check and format; the times of
// the fetches that stitched, and each fetch as a call, go to the journal. `log` is the run's log.
// REQUIRES: `file` opened and described; nothing else asks for frames meanwhile.
void CheckFrames(HostSession& session, HostFile* file, const std::string& name,
                 const std::vector<int64_t>& frames, const ProfileLog& log, CheckJournal* journal);

}  // namespace host_sim
