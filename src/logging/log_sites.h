// The line number that each log call site shows after "SDK_File_Import:". They are fixed, not
// __LINE__, so that lines read the same from release to release and support can find a message
// by its number.
#pragma once

#include <cstdint>

namespace log_site {

// Start-up and shut-down.
constexpr int32_t kWsaStartupFailure = 118;
constexpr int32_t kCommandThreadStartFailure = 131;
constexpr int32_t kShuttingDown = 163;

// Files.
constexpr int32_t kOpenFile = 856;
constexpr int32_t kPRSourceFailed = 862;
constexpr int32_t kCloseSourceFile = 905;
constexpr int32_t kGetFileInfoError = 1032;
constexpr int32_t kCleanUpResource = 1605;
constexpr int32_t kResetFileContext = 1621;
constexpr int32_t kRemoveContext = 1640;

// Sound.
constexpr int32_t kAudioContextMissing = 1411;
constexpr int32_t kAudioSourceRecreateFailed = 1418;

// Pictures.
constexpr int32_t kGetBuffer = 2201;
constexpr int32_t kAllocateBuffer = 2212;
constexpr int32_t kVideoContextMissing = 2265;
constexpr int32_t kGetSourceVideo = 2269;
constexpr int32_t kVideoSourceRecreateFailed = 2276;
constexpr int32_t kReadFrameConsume = 2284;
constexpr int32_t kReadFrameResult = 2285;
constexpr int32_t kSecondTryResult = 2293;

// Command link.
constexpr int32_t kCommandThreadStart = 2410;

}  // namespace log_site
