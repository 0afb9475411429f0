#pragma once

/// @file
/// Some interfaces that are used on purpose are deprecated on later systems and in later versions of Qt, without a
/// successor on the oldest that are supported. Between these two they are used without a warning.

#define NORVEX_DEPRECATED_CALLS_BEGIN                                                                        \
    _Pragma("GCC diagnostic push") _Pragma("GCC diagnostic ignored \"-Wdeprecated-declarations\"")
#define NORVEX_DEPRECATED_CALLS_END _Pragma("GCC diagnostic pop")
