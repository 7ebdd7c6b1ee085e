// The importer's own record of one opened file.
#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "host_sdk/premiere_suites.h"
#include "stitcher_api/media_info.h"
#include "stitcher_api/pr_source.h"

// Made by a successful open and deliberately never freed: the host's private record keeps
// pointing at it after close, and the command link may still walk it.
struct FileContext {
  std::string path;       // the host's path in the system code page; given to the stitcher
  std::string utf8_path;  // the key of the file's MediaInfoCache entry

  // Acquired by the file-information request; null until then.
  PrSDKAudioSuite* audio_suite = nullptr;

  std::shared_ptr<PRSource> source;  // guarded by mutex; empty once released
  MediaInfo media_info;              // refilled by every Create

  // Acquired by the first frame request under mutex; null until then.
  PrSDKPPix2Suite* ppix2_suite = nullptr;

  // Borrowed from the private record by the file-information request, so that the command link
  // can have the host expire its cached frames.
  PrSDKPPixCacheSuite* cache_suite = nullptr;

  // Held across every re-creation of the source and every read on it.
  std::mutex mutex;
};
