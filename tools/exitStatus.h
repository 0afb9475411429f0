#pragma once

namespace norvex::Tool {

const int exitSuccess = 0;
const int exitFailure = 1; ///< the work could not be done
const int exitUsage = 2;   ///< wrong usage

// --compare has statuses of its own, as comparing programs do.
const int exitDifferent = 1; ///< the reports differ
const int exitTrouble = 2;   ///< they could not be compared

} // namespace norvex::Tool
