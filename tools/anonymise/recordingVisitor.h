#pragma once

#include "systeminfo/privacy/privateValues.h"
#include "tools/record/recordedValue.h"

namespace norvex::Tool {

/// Sees what a recording holds, and may change it.
class RecordingVisitor
{
public:
    virtual ~RecordingVisitor();

    /// A key of a dictionary, before its value.
    virtual void visitKey(QByteArray& key) = 0;
    /// A value that is neither a dictionary nor an array.
    /// @param privateKind its kind, as the keys around it tell
    virtual void visit(RecordedValue& value, Privacy::PrivateKind privateKind) = 0;
};

/// Shows a visitor everything in a recording but the names of classes and the format's own keys.
void visitRecording(RecordedValue& recording, RecordingVisitor& visitor);

} // namespace norvex::Tool
