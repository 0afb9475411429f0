#pragma once

#include "tools/record/recordedValue.h"

#include <QString>

namespace norvex::Tool {

/// Replaces what identifies a machine, its networks and its users, the same value by the same replacement
/// wherever it stands. Names of classes and of properties stay.
/// @param hostName of the machine that was recorded; empty when that is not known
void anonymise(RecordedValue& recording, const QString& hostName);

} // namespace norvex::Tool
