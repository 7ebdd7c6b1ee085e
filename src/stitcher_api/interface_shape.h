// The stitching library's calls and record exactly as the plug-in calls and copies them, checked
// at compile time against whichever declaration of the library was included before this header:
// the plug-in's own, or the maker's header when QUORVEL_STITCHER_INCLUDE_DIR names its folder. A
// difference here is a difference the linker or the running plug-in would otherwise meet.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>

static_assert(std::is_same_v<decltype(&PrSourceFactory::Create),
                             std::shared_ptr<PRSource> (*)(const std::string&, MediaInfo*)>,
              "PrSourceFactory::Create");
static_assert(
    std::is_same_v<decltype(&PrSourceFactory::Destroy), void (*)(std::shared_ptr<PRSource>&)>,
    "PrSourceFactory::Destroy");
static_assert(std::is_same_v<decltype(&PRSource::GetVideoFrame),
                             int32_t (PRSource::*)(int64_t, int32_t, int32_t, uint8_t**, int*)>,
              "PRSource::GetVideoFrame");
static_assert(std::is_same_v<decltype(&PRSource::GetAudioFrame),
                             int32_t (PRSource::*)(int64_t, int64_t, float**)>,
              "PRSource::GetAudioFrame");
static_assert(std::is_same_v<decltype(&PRSource::Update), bool (PRSource::*)()>,
              "PRSource::Update");
// 58 bytes of packed numbers and flags, then the offset text.
static_assert(sizeof(MediaInfo) == 58 + sizeof(std::string), "MediaInfo's size");
