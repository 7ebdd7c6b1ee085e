// The CommandClient thread: it keeps the link to the maker's desktop command server and ends
// when StopFlag is set.
#pragma once

#include <atomic>
#include <cstdint>

// Set by the host's shut-down; the thread looks at it at the start of every pass and before
// every pause.
extern std::atomic<bool> StopFlag;

// The thread function handed to std::thread by the host's start-up.
void CommandClient();

// The pause between two passes of the loop, in milliseconds.
constexpr int32_t kCommandLoopPauseMs = 2500;

// Shortens the pause for tests; the plug-in file does not export it, so the host cannot reach it.
void SetCommandLoopPauseForTesting(int32_t milliseconds);
