#pragma once

#include "systeminfo/norvexReport.h"

#include <QByteArray>
#include <QString>
#include <QVector>

#include <optional>

namespace norvex::Tool {

class Selection;

/// A report and what is wanted of it.
struct SelectedReport
{
    SystemInfo::CReport report;
    std::optional<QVector<int>> places; ///< of its content(), in the wanted order; absent: all of it
};

/// What an output has of a report, in the order of the output.
SelectedReport selectedSections(const SystemInfo::CReport& report, const Selection& selection);

/// The wanted sections as a report: in their own order, with banners and separators.
SystemInfo::CReport selectedReport(const SystemInfo::CReport& report, const Selection& selection);

QString textOf(const SelectedReport& selected);

/// As docs/json.md describes it.
/// @param[out] errorMessage receives the reason when the report is too long for that
bool jsonOf(const SelectedReport& selected, QByteArray& json, QString& errorMessage);

/// In UTF-8. U+FFFD stands for half of a surrogate pair.
QByteArray toBytes(const QString& text);

} // namespace norvex::Tool
