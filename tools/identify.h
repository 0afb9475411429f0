#pragma once

#include <QByteArray>
#include <QString>

namespace norvex::Tool {

/// What identifies the machine that a report describes, as the tool prints it.
/// @param[out] text lines, or a JSON object in one line
/// @param[out] errorMessage receives what the report lacks when that fails
bool identify(const QString& report, bool skipBraced, bool asJson, QByteArray& text, QString& errorMessage);

} // namespace norvex::Tool
