// What compilers spell differently. A compiler that has no word for one of these does without.
#pragma once

// Lets the compiler check a printf-style call; `self` counts as the first argument of a member function.
#if defined(__clang__)
#define ZQ_PRINTF_FORMAT(formatIndex, firstIndex) __attribute__((format(printf, formatIndex, firstIndex)))
#elif defined(__GNUC__)
#define ZQ_PRINTF_FORMAT(formatIndex, firstIndex) __attribute__((format(gnu_printf, formatIndex, firstIndex)))
#else
#define ZQ_PRINTF_FORMAT(formatIndex, firstIndex)
#endif

// Around the one place where a format is a caller's, which ZQ_PRINTF_FORMAT has checked there.
#if defined(__GNUC__)
#define ZQ_BEGIN_CALLERS_FORMAT \
    _Pragma("GCC diagnostic push") _Pragma("GCC diagnostic ignored \"-Wformat-nonliteral\"")
#define ZQ_END_CALLERS_FORMAT _Pragma("GCC diagnostic pop")
#else
#define ZQ_BEGIN_CALLERS_FORMAT
#define ZQ_END_CALLERS_FORMAT
#endif
