#include "systeminfo/norvexSystemInfo.h"
#include "systeminfo/qtSectionParts.h"

#include <QHostInfo>
#include <QPrinterInfo>
#include <QProcess>
#include <QStandardPaths>

namespace norvex::SystemInfo {

namespace {

struct LocationRow
{
    QStandardPaths::StandardLocation location;
    const char* pathLabel;
    const char* nameLabel;
};

const LocationRow locationRows[] = {
    {QStandardPaths::DesktopLocation, "Desktop:                   ", "Desktop [displayName]      "},
    {QStandardPaths::DocumentsLocation, "Documents:                 ", "Documents [displayName]    "},
    {QStandardPaths::HomeLocation, "Home:                      ", "Home [displayName]         "},
    {QStandardPaths::DataLocation, "Data:                      ", "Data [displayName]         "},
    {QStandardPaths::TempLocation, "Temp:                      ", "Temp [displayName]         "},
    {QStandardPaths::ApplicationsLocation, "Applications:              ", "Applications [displayName] "},
    {QStandardPaths::FontsLocation, "Fonts:                     ", "Fonts [displayName]        "},
};

} // namespace

namespace Internal {

QString printerLines(const QList<Printer>& printers)
{
    QString lines = QLatin1String("Available printers:") + sNewLine;
    if (printers.isEmpty()) {
        lines += QLatin1String("    <None>") + sNewLine;
    }
    for (const Printer& printer : printers) {
        lines += QStringLiteral("   %1").arg(printer.name);
        lines += QLatin1String(printer.isDefault ? "    [default printer]" : "") + sNewLine;
    }
    return lines;
}

} // namespace Internal

QString qtDesktopServices()
{
    QString section = QLatin1String("QDesktopServices") + sNewLine + QLatin1String("HomeLocation") + sNewLine;
    for (const LocationRow& row : locationRows) {
        section += QLatin1String(row.pathLabel) + QStandardPaths::writableLocation(row.location) + sNewLine +
                   QLatin1String(row.nameLabel) + QStandardPaths::displayName(row.location) + sNewLine;
    }
    return section;
}

QString qtPrinterInfo()
{
    QList<Internal::Printer> printers;
    const QList<QPrinterInfo> available = QPrinterInfo::availablePrinters();
    for (const QPrinterInfo& printer : available) {
        printers.append({printer.printerName(), printer.isDefault()});
    }
    return QLatin1String("QPrinterInfo") + sNewLine + Internal::printerLines(printers);
}

QString qtHostInfo()
{
    return QLatin1String("QHostInfo") + sNewLine +
           QStringLiteral("Local host name:   %1").arg(QHostInfo::localHostName()) + sNewLine +
           QStringLiteral("Local domain name: %1").arg(QHostInfo::localDomainName()) + sNewLine;
}

QString qtSystemEnvironment()
{
    QString section = QLatin1String("System environemnt (QProcess::systemEnvironment()):") + sNewLine;
    const QStringList entries = QProcess::systemEnvironment();
    for (const QString& entry : entries) {
        section += QStringLiteral("  %1").arg(entry) + sNewLine;
    }
    return section;
}

} // namespace norvex::SystemInfo
