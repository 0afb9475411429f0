#include "systeminfo/norvexSystemInfo.h"

#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/norvexNetworkIfInfo.h"
#include "systeminfo/scanOpenGLInfo.h"

namespace norvex::SystemInfo {

namespace {

constexpr int majorVersion = 1;
constexpr int minorVersion = 2;
constexpr int patchVersion = 171;

using Section = QString (*)();

// The Qt part of the report, in its order.
const Section qtSections[] = {
    qtDateTime,          qtGlobal,          qtCoreApplication, qtLocale,   qtScreens,
    qtDesktop,           qtDesktopServices, qtPrinterInfo,     qtHostInfo, NetworkInfo::allInfos,
    qtSystemEnvironment,
};

} // namespace

QString sNewLine = QStringLiteral("\n");

QString allInfos(bool skipOpenGL)
{
    QString report = MacSysInfo::allInfos();
    report += QLatin1String("###### System informations retrieved using Qt #######") + sNewLine;
    for (const Section section : qtSections) {
        report += section() + separator();
    }
    if (!skipOpenGL) {
        CScanOpenGLInfo probe(nullptr);
        QString openGLInfo;
        probe.getInfo(openGLInfo);
        report += openGLInfo + separator();
    }
    return report;
}

QString separator()
{
    return QString(72, QLatin1Char('-')) + sNewLine;
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
