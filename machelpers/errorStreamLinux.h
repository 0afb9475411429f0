#pragma once

/// @file
/// Writes to standard error on Linux, without harm from a reader that is slow or gone.

namespace norvex {

/// Writes a text and a line feed to standard error. The lines of several threads do not mix.
///
/// Waits up to 100 ms for a reader that falls behind; what does not fit by then is lost. A pipe that nobody reads any
/// more raises no SIGPIPE. There is nowhere to report a failure. May throw std::bad_alloc before it writes.
void writeErrorLine(const char* text);

} // namespace norvex
