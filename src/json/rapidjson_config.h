// The one configuration of rapidjson in this project, given to every target that uses it before
// any rapidjson header: its assertions stay active in every build type, so a broken assumption
// about a document (a request that is not an object, a member that is not a string) stops the
// process with the failed condition named, as the command server's contract has always had it.
#pragma once

#include <cstdio>
#include <cstdlib>

#define RAPIDJSON_ASSERT(condition)                                                            \
  ((condition) ? static_cast<void>(0)                                                          \
               : (std::fprintf(stderr, "Assertion failed: %s, file %s, line %d\n", #condition, \
                               __FILE__, __LINE__),                                            \
                  std::abort()))
