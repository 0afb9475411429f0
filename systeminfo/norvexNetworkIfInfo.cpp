#include "systeminfo/norvexNetworkIfInfo.h"

#include "systeminfo/qtSectionParts.h"

#include <QNetworkInterface>

namespace norvex::SystemInfo {

namespace Internal {

QString interfaceBlock(const InterfaceFacts& iface)
{
    QString block = NetworkInfo::separatorNetIf() + iface.name + NetworkInfo::sNewLine;
    if (iface.flags.testFlag(QNetworkInterface::IsLoopBack)) {
        block += QLatin1String("Loopback interface") + NetworkInfo::sNewLine;
    }
    block += QStringLiteral("%1: %2").arg(QStringLiteral("Hardware address")).arg(iface.hardwareAddress) +
             NetworkInfo::sNewLine;
    const bool isUp = iface.flags.testFlag(QNetworkInterface::IsUp);
    block += QLatin1String("Status: ") + QLatin1String(isUp ? "Up" : "Down") + NetworkInfo::sNewLine;

    block += QLatin1String("Addresses: IP , netmask , broadcast") + NetworkInfo::sNewLine;
    const QLatin1String comma(" , ");
    for (const QNetworkAddressEntry& entry : iface.addresses) {
        block += entry.ip().toString() + comma + entry.netmask().toString() + comma +
                 entry.broadcast().toString() + NetworkInfo::sNewLine;
    }
    if (iface.addresses.isEmpty()) {
        block += QLatin1String("<no address>") + NetworkInfo::sNewLine;
    }
    return block;
}

} // namespace Internal

namespace NetworkInfo {

QString sNewLine = QStringLiteral("\n");

QString allInfos()
{
    QString section = QLatin1String("Network Interfaces Info") + sNewLine;
    const QList<QNetworkInterface> interfaces = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface& iface : interfaces) {
        section += Internal::interfaceBlock(
            {iface.name(), iface.hardwareAddress(), iface.flags(), iface.addressEntries()});
    }
    return section;
}

QString separatorNetIf()
{
    return QString(55, QLatin1Char('_')) + sNewLine;
}

QString ifUserFriendlyName(const QNetworkInterface& iface)
{
    return iface.name();
}

} // namespace NetworkInfo

} // namespace norvex::SystemInfo
