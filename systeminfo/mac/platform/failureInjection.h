#pragma once

/// @file
/// Failure injection. A call of the layer that can fail on a Mac calls callFails() once and then fails when told to;
/// some calls ask the machine before, or refuse bad arguments without it. Calls that count references, and those that
/// make objects of numbers and data (CFNumberCreate, CFDataCreate), always succeed and do not take part.

#include <cstdint>

namespace norvex {

/// Starts to count calls again and makes one of them fail.
/// @param number which of the following calls fails, counted from 1; 0 for none
void failCall(std::int64_t number);

/// The number of calls since failCall().
std::int64_t countedCalls();

/// Counts a call; true when this is the call that fails.
bool callFails();

} // namespace norvex
