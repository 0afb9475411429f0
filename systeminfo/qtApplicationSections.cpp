#include "systeminfo/buildFacts.h"
#include "systeminfo/norvexSystemInfo.h"
#include "systeminfo/qtSectionParts.h"
#include "systeminfo/sectionText.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QLocale>

namespace norvex::SystemInfo {

using Internal::SectionText;

namespace {

struct ApplicationRow
{
    const char* label;
    QString (*value)();
};

const ApplicationRow applicationRows[] = {
    {"Application Version:  ", QCoreApplication::applicationVersion},
    {"Application Name:     ", QCoreApplication::applicationName},
    {"Application DirPath:  ", QCoreApplication::applicationDirPath},
    {"Application FilePath: ", QCoreApplication::applicationFilePath},
    {"Application PID:      ", [] { return QString::number(QCoreApplication::applicationPid()); }},
    {"Organization Domain:  ", QCoreApplication::organizationDomain},
    {"Organization Name:    ", QCoreApplication::organizationName},
};

} // namespace

namespace Internal {

QString dateTimeLines(const QDateTime& localTime)
{
    const QString format = QStringLiteral("dd.MM.yyyy hh:mm:ss");
    const QString local = localTime.toString(format);
    const QString utc = localTime.toTimeSpec(Qt::UTC).toString(format);
    const int bias = -localTime.offsetFromUtc() / 60; // UTC minus local time, in minutes
    return SectionText(sNewLine)
        .line("Local Date and Time: ", local)
        .line("UTC   Date and Time: ", utc)
        .line(QStringLiteral("ActiveBias: %1 min").arg(bias))
        .text();
}

QString libraryPathLines(const QStringList& paths)
{
    const char* const label = "Library Paths:        ";
    const QString indent(static_cast<int>(qstrlen(label)), QLatin1Char(' '));
    return SectionText(sNewLine).line(label, paths.join(sNewLine + indent)).text();
}

QString measurementSystemName(QLocale::MeasurementSystem system)
{
    switch (system) {
    case QLocale::MetricSystem: return QStringLiteral("MetricSystem");
    case QLocale::ImperialUSSystem: return QStringLiteral("ImperialSystem");
    default: return QStringLiteral("unknown");
    }
}

} // namespace Internal

QString qtDateTime()
{
    return Internal::dateTimeLines(QDateTime::currentDateTime());
}

QString qtGlobal()
{
    return SectionText(sNewLine)
        .line("Qt Global")
        .line("Qt version this object was linked against: " QT_VERSION_STR)
        .line("Qt version currently used for execution:   ", QString::fromLatin1(qVersion()))
        .line(Internal::platformLine)
        .line("Endianess detected by Qt:                  ", QString::fromLatin1(Internal::byteOrderName))
        .line(QStringLiteral("Pointer size QSysInfo::Wordsize   %1bits")
                  .arg(static_cast<int>(QSysInfo::WordSize)))
        .line(QStringLiteral("Pointer size QT_POINTER_SIZE      %1bytes").arg(QT_POINTER_SIZE))
        .text();
}

QString qtCoreApplication()
{
    SectionText section(sNewLine);
    section.line("QCoreApplication:");
    for (const ApplicationRow& row : applicationRows) {
        section.line(row.label, row.value());
    }
    return section.lines(Internal::libraryPathLines(QCoreApplication::libraryPaths())).text();
}

QString qtLocale()
{
    const QLocale locale = QLocale::system();
    return SectionText(sNewLine)
        .line("QLocale")
        .line("Country:          ", QLocale::countryToString(locale.country()))
        .line("Language:         ", QLocale::languageToString(locale.language()))
        .line("Measuring System: ", Internal::measurementSystemName(locale.measurementSystem()))
        .text();
}

} // namespace norvex::SystemInfo
