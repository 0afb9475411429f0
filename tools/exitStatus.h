#pragma once

namespace norvex::Tool {

const int exitSuccess = 0;
const int exitFailure = 1; ///< the work could not be done
const int exitUsage = 2;   ///< wrong usage

} // namespace norvex::Tool
