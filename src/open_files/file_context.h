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
  // Guards `source`, `media_info` and `ppix2_suite`: held across every re-creation of the source,
  // every read on it and the first frame's suite acquisition. The exceptions the design keeps are
  // said at each field.
  std::mutex mutex;

  // Set by open before the context is listed, read-only after: no guard needed.
  std::string path;       // the host's path in the system code page; given to the stitcher
  std::string utf8_path;  // the key of the file's MediaInfoCache entry

  // Guarded by mutex. Empty once released. Unguarded on purpose in two places: the command link's
  // update calls Update on it under the registry's list mutex only, so it may run while a host
  // thread reads a frame of the same file; and close releases it without the mutex, which the host
  // never does while it still reads the file.
  std::shared_ptr<PRSource> source;

  // Guarded by mutex; refilled by every Create. File information copies it without the mutex on
  // purpose: a re-creation meanwhile refills it with the same values from the same project file.
  MediaInfo media_info;

  // Guarded by mutex while the first frame request acquires it; null until then. Released by close
  // without the mutex.
  PrSDKPPix2Suite* ppix2_suite = nullptr;

  // Written by every file-information request and released by close, without a lock: the host
  // asks for a file's information, and closes it, from one thread at a time.
  PrSDKAudioSuite* audio_suite = nullptr;

  // Borrowed from the private record by the file-information request, without a lock, so that the
  // command link can have the host expire its cached frames; the link reads it under the
  // registry's list mutex only, and a request for information meanwhile writes the same pointer.
  PrSDKPPixCacheSuite* cache_suite = nullptr;
};
