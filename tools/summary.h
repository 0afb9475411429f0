#pragma once

#include <QString>

namespace norvex {
namespace SystemInfo {
class CReport;
}
} // namespace norvex

namespace norvex::Tool {

/// A report in a few lines, for a mail or a chat: system, model, processor, memory, graphics, disks, screens, Qt and
/// OpenGL, as far as the report tells. It holds no serial number, address or name of a user, and what does not print is
/// escaped.
/// @param hasOtherMachine the Macintosh half describes another machine than the rest; the lines about this machine
///        then say so
QString summaryOf(const SystemInfo::CReport& report, bool hasOtherMachine);

} // namespace norvex::Tool
