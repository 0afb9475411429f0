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
    PrivateKind kind; ///< Serial, Address, Uuid, Name, Person, Host or Label
    int start;
    int length;
};

/// The private parts of a text, in order. They do not overlap.
/// @param kind of the text: MountSource, MountPoint and SerialPort have parts of their own. The text of any kind has
/// those that their shape gives away: hardware addresses, UUIDs, home folders, `(user@host)`, `host.local`, owners
/// (`Alice's Keyboard`), volumes (`/dev/disk/by-label/…`).
std::vector<PrivatePart> privatePartsOf(const QString& text, PrivateKind kind);

/// A user's name, and the words in it.
QStringList namesOfPerson(const QString& person);

/// The names that the name of a host holds: its first label, its domain or itself, the owner in `Alices-iMac`.
QStringList namesOfHost(const QString& host);

} // namespace norvex::Privacy
