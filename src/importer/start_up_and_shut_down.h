// The host's start-up (selector 0) and shut-down (selector 1) of the whole plug-in.
#pragma once

#include <cstdint>

#include "host_sdk/premiere_importer.h"

// Starts the sockets layer and the CommandClient thread and fills the capability record.
// `start_sockets` is the sockets start-up to use. Always returns 0: neither a failed sockets
// start-up nor a failed thread start stops the host from using the importer.
int32_t StartUp(const imStdParms* std_parms, imImportInfoRec* capabilities,
                bool (*start_sockets)());

// Stops the CommandClient thread and the sockets layer. Open files stay open. Returns 0.
int32_t ShutDown();
