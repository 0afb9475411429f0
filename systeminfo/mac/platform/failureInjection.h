#pragma once

/// @file
/// Failure injection for tests. Each function of the layer that can fail on a Mac calls callFails() once and fails when
/// that is true. It may ask the machine first, and it may refuse bad arguments without the call. Functions that count
/// references, and those that make objects of numbers and data (CFNumberCreate, CFDataCreate), never fail and take no
/// part.

#include <cstdint>

namespace norvex {

/// Counts calls from 0 again and chooses the one that fails.
/// @param number which call from now on, counted from 1; 0 for none
void failCall(std::int64_t number);

/// The number of calls since failCall().
std::int64_t countedCalls();

/// Counts a call, and says whether it is the one that fails.
bool callFails();

} // namespace norvex
