#pragma once

#include "systeminfo/norvexSystemInfo.h"

#include <QByteArray>

namespace norvex::Tool {

/// What --section can name, in the order of --list-sections: the whole Macintosh section, then the report's sections.
const QVector<SystemInfo::SectionInfo>& namedSections();

/// The section of that name, letter case counts; null when there is none.
const SystemInfo::SectionInfo* findSection(const QByteArray& name);

} // namespace norvex::Tool
