#include "systeminfo/mac/executedArchitecture.h"
#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/mac/sysctlGestalt.h"

#include <QtGlobal>

#include <cstdio>
#include <ctime>

namespace norvex::SystemInfo::MacSysInfo {

namespace {

// The text with the value for %1 and a line end; nothing without a value.
QString line(const char* text, const std::optional<QString>& value)
{
    return value ? QString::fromLatin1(text).arg(*value) + sNewLine : QString();
}

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

// What ctime gives, for every year and without its shared buffer. The line feed at its end is the line's.
QString bootTimeLine()
{
    static const char* const days[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    static const char* const months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                         "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const auto started = bootTime();
    std::tm time = {};
    tzset();
    if (!started || localtime_r(&*started, &time) == nullptr) {
        return QString();
    }
    char text[64];
    std::snprintf(text, sizeof text, "%s %s%3d %.2d:%.2d:%.2d %lld\n", days[time.tm_wday],
                  months[time.tm_mon], time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec,
                  1900LL + time.tm_year);
    return QStringLiteral("Boottime: %1").arg(QLatin1String(text));
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
    return QLatin1String("Kernel information:") + sNewLine + line("Build: %1", sysctlText("kern.osversion")) +
           line("Version: %1", sysctlText("kern.version")) + bootTimeLine() +
           line("Kernel Arch.: %1", sysctlText("hw.machine"));
}

QString macModel()
{
    return line("Model: %1", sysctlText("hw.model"));
}

QString architecture()
{
    QString section;
    if (const auto code = gestaltValue(gestaltSelector("sysa"))) {
        section += QLatin1String("Mac System Architecture: ") + architectureName(*code) + sNewLine;
    }
    return section + QLatin1String("Architecture of executed binary: ") +
           QLatin1String(executedArchitecture) + sNewLine;
}

} // namespace norvex::SystemInfo::MacSysInfo
