#pragma once

#include "tools/record/recordedValue.h"

namespace norvex::Tool {

/// What this machine answers to the queries behind the Macintosh section: the root of a recording.
RecordedValue recordMachine();

} // namespace norvex::Tool
