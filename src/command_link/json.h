// rapidjson as the command link uses it: its assertions stay active in every build, so a request
// that is not an object, or a member that is not a string, stops the process with the failed
// condition named, as the command server's contract has always had it.
#pragma once

#include <cstdio>
#include <cstdlib>

#ifndef RAPIDJSON_ASSERT
#define RAPIDJSON_ASSERT(condition)                                                            \
  ((condition) ? static_cast<void>(0)                                                          \
               : (std::fprintf(stderr, "Assertion failed: %s, file %s, line %d\n", #condition, \
                               __FILE__, __LINE__),                                            \
                  std::abort()))
#endif

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
