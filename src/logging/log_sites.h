// The line number that each log call site shows after "SDK_File_Import:". They are fixed, not
// __LINE__, so that lines read the same from release to release and support can find a message
// by its number.
#pragma once

#include <cstdint>

namespace log_site {

// The entry point, start-up and shut-down.
constexpr int32_t kSelectorException = 96;
constexpr int32_t kWsaStartupFailure = 118;
constexpr int32_t kStitchingLibraryMissing = 124;
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
constexpr int32_t kParseJsonStream = 726;
constexpr int32_t kRequestId = 731;
constexpr int32_t kRequestType = 737;
constexpr int32_t kRequestFilePath = 745;
constexpr int32_t kSizeOfMap = 760;
constexpr int32_t kInvalidFilePath = 779;
constexpr int32_t kResponse = 798;
constexpr int32_t kExpireAllCache = 818;
constexpr int32_t kCommandThreadStart = 2410;
constexpr int32_t kHomeDriveMissing = 2432;
constexpr int32_t kHomePathMissing = 2438;
constexpr int32_t kReadMessageError = 2471;
constexpr int32_t kEmptyMessage = 2512;
constexpr int32_t kInvalidJson = 2523;
constexpr int32_t kReceivedJson = 2527;

}  // namespace log_site
