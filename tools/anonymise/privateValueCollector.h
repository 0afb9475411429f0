#pragma once

#include "systeminfo/privacy/pseudonymMap.h"
#include "tools/record/recordedValue.h"

#include <QString>

namespace norvex::Tool {

/// Collects what identifies a machine, its networks and its users: by the keys of properties, and by the shape of
/// values. The recording stays as it is.
/// @param hostName of the recorded machine; empty if it is unknown
/// @param userName of who uses it; empty if it is unknown
void collectPrivateValues(RecordedValue& recording, const QString& hostName, const QString& userName,
                          Privacy::PseudonymMap& pseudonyms);

} // namespace norvex::Tool
