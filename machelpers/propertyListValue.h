#pragma once

namespace norvex {

/// getValueForKeyInPropertyList() for callers that let exceptions pass: -2 means that the file has no such
/// string, never that memory ran out.
int propertyListValue(const char* plistPath, const char* keyPath, char* buffer, int bufferSize);

} // namespace norvex
