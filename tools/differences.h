#pragma once

#include "tools/terminal.h"

#include "systeminfo/norvexReport.h"

#include <QByteArray>
#include <QString>
#include <QVector>

namespace norvex::Tool {

using Differences = QVector<SystemInfo::CReportDifference>;

/// What differs between two reports.
/// @param withVolatile whether what always differs is shown and counts
Differences differencesBetween(const SystemInfo::CReport& older, const SystemInfo::CReport& newer,
                               bool withVolatile);

/// The differences for a person: the name of each section, and below it a line for each difference, or several where it
/// has several lines. What does not print is escaped.
QString differencesText(const Differences& differences, const Painter& painter);

/// The differences for a program, as docs/json.md describes them.
QByteArray differencesJson(const Differences& differences);

} // namespace norvex::Tool
