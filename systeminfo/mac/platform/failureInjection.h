#pragma once

/// @file
/// Failure injection: every call of the layer that can fail asks here first.

#include <cstdint>

namespace norvex {

/// Starts counting anew and makes one call fail.
/// @param number which call from now on, counted from 1; 0 for none
void failCall(std::int64_t number);

/// How many calls that can fail were made since failCall().
std::int64_t countedCalls();

/// Counts a call; true when it is the one to fail.
bool callFails();

} // namespace norvex
