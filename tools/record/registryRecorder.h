#pragma once

#include "tools/record/recordedValue.h"

#include "systeminfo/mac/frameworks.h"

namespace norvex::Tool {

struct RegistryRecording
{
    RecordedValue root;        ///< the entry with all below it; empty without a registry
    RecordedValue deviceFiles; ///< the paths of the serial ports' files that exist
};

/// Everything in the registry's service plane. An entry with several parents stands below the first of them.
RegistryRecording recordRegistry();

/// A string's characters, as far as XML can hold them; empty when the string gives none.
QByteArray recordedText(CFStringRef string);

} // namespace norvex::Tool
