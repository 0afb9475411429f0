#pragma once

namespace norvex {

/// getValueForKeyInPropertyList() with exceptions: std::bad_alloc passes through, so -2 always means that the file
/// has no such string.
int propertyListValue(const char* plistPath, const char* keyPath, char* buffer, int bufferSize);

} // namespace norvex
