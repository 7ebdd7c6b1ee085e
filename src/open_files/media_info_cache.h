// Every file's MediaInfo, published under its UTF-8 path when the host reads the file's
// information, for the command link's "get_media_info".
#pragma once

#include <string>
#include <unordered_map>

#include "stitcher_api/media_info.h"

// It has no lock: the host's file-information request writes it while the command link's I/O
// thread may read it.
using MediaInfoCacheMap = std::unordered_map<std::string, MediaInfo>;

MediaInfoCacheMap& MediaInfoCache();
