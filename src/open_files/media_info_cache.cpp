#include "open_files/media_info_cache.h"

MediaInfoCacheMap& MediaInfoCache() {
  static MediaInfoCacheMap cache;
  return cache;
}

void PublishMediaInfo(const std::string& utf8_path, const MediaInfo& media) {
  MediaInfoCache().emplace(utf8_path, media);
}

bool LookUpMediaInfo(const std::string& utf8_path, MediaInfo* media, size_t* entries) {
  const MediaInfoCacheMap& cache = MediaInfoCache();
  auto entry = cache.find(utf8_path);
  if (entry == cache.end()) return false;
  *media = entry->second;
  *entries = cache.size();
  return true;
}
