#pragma once

#include "systeminfo/norvexSystemInfo.h"

namespace norvex::SystemInfo::Internal {

/// What the frame of a report's half is made of; each namespace has its own.
struct HalfFrame
{
    const char* banner;
    QString newLine;
    QString separator;
};

/// A half of the report: its banner line, then the groups of its sections, each with a separator behind it.
/// @param withOpenGL false leaves out the section "openGL"
/// @param table the report's sections
QString reportHalf(ReportHalf half, const HalfFrame& frame, bool withOpenGL = true,
                   const QVector<SectionInfo>& table = sections());

} // namespace norvex::SystemInfo::Internal
