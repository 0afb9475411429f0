#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/mac/propertyLines.h"

NORVEX_DEPRECATED_CALLS_BEGIN

namespace norvex::SystemInfo::MacSysInfo {

using namespace Internal;

namespace {

struct QuotedLine
{
    const char* label;
    const char* key;
};

const QuotedLine platformLines[] = {
    {"Serial number: ", "IOPlatformSerialNumber"},
    {"UUID: ", "IOPlatformUUID"},
};

const QuotedLine rootLines[] = {
    {"OS Build Version: ", "OS Build Version"},
    {"IOKit Build Version: ", "IOKitBuildVersion"},
};

template <typename Table>
void appendQuotedLines(SectionText& section, const IoEntry& entry, const Table& table)
{
    for (const QuotedLine& line : table) {
        appendQuotedString(section, line.label, entry.property(line.key));
    }
}

} // namespace

QString ioKitPlatformInfos()
{
    SectionText section(sNewLine);
    section.line("Platform info (from IOKit)");
    if (const IoEntry platform = firstServiceOfClass(RegistryClass::PlatformExpert)) {
        appendQuotedLines(section, platform, platformLines);
    }
    return section.text();
}

QString ioKitRootInfos()
{
    SectionText section(sNewLine);
    section.line("Root info (from IOKit)");
    mach_port_t port = MACH_PORT_NULL;
    if (IOMasterPort(MACH_PORT_NULL, &port) != KERN_SUCCESS) {
        return section.line("failed to get IO master port").text();
    }
    if (const IoEntry root{IORegistryGetRootEntry(port)}) {
        appendQuotedLines(section, root, rootLines);
    }
    return section.text();
}

} // namespace norvex::SystemInfo::MacSysInfo

NORVEX_DEPRECATED_CALLS_END
