#include "systeminfo/norvexNetworkIfInfo.h"

#include "systeminfo/qtSectionParts.h"
#include "systeminfo/reportTexts.h"
#include "systeminfo/sectionText.h"

#include <QNetworkInterface>

namespace norvex::SystemInfo {

namespace Internal {

QString interfaceBlock(const InterfaceFacts& iface)
{
    SectionText block(NetworkInfo::sNewLine);
    block.lines(NetworkInfo::separatorNetIf()).line(iface.name);
    if (iface.flags.testFlag(QNetworkInterface::IsLoopBack)) {
        block.line("Loopback interface");
    }
    const bool isUp = iface.flags.testFlag(QNetworkInterface::IsUp);
    block.line(QLatin1String(hardwareAddressLabel) + QLatin1String(": ") + iface.hardwareAddress)
        .line(isUp ? "Status: Up" : "Status: Down")
        .line("Addresses: IP , netmask , broadcast");
    for (const QNetworkAddressEntry& entry : iface.addresses) {
        const QStringList parts{entry.ip().toString(), entry.netmask().toString(),
                                entry.broadcast().toString()};
        block.line(parts.join(QLatin1String(" , ")));
    }
    if (iface.addresses.isEmpty()) {
        block.line("<no address>");
    }
    return block.text();
}

} // namespace Internal

namespace NetworkInfo {

QString sNewLine = QStringLiteral("\n");

QString allInfos()
{
    Internal::SectionText section(sNewLine);
    section.line(Internal::networkHeading);
    const QList<QNetworkInterface> interfaces = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface& iface : interfaces) {
        section.lines(Internal::interfaceBlock(
            {iface.name(), iface.hardwareAddress(), iface.flags(), iface.addressEntries()}));
    }
    return section.text();
}

QString separatorNetIf()
{
    return QString(Internal::interfaceSeparatorLength, QLatin1Char('_')) + sNewLine;
}

QString ifUserFriendlyName(const QNetworkInterface& iface)
{
    return iface.name();
}

} // namespace NetworkInfo

} // namespace norvex::SystemInfo
