// Compiler annotations that have no standard spelling.
#pragma once

#if defined(__GNUC__)
// Lets the compiler check printf-style log calls against their arguments.
#define QUORVEL_PRINTF_FORMAT(format_index, first_arg) \
  __attribute__((format(printf, format_index, first_arg)))
#else
#define QUORVEL_PRINTF_FORMAT(format_index, first_arg)
#endif
