#pragma once

#include "tools/record/recordedValue.h"

#include "systeminfo/mac/frameworks.h"

namespace norvex::Tool {

struct RegistryRecording
{
    RecordedValue root;        ///< the entry with all below it; empty without a registry
    RecordedValue deviceFiles; ///< the paths of the serial ports' files that exist
};

/// Records everything in the registry's service plane. An entry with several parents stands below the first of them.
RegistryRecording recordRegistry();

/// The characters of a string as XML can hold them; empty if the string gives none.
QByteArray recordedText(CFStringRef string);

} // namespace norvex::Tool
