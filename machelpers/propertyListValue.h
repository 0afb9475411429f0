#pragma once

namespace norvex {

/// What getValueForKeyInPropertyList() returns.
enum class PropertyListResult : int {
    Found = 0,
    NoFile = -1,
    NoString = -2, ///< at the key path
    BufferTooSmall = -3,
};

/// getValueForKeyInPropertyList() for callers that let exceptions pass: NoString means that the file has no such
/// string, never that memory ran out.
PropertyListResult propertyListValue(const char* plistPath, const char* keyPath, char* buffer,
                                     int bufferSize);

} // namespace norvex
