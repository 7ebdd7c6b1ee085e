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

// Adds `media` under `utf8_path`; an entry already there stays as it is. Host threads call it.
void PublishMediaInfo(const std::string& utf8_path, const MediaInfo& media);

// A copy of the entry of `utf8_path` into `*media`, and the entries there are into `*entries`;
// false when the path has none. The command link's I/O thread calls it.
bool LookUpMediaInfo(const std::string& utf8_path, MediaInfo* media, size_t* entries);
