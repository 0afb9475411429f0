#pragma once

#include <QString>
#include <QStringList>

namespace norvex {
namespace SystemInfo {
class CReport;
}
} // namespace norvex

namespace norvex::Tool {

/// The sections that summaryOf() reads, so that nobody asks the others for it.
const QStringList& summarySections();

/// A report in a few lines, for a mail or a chat: system, model, processor, memory, graphics, disks, screens, Qt and
/// OpenGL, as far as the report tells. It holds no serial number, address or name of a user, and what does not print is
/// escaped.
/// @param hasOtherMachine the Macintosh half describes another machine than the rest; the lines about this machine
///        then say so
QString summaryOf(const SystemInfo::CReport& report, bool hasOtherMachine);

} // namespace norvex::Tool
