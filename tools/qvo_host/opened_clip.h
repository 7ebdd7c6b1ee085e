// A clip made ready the way the host does before it asks for anything: the registered file type
// picked by the extension, then the file opened and described.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "host_sim/host_file.h"
#include "host_sim/host_session.h"

namespace host_sim {

// The file opened (imOpenFile8) and described (imGetInfo8). Null, with `error` naming the step
// that failed and its result, when either fails; the file is then already closed, also after a
// failed open that left private data, so that the plug-in can free it.
// REQUIRES: session.FileTypes() has been asked.
std::unique_ptr<HostFile> OpenDescribedClip(HostSession& session, const std::string& native_path,
                                            std::string* error);

// The private records that the plug-in kept, allocated and locked, after answering an open in this
// process with a failure: it keeps them on purpose when the library's Create fails.
int64_t RecordsKeptByFailedOpens();

// imQuietFile, then imCloseFile, as the host ends its use of a file.
void QuietAndClose(HostFile* file);

}  // namespace host_sim
