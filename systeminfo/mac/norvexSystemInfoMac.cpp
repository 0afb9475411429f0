#include "systeminfo/mac/norvexSystemInfoMac.h"

#include "systeminfo/reportHalf.h"
#include "systeminfo/reportTexts.h"

namespace norvex::SystemInfo::MacSysInfo {

QString sNewLine = QStringLiteral("\n");

QString separator()
{
    return QString(Internal::separatorLength, QLatin1Char('-')) + sNewLine;
}

QString allInfos()
{
    return Internal::reportHalf(ReportHalf::Macintosh, {Internal::macintoshBanner, sNewLine, separator()});
}

} // namespace norvex::SystemInfo::MacSysInfo
