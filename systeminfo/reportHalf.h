#pragma once

#include "systeminfo/norvexSystemInfo.h"

namespace norvex::SystemInfo::Internal {

/// The texts that frame a half of the report. Each half takes them from its own namespace.
struct HalfFrame
{
    const char* banner;
    QString newLine;
    QString separator;
};

/// A half of the report: its banner line, then the groups of its sections, each with a separator behind it.
/// @param table the report's sections, or some of them; those of the other half do not matter
QString reportHalf(ReportHalf half, const HalfFrame& frame, const QVector<SectionInfo>& table = sections());

/// The table of sections without "openGL".
QVector<SectionInfo> sectionsWithoutOpenGL();

} // namespace norvex::SystemInfo::Internal
