// Compiler annotations that have no standard spelling.
#pragma once

#if defined(__GNUC__)
// Lets the compiler check printf-style log calls against their arguments.
#define QUORVEL_PRINTF_FORMAT(format_index, first_arg) \
  __attribute__((format(printf, format_index, first_arg)))
#else
#define QUORVEL_PRINTF_FORMAT(format_index, first_arg)
#endif

// Keeps a function a frame of its own in every stack, reading its own memory (GCC would otherwise
// move a pointer argument's loads into the caller), so that the race checker's suppressions can
// name the few places where the design keeps a data race.
#if defined(__clang__)
#define QUORVEL_NOINLINE __attribute__((noinline))
#elif defined(__GNUC__)
#define QUORVEL_NOINLINE __attribute__((noipa))
#elif defined(_MSC_VER)
#define QUORVEL_NOINLINE __declspec(noinline)
#else
#define QUORVEL_NOINLINE
#endif
