// The checks of what the host learns about one file: picture size, time base, duration, spherical
// layout, sound and pixel formats, each held to values a host can use, without knowing what the
// clip should hold.
#pragma once

#include <string>

#include "host_sim/host_file.h"
#include "qvo_host/check/check_journal.h"

namespace host_sim {

// `name` leads every line. REQUIRES: `file` opened and described.
void CheckFileInformation(HostFile* file, const std::string& name, CheckJournal* journal);

}  // namespace host_sim
