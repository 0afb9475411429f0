#include "systeminfo/buildFacts.h"
#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/mac/sysctlGestalt.h"
#include "systeminfo/sectionText.h"

#include <QtGlobal>

#include <cstdio>
#include <ctime>

namespace norvex::SystemInfo::MacSysInfo {

using namespace Internal;

namespace {

QString versionText()
{
    const auto majorVersion = gestaltValue(gestaltSelector("sys1"));
    const auto minorVersion = majorVersion ? gestaltValue(gestaltSelector("sys2")) : std::nullopt;
    const auto bugFixVersion = minorVersion ? gestaltValue(gestaltSelector("sys3")) : std::nullopt;
    if (!bugFixVersion) {
        return QString();
    }
    const QString version =
        QStringLiteral("%1.%2.%3").arg(*majorVersion).arg(*minorVersion).arg(*bugFixVersion);
    const QString name = osVersionName(*majorVersion, *minorVersion, *bugFixVersion);
    return name.isEmpty() ? version : version + QStringLiteral(" (%1)").arg(name);
}

/// The boot time as ctime() writes it, without the line feed. ctime() itself has one buffer for all threads, and is not
/// defined for years after 9999.
std::optional<QString> bootTimeText()
{
    static const char* const days[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    static const char* const months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                         "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const auto started = bootTime();
    std::tm time = {};
    tzset();
    if (!started || localtime_r(&*started, &time) == nullptr) {
        return std::nullopt;
    }
    char text[64];
    std::snprintf(text, sizeof text, "%s %s%3d %.2d:%.2d:%.2d %lld", days[time.tm_wday], months[time.tm_mon],
                  time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec, 1900LL + time.tm_year);
    return QString::fromLatin1(text);
}

QString architectureName(std::int32_t code)
{
    switch (code) {
    case 1: return QStringLiteral("68k");
    case 2: return QStringLiteral("PowerPC");
    case 10: return QStringLiteral("Intel");
    default: return QStringLiteral("unknown (%1)").arg(code);
    }
}

} // namespace

QString osVersion(bool asReportLine)
{
    if (asReportLine) {
        return QLatin1String("MacOS version: ") + versionText() + sNewLine;
    }
    return QLatin1String("MacOS ") + versionText();
}

QString platformName()
{
    return osVersion(false);
}

QString osVersionName(int majorVersion, int minorVersion, int /*bugFixVersion*/)
{
    static const char* const names[] = {"Cheetah",  "Puma",         "Jaguar", "Panther",       "Tiger",
                                        "Leopard",  "Snow Leopard", "Lion",   "Mountain Lion", "Mavericks",
                                        "Yosemite", "El Capitan",   "Sierra", "High Sierra",   "Mojave"};
    const bool isNamed =
        majorVersion == 10 && minorVersion >= 0 && minorVersion < int(sizeof names / sizeof *names);
    return isNamed ? QString::fromLatin1(names[minorVersion]) : QString();
}

QString kernelInfo()
{
    return SectionText(sNewLine)
        .line("Kernel information:")
        .line("Build: ", sysctlText("kern.osversion"))
        .line("Version: ", sysctlText("kern.version"))
        .line("Boottime: ", bootTimeText())
        .line("Kernel Arch.: ", sysctlText("hw.machine"))
        .text();
}

QString macModel()
{
    return SectionText(sNewLine).line("Model: ", sysctlText("hw.model")).text();
}

QString architecture()
{
    SectionText section(sNewLine);
    if (const auto code = gestaltValue(gestaltSelector("sysa"))) {
        section.line("Mac System Architecture: ", architectureName(*code));
    }
    return section.line("Architecture of executed binary: ", QString::fromLatin1(executedArchitecture))
        .text();
}

} // namespace norvex::SystemInfo::MacSysInfo
