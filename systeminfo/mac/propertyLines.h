#pragma once

/// @file
/// Tables of report lines that show one property each.

#include "systeminfo/mac/ioRegistry.h"
#include "systeminfo/sectionText.h"

#include <QString>

#include <optional>

namespace norvex::SystemInfo::MacSysInfo {

/// The kind that a property must have, and how it prints. A value of another kind gives no line.
enum class PropertyKind {
    String, ///< a string, as CFStringToQString gives it
    YesNo,  ///< a boolean
    Int32,  ///< a number stored as a signed 32-bit integer, in decimal
    Size,   ///< a number stored as a signed 64-bit integer, as a disk size in bytes
    Bytes   ///< data, as pairs of hexadecimal digits joined by colons
};

/// A line of a section: the label with its blanks, and the property that it shows.
struct PropertyLine
{
    const char* label;
    const char* key;
    PropertyKind kind;
};

/// The text of a value; nothing when it is absent or of another kind.
std::optional<QString> propertyText(const PropertyValue& value, PropertyKind kind);

/// "Yes" or "No".
QString yesNo(bool value);

/// Appends a line with a string in quotes, as fastString() gives it; nothing for a value that is no string.
void appendQuotedString(Internal::SectionText& section, const char* label, const PropertyValue& value);

/// The line behind each USB device and serial port, without its end.
QString deviceSeparator();

/// Appends the lines of a table whose properties the dictionary has.
template <typename Table>
void appendPropertyLines(Internal::SectionText& section, CFDictionaryRef properties, const Table& table)
{
    for (const PropertyLine& line : table) {
        section.line(line.label, propertyText(valueIn(properties, line.key), line.kind));
    }
}

} // namespace norvex::SystemInfo::MacSysInfo
