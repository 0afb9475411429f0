#pragma once

/// @file
/// What decides which names leave the library.

/// Marks what the library exports; everything else stays hidden in it.
#define NORVEX_SYSTEMINFO_EXPORT __attribute__((visibility("default")))
