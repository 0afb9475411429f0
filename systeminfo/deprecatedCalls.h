#pragma once

/// @file
/// The oldest supported systems and versions of Qt have only interfaces that later ones deprecate. Code between these
/// two macros uses such interfaces without a warning.

#define NORVEX_DEPRECATED_CALLS_BEGIN                                                                        \
    _Pragma("GCC diagnostic push") _Pragma("GCC diagnostic ignored \"-Wdeprecated-declarations\"")
#define NORVEX_DEPRECATED_CALLS_END _Pragma("GCC diagnostic pop")
