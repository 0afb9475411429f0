#include "systeminfo/norvexSystemInfo.h"
#include "systeminfo/qtSectionParts.h"
#include "systeminfo/sectionText.h"

#include <QHostInfo>
#include <QPrinterInfo>
#include <QProcess>
#include <QStandardPaths>

namespace norvex::SystemInfo {

using Internal::SectionText;

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

QString printerSection(const QList<Printer>& printers)
{
    SectionText section(sNewLine);
    section.line("QPrinterInfo").line("Available printers:");
    if (printers.isEmpty()) {
        section.line("    <None>");
    }
    for (const Printer& printer : printers) {
        section.line("   ", printer.name + QLatin1String(printer.isDefault ? "    [default printer]" : ""));
    }
    return section.text();
}

} // namespace Internal

QString qtDesktopServices()
{
    SectionText section(sNewLine);
    section.line("QDesktopServices").line("HomeLocation");
    for (const LocationRow& row : locationRows) {
        section.line(row.pathLabel, QStandardPaths::writableLocation(row.location))
            .line(row.nameLabel, QStandardPaths::displayName(row.location));
    }
    return section.text();
}

QString qtPrinterInfo()
{
    QList<Internal::Printer> printers;
    const QList<QPrinterInfo> available = QPrinterInfo::availablePrinters();
    for (const QPrinterInfo& printer : available) {
        printers.append({printer.printerName(), printer.isDefault()});
    }
    return Internal::printerSection(printers);
}

QString qtHostInfo()
{
    return SectionText(sNewLine)
        .line("QHostInfo")
        .line("Local host name:   ", QHostInfo::localHostName())
        .line("Local domain name: ", QHostInfo::localDomainName())
        .text();
}

QString qtSystemEnvironment()
{
    SectionText section(sNewLine);
    section.line("System environemnt (QProcess::systemEnvironment()):");
    const QStringList entries = QProcess::systemEnvironment();
    for (const QString& entry : entries) {
        section.line("  ", entry);
    }
    return section.text();
}

} // namespace norvex::SystemInfo
