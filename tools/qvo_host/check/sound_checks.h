// The checks of one file's sound: runs at the start, in the middle and across the end, and
// sequential reads with negative positions. Every channel buffer is filled with a sentinel and
// is longer than asked, so that samples left unwritten and samples written past the count show.
#pragma once

#include <string>

#include "host_sim/host_file.h"
#include "qvo_host/check/check_journal.h"

namespace host_sim {

// Adds one line per check; a file without sound gets one line saying so.
// REQUIRES: `file` opened and described.
void CheckSound(HostFile* file, const std::string& name, CheckJournal* journal);

}  // namespace host_sim
