#pragma once

#include "systeminfo/privacy/privateValues.h"
#include "tools/record/recordedValue.h"

namespace norvex::Tool {

/// Is shown what a recording holds, and may change it.
class RecordingVisitor
{
public:
    virtual ~RecordingVisitor();

    /// A key of a dictionary, before its value.
    virtual void visitKey(QByteArray& key) = 0;
    /// Anything but a dictionary or an array.
    /// @param privateKind what the keys around the value say of it
    virtual void visit(RecordedValue& value, Privacy::PrivateKind privateKind) = 0;
};

/// Shows all that a recording holds to a visitor, but for the names of classes and the format's own keys.
void visitRecording(RecordedValue& recording, RecordingVisitor& visitor);

} // namespace norvex::Tool
