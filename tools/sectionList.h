#pragma once

#include "tools/terminal.h"

#include <QString>

namespace norvex::Tool {

/// What --section can name, a name a line.
QString sectionList();

/// The same for a person: names and descriptions in columns, then the topics.
QString describedSectionList(const Painter& painter);

} // namespace norvex::Tool
