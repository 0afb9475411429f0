#pragma once

/// @file
/// Report lines that show one property each, as tables.

#include "systeminfo/mac/ioRegistry.h"

#include <QString>

#include <optional>

namespace norvex::SystemInfo::MacSysInfo {

/// What a property has to be, and how it prints. A value of another kind gives no line.
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

/// Appends label, text and line end; nothing without a text.
void appendLine(QString& section, const char* label, const std::optional<QString>& text);

/// "Yes" or "No".
QString yesNo(bool value);

/// Appends the lines of a table whose properties the dictionary has.
template <typename Table>
void appendPropertyLines(QString& section, CFDictionaryRef properties, const Table& table)
{
    for (const PropertyLine& line : table) {
        appendLine(section, line.label, propertyText(valueIn(properties, line.key), line.kind));
    }
}

} // namespace norvex::SystemInfo::MacSysInfo
