// The command handler: one parsed request of the command server in, the complete response bytes
// out. Runs on the command link's I/O thread, one request at a time.
#pragma once

#include <string>
#include <vector>

#include "command_link/json.h"
#include "open_files/context_registry.h"

// Answers "get_media_info" from the MediaInfoCache and "request_update_param" by updating the
// other files' sources; any other type is acknowledged with success. The result is the compact
// JSON response followed by "###". A request that is not an object, or whose "requestId",
// "type" or "filepath" is not a string, aborts the process (the JSON library's assertion).
std::vector<char> parseJson(const rapidjson::Document& request);

// For every listed context whose path differs from `filepath` and that has a source: updates the
// source and has the host expire its cached frames. The context named by `filepath` is the one
// left out, on purpose. Holds the registry's list mutex throughout; takes no context mutex.
void ExpireCacheAfterUpdate(ContextRegistry& registry, const std::string& filepath);
