#pragma once

#include "tools/record/recordedValue.h"

namespace norvex::Tool {

/// Asks this machine all queries behind the Macintosh section.
/// @return the root of a recording
RecordedValue recordMachine();

} // namespace norvex::Tool
