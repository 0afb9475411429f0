#include "systeminfo/norvexSystemInfo.h"
#include "systeminfo/qtBuildFacts.h"
#include "systeminfo/qtSectionParts.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QLocale>

namespace norvex::SystemInfo {

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

// UTC minus local wall-clock time, in minutes. Both are read as UTC, so that their distance is what the
// clocks on the wall differ by, a daylight-saving shift included.
int activeBias(const QDateTime& localTime)
{
    QDateTime wallClock = localTime;
    wallClock.setTimeSpec(Qt::UTC);
    return static_cast<int>(wallClock.secsTo(localTime.toTimeSpec(Qt::UTC)) / 60);
}

} // namespace

namespace Internal {

QString dateTimeLines(const QDateTime& localTime)
{
    const QString format = QStringLiteral("dd.MM.yyyy hh:mm:ss");
    const QString local = localTime.toString(format);
    const QString utc = localTime.toTimeSpec(Qt::UTC).toString(format);
    return QLatin1String("Local Date and Time: ") + local + sNewLine +
           QLatin1String("UTC   Date and Time: ") + utc + sNewLine +
           QStringLiteral("ActiveBias: %1 min").arg(activeBias(localTime)) + sNewLine;
}

QString libraryPathLines(const QStringList& paths)
{
    const QString label = QStringLiteral("Library Paths:        ");
    const QString indent(label.size(), QLatin1Char(' '));
    return label + paths.join(sNewLine + indent) + sNewLine;
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
    const QString lines[] = {
        QStringLiteral("Qt Global"),
        QStringLiteral("Qt version this object was linked against: ") + QLatin1String(QT_VERSION_STR),
        QStringLiteral("Qt version currently used for execution:   ") + QLatin1String(qVersion()),
        QLatin1String(Internal::platformLine),
        QStringLiteral("Endianess detected by Qt:                  ") +
            QLatin1String(Internal::byteOrderName),
        QStringLiteral("Pointer size QSysInfo::Wordsize   %1bits").arg(static_cast<int>(QSysInfo::WordSize)),
        QStringLiteral("Pointer size QT_POINTER_SIZE      %1bytes").arg(QT_POINTER_SIZE),
    };
    QString section;
    for (const QString& line : lines) {
        section += line + sNewLine;
    }
    return section;
}

QString qtCoreApplication()
{
    QString section = QLatin1String("QCoreApplication:") + sNewLine;
    for (const ApplicationRow& row : applicationRows) {
        section += QLatin1String(row.label) + row.value() + sNewLine;
    }
    return section + Internal::libraryPathLines(QCoreApplication::libraryPaths());
}

QString qtLocale()
{
    const QLocale locale = QLocale::system();
    QString section = QLatin1String("QLocale") + sNewLine;
    section += QLatin1String("Country:          ") + QLocale::countryToString(locale.country()) + sNewLine;
    section += QLatin1String("Language:         ") + QLocale::languageToString(locale.language()) + sNewLine;
    section += QLatin1String("Measuring System: ") +
               Internal::measurementSystemName(locale.measurementSystem()) + sNewLine;
    return section;
}

} // namespace norvex::SystemInfo
