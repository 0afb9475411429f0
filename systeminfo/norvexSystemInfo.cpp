#include "systeminfo/norvexSystemInfo.h"

#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/norvexVersion.h"
#include "systeminfo/reportHalf.h"
#include "systeminfo/reportTexts.h"

namespace norvex::SystemInfo {

QString sNewLine = QStringLiteral("\n");

QString allInfos(bool skipOpenGL)
{
    return MacSysInfo::allInfos() +
           Internal::reportHalf(ReportHalf::Qt, {Internal::qtBanner, sNewLine, separator()},
                                skipOpenGL ? Internal::sectionsWithoutOpenGL() : sections());
}

QString separator()
{
    return QString(Internal::separatorLength, QLatin1Char('-')) + sNewLine;
}

void libVersion(int& a, int& b, int& c)
{
    a = patchVersion;
    b = minorVersion;
    c = majorVersion;
}

QString libVersionString()
{
    return QStringLiteral("%1.%2.%3").arg(majorVersion).arg(minorVersion).arg(patchVersion);
}

QString platformName()
{
    return MacSysInfo::platformName();
}

} // namespace norvex::SystemInfo
