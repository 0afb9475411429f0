#pragma once

/// @file
/// What tells one machine, its networks and its users from others: by the key of a property, and by the shape of
/// a value.

#include <QByteArray>
#include <QList>

#include <cstdint>

namespace norvex::Privacy {

/// The kind of private value that a property holds, as its key tells.
enum class PrivateKind {
    None,
    Serial,  ///< a serial number, or another value that one machine alone has, such as a token
    Address, ///< a hardware address or an identifier that begins with its maker's number
    Uuid,
    Name,    ///< of a network, a host, a user or a device that users name
    Label,   ///< the name of a volume
    Display, ///< a display's identification data
    Constant ///< looks like an identifier, but is the same on all machines
};

/// The kind by the key of a property.
PrivateKind privateKindOf(const QByteArray& key);

/// Whether a volume has this name on many machines.
bool isCommonLabel(const QByteArray& label);

constexpr int addressSize = 6;
constexpr int extendedAddressSize = 8;
constexpr int uuidSize = 16;

/// Whether an integer under the key of a serial number is one. Small integers number something else.
bool isSerialNumber(std::uint64_t number);
/// The hardware address that an integer holds; empty if it is too small for one.
QByteArray addressOf(std::uint64_t number);
/// The addresses in data of at least 6 bytes: one of 8, several of 6, or one of 6 before something else.
QList<QByteArray> addressesIn(const QByteArray& data);
/// The bytes of hexadecimal digits with or without separators; empty for any other text.
QByteArray hexBytesOf(const QByteArray& text);
/// The texts between the zero bytes of data; none if it holds anything but ASCII text.
QList<QByteArray> textsIn(const QByteArray& data);

/// The serial numbers in a display's identification data (EDID) that are texts.
QList<QByteArray> displaySerials(const QByteArray& data);
/// Overwrites the serial number that is a number, and mends the checksum.
void cleanDisplayData(QByteArray& data);

} // namespace norvex::Privacy
