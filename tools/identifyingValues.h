#pragma once

#include "tools/recordedValue.h"

#include <QList>

namespace norvex::Tool {

constexpr int addressSize = 6;
constexpr int extendedAddressSize = 8;
constexpr int uuidSize = 16;

/// Whether an integer under the key of a serial number is one. Small ones are numbers of something else.
bool isSerialNumber(const RecordedValue& integer);
/// An integer in decimal, without a sign.
QByteArray decimal(const RecordedValue& integer);
/// The hardware address that an integer holds; empty when it is too small for one.
QByteArray addressOf(const RecordedValue& integer);
/// The addresses in data of at least 6 bytes: one of 8, several of 6, or one of 6 before something else.
QList<QByteArray> addressesIn(const QByteArray& data);
/// The bytes of hexadecimal digits with or without separators; empty for any other text.
QByteArray hexBytesOf(const QByteArray& text);
/// The texts between the zero bytes of data; none when it holds anything but ASCII text.
QList<QByteArray> textsIn(const QByteArray& data);

/// The serial numbers in a display's identification data (EDID) that are texts.
QList<QByteArray> displaySerials(const QByteArray& data);
/// Overwrites the serial number that is a number, and mends the checksum.
void cleanDisplayData(QByteArray& data);

} // namespace norvex::Tool
