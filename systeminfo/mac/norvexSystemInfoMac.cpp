#include "systeminfo/mac/norvexSystemInfoMac.h"

namespace norvex::SystemInfo::MacSysInfo {

QString sNewLine = QStringLiteral("\n");

QString separator()
{
    return QString(72, QLatin1Char('-')) + sNewLine;
}

namespace {

QString serialPorts()
{
    return ioKitGetRs232SerialDevices(true);
}

QString versionLine()
{
    return osVersion(true);
}

// The section's groups in report order; a separator line follows each.
using Section = QString (*)();
constexpr std::size_t largestGroup = 3;
const Section groups[][largestGroup] = {
    {versionLine, kernelInfo},
    {macModel, architecture, cpuInfo},
    {memoryInfo},
    {ioKitSataDiskDevices},
    {ioKitSerialAtapiDevices},
    {ioKitNVMExpressDevices},
    {listFileSystemVolumesInfo},
    {ioKitEthernetDevices},
    {ioKitPlatformInfos},
    {ioKitRootInfos},
    {ioKitGraphicsCards},
    {ioKitUsbDevices},
    {serialPorts},
    {checkFtdiDriver},
    {bonjourVersion},
    {defaultEmailApp},
};

} // namespace

QString allInfos()
{
    QString section = QLatin1String("############ Macintosh specific section ###########") + sNewLine;
    for (const auto& group : groups) {
        for (const Section function : group) {
            if (function != nullptr)
                section += function();
        }
        section += separator();
    }
    return section;
}

} // namespace norvex::SystemInfo::MacSysInfo
