#pragma once

#include "tools/record/recordedValue.h"

namespace norvex::Tool {

/// A text as XML can hold it: what is no character there becomes U+FFFD, but an ASCII control character a
/// question mark, since only ASCII strings have a direct C string.
QByteArray xmlText(const QByteArray& utf8);

/// The recording as a file: an XML property list, sized integers included.
QByteArray recordingText(const RecordedValue& recording);

} // namespace norvex::Tool
