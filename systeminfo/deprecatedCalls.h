#pragma once

/// @file
/// Switches off warnings about deprecated interfaces between the two macros. The oldest systems and versions of Qt that
/// the library supports have nothing newer in place of these interfaces.

#define NORVEX_DEPRECATED_CALLS_BEGIN                                                                        \
    _Pragma("GCC diagnostic push") _Pragma("GCC diagnostic ignored \"-Wdeprecated-declarations\"")
#define NORVEX_DEPRECATED_CALLS_END _Pragma("GCC diagnostic pop")
