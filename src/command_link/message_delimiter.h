// Every message on the command link, request or response, is followed by this delimiter.
#pragma once

#include <cstddef>

constexpr char kMessageDelimiter[] = "###";
constexpr size_t kMessageDelimiterSize = sizeof(kMessageDelimiter) - 1;
