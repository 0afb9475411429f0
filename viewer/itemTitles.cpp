#include "viewer/itemTitles.h"

#include <QCoreApplication>

namespace norvex::Viewer {

using namespace SystemInfo;

namespace {

const int longestTitle = 100;

QString shortened(const QString& title)
{
    return oneLine(title, longestTitle);
}

/// A heading or banner without what only sets it off.
QString withoutOrnaments(const QString& line)
{
    const auto isOrnament = [](QChar character) {
        return character.isSpace() || character == QLatin1Char('#') || character == QLatin1Char(':');
    };
    int begin = 0;
    int end = line.size();
    while (begin < end && isOrnament(line.at(begin))) {
        ++begin;
    }
    while (end > begin && isOrnament(line.at(end - 1))) {
        --end;
    }
    return line.mid(begin, end - begin);
}

/// What people read in the place of a section's name, close to its heading. Translators: the tooltip shows the heading.
const struct
{
    const char* section;
    const char* title;
} sectionTitles[] = {
    {"osVersion", QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "Version and name of the system")},
    {"kernelInfo", QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "Kernel information")},
    {"macModel", QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "Model identifier")},
    {"architecture",
     QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "Architecture of the machine and of this build")},
    {"cpuInfo", QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "Processor")},
    {"memoryInfo", QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "Memory sizes")},
    {"ioKitSataDiskDevices", QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "AHCI disk")},
    {"ioKitSerialAtapiDevices", QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "AHCI Serial ATAPI")},
    {"ioKitNVMExpressDevices", QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "NVMEXpress devices")},
    {"listFileSystemVolumesInfo", QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "Volumes")},
    {"ioKitEthernetDevices", QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "Ethernet interfaces")},
    {"ioKitPlatformInfos", QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "Platform info")},
    //: of the I/O registry
    {"ioKitRootInfos", QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "Root info")},
    {"ioKitGraphicsCards", QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "Graphics card info")},
    {"ioKitUsbDevices", QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "Attached USB devices")},
    {"ioKitGetRs232SerialDevices",
     QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "RS232 Serial Devices Info")},
    //: for adapters from USB to serial ports
    {"checkFtdiDriver", QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "FTDI driver")},
    {"bonjourVersion",
     QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "Version of the DNS service discovery daemon")},
    {"defaultEmailApp",
     QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "Application that opens mail links")},
    {"qtDateTime",
     QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "Date, time and bias of the time zone")},
    //: Qt's versions, and how it is built
    {"qtGlobal", QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "Qt Global")},
    //: a class of Qt: what is known of this application
    {"qtCoreApplication", QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "QCoreApplication")},
    //: a class of Qt: country, language, units
    {"qtLocale", QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "QLocale")},
    //: a class of Qt: the screens
    {"qtScreens", QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "QScreen")},
    //: a class of Qt: where the screens are
    {"qtDesktop", QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "QDesktopWidget")},
    //: a class of Qt: the user's folders
    {"qtDesktopServices", QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "QDesktopServices")},
    //: a class of Qt: the printers
    {"qtPrinterInfo", QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "QPrinterInfo")},
    //: a class of Qt: names of host and domain
    {"qtHostInfo", QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "QHostInfo")},
    {"network", QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "Network Interfaces Info")},
    //: variables
    {"qtSystemEnvironment", QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "System environment")},
    //: a class of Qt: OpenGL
    {"openGL", QT_TRANSLATE_NOOP("norvex::Viewer::SectionTitles", "QGLFormat")},
};

} // namespace

QString oneLine(const QString& text, int mostCharacters)
{
    QString line = text.left(4 * mostCharacters).simplified();
    if (line.size() <= mostCharacters) {
        return line;
    }
    int end = mostCharacters - 1;
    if (line.at(end).isLowSurrogate()) {
        --end;
    }
    return line.left(end) + QChar(0x2026);
}

QString titleOfHalf(const CReportItem& banner)
{
    const QString line = banner.text().left(2 * longestTitle);
    for (const char* name : {"Macintosh", "Windows", "Qt"}) {
        if (line.contains(QLatin1String(name))) {
            return QLatin1String(name);
        }
    }
    return shortened(withoutOrnaments(line));
}

QString titleOf(const CReportSection& section)
{
    const QString name = section.name();
    for (const auto& row : sectionTitles) {
        if (section.isKnown() && name == QLatin1String(row.section)) {
            return QCoreApplication::translate("norvex::Viewer::SectionTitles", row.title);
        }
    }
    const QString heading = withoutOrnaments(section.heading().left(2 * longestTitle));
    return shortened(heading.isEmpty() ? name : heading);
}

QString titleOf(const CReportBlock& block)
{
    const QString name = block.name();
    for (const char* label : {"Model", "Device name"}) {
        const QString model = block.entry(QLatin1String(label)).value();
        if (model.isEmpty()) {
            continue;
        }
        const QString bsdName = block.entry(QStringLiteral("BSD Name")).value();
        return shortened(bsdName.isEmpty() ? model : QStringLiteral("%1 (%2)").arg(model, bsdName));
    }
    bool isNumber = false;
    name.toInt(&isNumber);
    return isNumber ? QLatin1Char('#') + name : shortened(name);
}

} // namespace norvex::Viewer
