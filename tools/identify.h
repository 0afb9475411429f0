#pragma once

#include <QByteArray>
#include <QString>

namespace norvex::Tool {

/// The name of a report's file in messages.
QString shownName(const QByteArray& fileName);

/// Reads the text of a report from a file.
/// @param fileName "-" for standard input
/// @param[out] report the text, decoded from UTF-8; a byte-order mark is no part of it
/// @param[out] errorMessage receives file and reason when that fails
bool readReport(const QByteArray& fileName, QString& report, QString& errorMessage);

/// What identifies the machine that a report describes, as the tool prints it.
/// @param[out] text lines, or a JSON object in one line
/// @param[out] errorMessage receives what the report lacks when that fails
bool identify(const QString& report, bool skipBraced, bool asJson, QByteArray& text, QString& errorMessage);

} // namespace norvex::Tool
