#pragma once

#include <QByteArray>

namespace norvex::Tool {

/// What a value says of one machine, its network or its user, as far as its key tells.
enum class Identity {
    None,
    Serial,  ///< a serial number, or another value that one machine alone has, such as a token
    Address, ///< a hardware address or an identifier that begins with its maker's number
    Uuid,
    Name,    ///< of a network, a host, a user or a device that users name
    Label,   ///< the name of a volume
    Display, ///< a display's identification data
    Constant ///< looks like an identifier, but is the same on all machines
};

/// By the key of a property.
Identity identityOf(const QByteArray& key);

/// Whether a volume has this name on many machines.
bool isCommonLabel(const QByteArray& label);

} // namespace norvex::Tool
