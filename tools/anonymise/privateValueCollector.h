#pragma once

#include "systeminfo/privacy/pseudonymMap.h"
#include "tools/record/recordedValue.h"

#include <QString>

namespace norvex::Tool {

/// Finds what identifies a machine, its networks and its users: by the keys of properties, by the shape of
/// values, and in the sources of mounted volumes. The recording stays as it is.
/// @param hostName of the machine that was recorded; empty when that is not known
void collectPrivateValues(RecordedValue& recording, const QString& hostName,
                          Privacy::PseudonymMap& pseudonyms);

} // namespace norvex::Tool
