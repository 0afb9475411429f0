#pragma once

#include "systeminfo/norvexSystemInfo.h"

#include <QByteArray>

namespace norvex::Tool {

/// What --section can name, in the order of --list-sections: the whole Macintosh section, then the report's sections.
/// These are the library's, but for qtPrinterInfo: printerSection() makes it, so call startToAskForPrinters() before.
const QVector<SystemInfo::SectionInfo>& namedSections();

/// The report as SystemInfo::allInfos() makes it, of these sections.
QString wholeReport(bool skipOpenGL);

/// A short report of this machine with what identifies it. It holds no text that a user or a server can choose, and waits
/// for nothing outside.
QString identifyingReport();

/// The section of that name, letter case counts; null when there is none.
const SystemInfo::SectionInfo* findSection(const QByteArray& name);

} // namespace norvex::Tool
