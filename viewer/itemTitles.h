#pragma once

#include "systeminfo/norvexReport.h"

#include <QString>

namespace norvex::Viewer {

/// Text for one line: without line feeds and double blanks, and with an ellipsis behind so many characters.
QString oneLine(const QString& text, int mostCharacters);

/// The half that a banner begins; its own words if it is none of those known.
QString titleOfHalf(const SystemInfo::CReportItem& banner);

/// What people call a section: its heading or, without one, its subject.
QString titleOf(const SystemInfo::CReportSection& section);

/// What people call a device: its model, and what tells it from others of that model.
QString titleOf(const SystemInfo::CReportBlock& block);

} // namespace norvex::Viewer
