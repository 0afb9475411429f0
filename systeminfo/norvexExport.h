#pragma once

/// @file
/// Marks what the library exports; everything else stays hidden in it.
#define NORVEX_SYSTEMINFO_EXPORT __attribute__((visibility("default")))
