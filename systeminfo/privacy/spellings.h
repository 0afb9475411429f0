#pragma once

#include <QString>
#include <QStringList>

namespace norvex::Privacy {

/// "Zoë's Mac" as the name of a host or a serial port: "Zoes-Mac".
QString asFileName(const QString& text, QChar separator);

constexpr int waysToSpell = 10;
constexpr int waysToSpellNames = 11; ///< with the one that cuts names of hosts

/// The text as programs write it in paths and in addresses.
/// @param way 0: as it is, up to, but not including, waysToSpellNames
QString spelled(const QString& text, int way);

/// What all spellings of a name have in common.
QString commonSpelling(const QString& text);

} // namespace norvex::Privacy
