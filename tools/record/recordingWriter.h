#pragma once

#include "tools/record/recordedValue.h"

namespace norvex::Tool {

/// A text as XML can hold it. What is no character in XML becomes U+FFFD; an ASCII control character becomes a question
/// mark, because only ASCII strings have a direct C string.
QByteArray xmlText(const QByteArray& utf8);

/// The recording as a file: an XML property list, sized integers included.
QByteArray recordingText(const RecordedValue& recording);

} // namespace norvex::Tool
