#pragma once

#include "systeminfo/norvexReport.h"

#include <QByteArray>
#include <QString>

namespace norvex::Tool {

/// The name of a report's file in messages.
QString shownName(const QByteArray& fileName);

/// Reads a file whole; it waits for a pipe as long as somebody may still write to it.
/// @param fileName "-" for standard input
/// @param[out] errorMessage receives file and reason when that fails
bool readFile(const QByteArray& fileName, QByteArray& bytes, QString& errorMessage);

/// The report in a file that was read: text in UTF-8 or, with a byte-order mark, in UTF-16, or the JSON that CReport
/// makes. A byte-order mark is no part of the report. For bytes that are no text U+FFFD stands in it, and standard
/// error has a notice.
/// @param fileName for messages
/// @param[out] errorMessage receives file, place and reason when JSON is no report
bool parseReport(const QByteArray& fileName, const QByteArray& bytes, SystemInfo::CReport& report,
                 QString& errorMessage);

} // namespace norvex::Tool
