#pragma once

/// @file
/// Private values inside texts, found by their shape and by what the text is.

#include "systeminfo/privacy/privateValues.h"

#include <QString>

#include <vector>

namespace norvex::Privacy {

/// A private value inside a text.
struct PrivatePart
{
    PrivateKind kind; ///< Serial, Address, Uuid, Name, Person, Host, Label, IpAddress or Folder
    int start;
    int length;
};

/// The private parts of a text, in order. They do not overlap. Where the search fails, all of the text is one, a Folder.
/// @param kind of the text: MountSource, MountPoint, SerialPort, BluetoothPort and DisplayServer have parts of their
/// own. The text of any kind has those that their shape gives away: hardware addresses, UUIDs, security identifiers, home
/// folders and what is below them, `(user@host)`, `host.local`, volumes (`/Volumes/…`, `/dev/disk/by-label/…`). All but a
/// model have owners (`Alice's Keyboard`) and IP addresses, and None has what is assigned to a name (`password=1x2y`).
std::vector<PrivatePart> privatePartsOf(const QString& text, PrivateKind kind);

/// Whether an IPv4 or IPv6 address is one machine's: no loopback, mask or well-known group.
bool isPrivateIpAddress(const QString& text);

/// A user's name, and the words in it.
QStringList namesOfPerson(const QString& person);

/// The names that the name of a host holds: its first label, its domain or itself, the owner in `Alices-iMac`.
QStringList namesOfHost(const QString& host);

} // namespace norvex::Privacy
