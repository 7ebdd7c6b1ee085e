#include "open_files/media_info_cache.h"

MediaInfoCacheMap& MediaInfoCache() {
  static MediaInfoCacheMap cache;
  return cache;
}
