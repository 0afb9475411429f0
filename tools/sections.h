#pragma once

#include "systeminfo/norvexSystemInfo.h"

namespace norvex::Tool {

/// The name that stands for all sections of the Macintosh half.
extern const char macintoshName[];

/// The report's sections. They are the library's, but for qtPrinterInfo: printerSection() makes it, so call
/// startToAskForPrinters() before.
const QVector<SystemInfo::SectionInfo>& reportSections();

/// What --section can name, in the order of --list-sections: the whole Macintosh section, then the report's sections.
const QVector<SystemInfo::SectionInfo>& namedSections();

/// The report as SystemInfo::allInfos() makes it, of these of its sections. A half without any is left out.
QString reportOf(const QVector<SystemInfo::SectionInfo>& sections);

/// The banner, sections and separators of the Macintosh half alone.
QString macintoshHalf(const QVector<SystemInfo::SectionInfo>& sections);

/// A short report of this machine with what identifies it. It holds no text that a user or a server can choose, and waits
/// for nothing outside.
QString identifyingReport();

} // namespace norvex::Tool
