#pragma once

#include "tools/identities.h"
#include "tools/recordedValue.h"

#include <QString>

namespace norvex::Tool {

/// Finds what identifies a machine, its networks and its users: by the keys of properties, by the shape of
/// values, and in the sources of mounted volumes. The recording stays as it is.
/// @param hostName of the machine that was recorded; empty when that is not known
void collectIdentities(RecordedValue& recording, const QString& hostName, Identities& identities);

} // namespace norvex::Tool
