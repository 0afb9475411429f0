#include "tools/sections.h"

#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/norvexNetworkIfInfo.h"
#include "systeminfo/norvexSystemInfo.h"
#include "systeminfo/scanOpenGLInfo.h"

namespace norvex::Tool {

namespace {

using namespace norvex::SystemInfo;

QString osVersionLine()
{
    return MacSysInfo::osVersion(true);
}

QString rs232Devices()
{
    return MacSysInfo::ioKitGetRs232SerialDevices(true);
}

QString openGL()
{
    QString text;
    CScanOpenGLInfo().getInfo(text);
    return text;
}

} // namespace

const std::vector<Section>& allSections()
{
    using Kind = ApplicationKind;
    // The printers are known to CUPS alone: Qt needs no GUI to list them.
    static const std::vector<Section> sections = {
        {"macintosh", Kind::Core, MacSysInfo::allInfos},
        {"osVersion", Kind::Core, osVersionLine},
        {"kernelInfo", Kind::Core, MacSysInfo::kernelInfo},
        {"macModel", Kind::Core, MacSysInfo::macModel},
        {"architecture", Kind::Core, MacSysInfo::architecture},
        {"cpuInfo", Kind::Core, MacSysInfo::cpuInfo},
        {"memoryInfo", Kind::Core, MacSysInfo::memoryInfo},
        {"ioKitSataDiskDevices", Kind::Core, MacSysInfo::ioKitSataDiskDevices},
        {"ioKitSerialAtapiDevices", Kind::Core, MacSysInfo::ioKitSerialAtapiDevices},
        {"ioKitNVMExpressDevices", Kind::Core, MacSysInfo::ioKitNVMExpressDevices},
        {"listFileSystemVolumesInfo", Kind::Core, MacSysInfo::listFileSystemVolumesInfo},
        {"ioKitEthernetDevices", Kind::Core, MacSysInfo::ioKitEthernetDevices},
        {"ioKitPlatformInfos", Kind::Core, MacSysInfo::ioKitPlatformInfos},
        {"ioKitRootInfos", Kind::Core, MacSysInfo::ioKitRootInfos},
        {"ioKitGraphicsCards", Kind::Core, MacSysInfo::ioKitGraphicsCards},
        {"ioKitUsbDevices", Kind::Core, MacSysInfo::ioKitUsbDevices},
        {"ioKitGetRs232SerialDevices", Kind::Core, rs232Devices},
        {"checkFtdiDriver", Kind::Core, MacSysInfo::checkFtdiDriver},
        {"bonjourVersion", Kind::Core, MacSysInfo::bonjourVersion},
        {"defaultEmailApp", Kind::Core, MacSysInfo::defaultEmailApp},
        {"qtDateTime", Kind::Core, qtDateTime},
        {"qtGlobal", Kind::Core, qtGlobal},
        {"qtCoreApplication", Kind::Core, qtCoreApplication},
        {"qtLocale", Kind::Core, qtLocale},
        {"qtScreens", Kind::Gui, qtScreens},
        {"qtDesktop", Kind::Widgets, qtDesktop},
        {"qtDesktopServices", Kind::Core, qtDesktopServices},
        {"qtPrinterInfo", Kind::Core, qtPrinterInfo},
        {"qtHostInfo", Kind::Core, qtHostInfo},
        {"network", Kind::Core, NetworkInfo::allInfos},
        {"qtSystemEnvironment", Kind::Core, qtSystemEnvironment},
        {"openGL", Kind::Widgets, openGL},
    };
    return sections;
}

const Section* findSection(const QByteArray& name)
{
    for (const Section& section : allSections()) {
        if (name == section.name) {
            return &section;
        }
    }
    return nullptr;
}

} // namespace norvex::Tool
