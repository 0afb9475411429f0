#pragma once

#include "tools/differences.h"
#include "tools/reportForms.h"

#include "systeminfo/norvexReport.h"

#include <QString>
#include <QVector>

namespace norvex::Tool {

/// Replaces what is private in a report. Its places stay.
/// @param[out] errorMessage receives the reason when the places cannot stay
bool redact(SelectedReport& selected, SystemInfo::CRedactor& redactor, QString& errorMessage);

/// Names on standard error what a person should read before it is sent, because only known values and shapes are
/// replaced there: the sections that are not in the table.
void printUnjudged(const SelectedReport& redacted);

/// The same for differences between redacted reports.
void printUnjudged(const QVector<SystemInfo::CReport>& redacted, const Differences& differences);

} // namespace norvex::Tool
