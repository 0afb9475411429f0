#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/mac/propertyLines.h"

NORVEX_DEPRECATED_CALLS_BEGIN

namespace norvex::SystemInfo::MacSysInfo {

namespace {

struct QuotedLine
{
    const char* text; // with %1 for the value
    const char* key;
};

const QuotedLine platformLines[] = {
    {"Serial number: '%1'", "IOPlatformSerialNumber"},
    {"UUID: '%1'", "IOPlatformUUID"},
};

const QuotedLine rootLines[] = {
    {"OS Build Version: '%1'", "OS Build Version"},
    {"IOKit Build Version: '%1'", "IOKitBuildVersion"},
};

template <typename Table>
void appendQuotedLines(QString& section, const IoEntry& entry, const Table& table)
{
    for (const QuotedLine& line : table) {
        const PropertyValue value = entry.property(line.key);
        if (const CFStringRef string = value.string()) {
            section += QString::fromLatin1(line.text).arg(fastString(string)) + sNewLine;
        }
    }
}

} // namespace

QString ioKitPlatformInfos()
{
    QString section = QLatin1String("Platform info (from IOKit)") + sNewLine;
    if (const IoEntry platform = firstServiceOfClass("IOPlatformExpertDevice")) {
        appendQuotedLines(section, platform, platformLines);
    }
    return section;
}

QString ioKitRootInfos()
{
    QString section = QLatin1String("Root info (from IOKit)") + sNewLine;
    mach_port_t port = MACH_PORT_NULL;
    if (IOMasterPort(MACH_PORT_NULL, &port) != KERN_SUCCESS) {
        return section + QLatin1String("failed to get IO master port") + sNewLine;
    }
    if (const IoEntry root{IORegistryGetRootEntry(port)}) {
        appendQuotedLines(section, root, rootLines);
    }
    return section;
}

} // namespace norvex::SystemInfo::MacSysInfo

NORVEX_DEPRECATED_CALLS_END
