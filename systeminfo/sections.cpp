#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/norvexNetworkIfInfo.h"
#include "systeminfo/norvexSystemInfo.h"
#include "systeminfo/reportHalf.h"
#include "systeminfo/scanOpenGLInfo.h"

#include <algorithm>

namespace norvex::SystemInfo {

namespace {

using Thread = SectionThread;
using Application = SectionApplication;

QString versionLine()
{
    return MacSysInfo::osVersion(true);
}

QString serialPorts()
{
    return MacSysInfo::ioKitGetRs232SerialDevices(true);
}

QString openGL()
{
    QString section;
    CScanOpenGLInfo().getInfo(section);
    return section;
}

struct Row
{
    int group;
    const char* name;
    QString (*text)();
    const char* topics; // separated by blanks
    const char* description;
    Thread thread = Thread::Any;
    Application application = Application::None;
};

using namespace MacSysInfo;

const Row macintoshRows[] = {
    {0, "osVersion", versionLine, "system", "version and name of the system"},
    {0, "kernelInfo", kernelInfo, "system", "kernel build, version and boot time"},
    {1, "macModel", macModel, "system", "model identifier"},
    {1, "architecture", architecture, "system cpu", "architecture of the machine and of this build"},
    {1, "cpuInfo", cpuInfo, "cpu", "processor: cores, type, features, clock speeds, caches"},
    {2, "memoryInfo", memoryInfo, "memory", "memory sizes"},
    {3, "ioKitSataDiskDevices", ioKitSataDiskDevices, "disks", "drives on AHCI controllers"},
    {4, "ioKitSerialAtapiDevices", ioKitSerialAtapiDevices, "disks", "optical drives on AHCI controllers"},
    {5, "ioKitNVMExpressDevices", ioKitNVMExpressDevices, "disks", "NVM Express controllers"},
    {6, "listFileSystemVolumesInfo", listFileSystemVolumesInfo, "volumes", "volumes and their space"},
    {7, "ioKitEthernetDevices", ioKitEthernetDevices, "network", "Ethernet interfaces and controllers"},
    {8, "ioKitPlatformInfos", ioKitPlatformInfos, "system", "serial number and UUID of the machine"},
    {9, "ioKitRootInfos", ioKitRootInfos, "system", "builds of the system and of IOKit"},
    {10, "ioKitGraphicsCards", ioKitGraphicsCards, "graphics", "graphics cards and their memory"},
    {11, "ioKitUsbDevices", ioKitUsbDevices, "usb", "USB devices"},
    {12, "ioKitGetRs232SerialDevices", serialPorts, "serial", "RS-232 serial ports"},
    {13, "checkFtdiDriver", checkFtdiDriver, "serial usb", "driver of FTDI USB-serial adapters"},
    {14, "bonjourVersion", bonjourVersion, "network", "version of the DNS service discovery daemon"},
    {15, "defaultEmailApp", defaultEmailApp, "environment", "application that opens mailto: links"},
};

const Row qtRows[] = {
    {0, "qtDateTime", qtDateTime, "system", "date, time and bias of the time zone"},
    {1, "qtGlobal", qtGlobal, "environment", "Qt versions and build"},
    {2, "qtCoreApplication", qtCoreApplication, "environment", "this application"},
    {3, "qtLocale", qtLocale, "environment", "country, language and measurement system"},
    {4, "qtScreens", qtScreens, "screens", "screens: sizes, resolutions, orientations", Thread::Gui,
     Application::Gui},
    {5, "qtDesktop", qtDesktop, "screens", "geometry of the desktop", Thread::Gui, Application::Widgets},
    {6, "qtDesktopServices", qtDesktopServices, "environment", "standard folders of the user"},
    {7, "qtPrinterInfo", qtPrinterInfo, "printers", "names of the printers", Thread::Gui},
    {8, "qtHostInfo", qtHostInfo, "network", "names of host and domain"},
    {9, "network", NetworkInfo::allInfos, "network", "network interfaces and their addresses"},
    {10, "qtSystemEnvironment", qtSystemEnvironment, "environment", "environment variables"},
    {11, "openGL", openGL, "opengl graphics", "OpenGL versions and driver", Thread::Gui,
     Application::Widgets},
};

template <std::size_t count>
void appendRows(QVector<SectionInfo>& table, ReportHalf half, const Row (&rows)[count])
{
    for (const Row& row : rows) {
        table.append({row.name, half, row.group, row.description,
                      QString::fromLatin1(row.topics).split(QLatin1Char(' ')), row.thread, row.application,
                      row.text});
    }
}

QVector<SectionInfo> makeSections()
{
    QVector<SectionInfo> table;
    appendRows(table, ReportHalf::Macintosh, macintoshRows);
    appendRows(table, ReportHalf::Qt, qtRows);
    return table;
}

} // namespace

const QVector<SectionInfo>& sections()
{
    static const QVector<SectionInfo> table = makeSections();
    return table;
}

QVector<SectionInfo> Internal::sectionsWithoutOpenGL()
{
    QVector<SectionInfo> table = sections();
    const auto isOpenGL = [](const SectionInfo& section) { return section.text == openGL; };
    table.erase(std::remove_if(table.begin(), table.end(), isOpenGL), table.end());
    return table;
}

QString Internal::reportHalf(ReportHalf half, const HalfFrame& frame, const QVector<SectionInfo>& table)
{
    QString text = QLatin1String(frame.banner) + frame.newLine;
    const SectionInfo* previous = nullptr;
    for (const SectionInfo& section : table) {
        if (section.half != half) {
            continue;
        }
        if (previous != nullptr && section.group != previous->group) {
            text += frame.separator;
        }
        text += section.text();
        previous = &section;
    }
    return text + frame.separator;
}

} // namespace norvex::SystemInfo
