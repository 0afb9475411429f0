#pragma once

/// @file
/// What tells one machine, its networks and its users from others: by the key of a property, and by the shape of
/// a value.

#include <QByteArray>
#include <QList>
#include <QString>

#include <cstdint>

namespace norvex::Privacy {

/// The kind of private value that a property holds, as its key tells.
enum class PrivateKind {
    None,
    Serial,  ///< a serial number, or another value that one machine alone has, such as a token
    Address, ///< a hardware address or an identifier that begins with its maker's number
    Uuid,
    Name,    ///< of a device that users name
    Network, ///< the name of a wireless network
    Printer, ///< the name of a printer
    Person,  ///< a user's name
    Host,    ///< the name or address of a machine
    Domain,  ///< the name of a network's domain
    IpAddress,
    Addresses,   ///< a list of IP addresses, where names can stand in those of interfaces alone
    Interface,   ///< the name of a network interface, in which names that people give can stand
    Label,       ///< the name of a volume, a shared folder or a group of volumes
    Display,     ///< a display's identification data
    MountSource, ///< what a volume is mounted from
    MountPoint,
    Path,          ///< of a file or folder; several may stand between colons or semicolons
    HomeFolder,    ///< the path of a user's home
    Folder,        ///< a name in a home folder that no system gives
    DisplayServer, ///< "host:0"
    SerialPort,    ///< the device file of a serial port, or its name
    BluetoothPort, ///< the same of a port that a Bluetooth device offers
    Product,       ///< the name of a device by its maker, in which its owner's may stand, but no volume's
    Token,         ///< anything: the value of a variable that nobody knows
    Model,         ///< a model, a maker or a class, where no name that people give can stand
    Constant       ///< looks like an identifier, but is the same on all machines
};

/// The kind by the key of a property.
PrivateKind privateKindOf(const QByteArray& key);

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
/// The text that data holds in UTF-16, of either byte order; empty if it holds none.
QString utf16TextOf(const QByteArray& data);
/// The texts between the zeros of data in UTF-8 or UTF-16; none if it holds anything but text.
QList<QByteArray> textsIn(const QByteArray& data);

} // namespace norvex::Privacy
