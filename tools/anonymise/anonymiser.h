#pragma once

#include "tools/record/recordedValue.h"

#include <QString>

namespace norvex::Tool {

/// Replaces what identifies a machine, its networks and its users. A value has the same replacement wherever it stands.
/// Names of classes and properties stay.
/// @param hostName of the recorded machine; empty if it is unknown
/// @param userName of who uses it; empty if it is unknown
void anonymise(RecordedValue& recording, const QString& hostName, const QString& userName);

} // namespace norvex::Tool
