#include "machelpers/norvexMacHelpers.h"
#include "systeminfo/mac/ioRegistry.h"
#include "systeminfo/mac/norvexSystemInfoMac.h"

#include <QtGlobal>

NORVEX_DEPRECATED_CALLS_BEGIN

namespace norvex::SystemInfo::MacSysInfo {

namespace {

const char ftdiPropertyList[] = "/System/Library/Extensions/FTDIUSBSerialDriver.kext/Contents/Info.plist";

struct DriverValue
{
    int code; // of getValueForKeyInPropertyList
    QString text;
};

DriverValue driverValue(const char* key)
{
    constexpr int bufferSize = 512;
    char buffer[bufferSize] = {};
    const int code = getValueForKeyInPropertyList(ftdiPropertyList, key, buffer, bufferSize);
    const QString keyText = QString::fromLatin1(key);
    switch (code) {
    case 0: return {code, QStringLiteral("%1: %2").arg(keyText, QString::fromUtf8(buffer))};
    case -1: return {code, QStringLiteral("No driver installed.")};
    case -2: return {code, QStringLiteral("Key %1 not found").arg(keyText)};
    case -3:
        return {code,
                QStringLiteral("Buffer size %1 to small for value for key %2").arg(bufferSize).arg(keyText)};
    default: return {code, QStringLiteral("Unknown return code %1").arg(code)};
    }
}

} // namespace

QString checkFtdiDriver()
{
    QString section = QLatin1String("FTDI driver") + sNewLine;
    const DriverValue version = driverValue("CFBundleVersion");
    section += version.text + sNewLine;
    if (version.code != 0) {
        return section;
    }
    DriverValue name = driverValue("CFBundleName");
    if (name.code == -1) { // the file was there a moment ago
        name.text =
            QStringLiteral("Unexpected error code %1 for key %2").arg(-1).arg(QLatin1String("CFBundleName"));
    }
    return section + name.text + sNewLine;
}

void checkBonjour(int& errorCode, QString& versionText)
{
    std::uint32_t version = 0;
    std::uint32_t size = sizeof version;
    const DNSServiceErrorType result =
        DNSServiceGetProperty(kDNSServiceProperty_DaemonVersion, &version, &size);
    if (result == 0) {
        versionText +=
            QStringLiteral("%1.%2.%3").arg(version / 10000).arg(version / 100 % 100).arg(version % 100);
    }
    errorCode = result;
}

QString bonjourVersion()
{
    int error = 0;
    QString version;
    checkBonjour(error, version);
    if (error != 0) {
        version = QStringLiteral(" failed to get version, error = %1").arg(error);
    }
    return QLatin1String("Bonjour version: ") + version + sNewLine;
}

QString defaultEmailApp()
{
    QString application = QStringLiteral("<failed>");
    const CFHolder<CFURLRef> url(CFURLCreateWithString(kCFAllocatorDefault, CFSTR("mailto:"), nullptr));
    CFURLRef applicationUrl = nullptr;
    if (url && LSGetApplicationForURL(url.get(), kLSRolesAll, nullptr, &applicationUrl) == 0) {
        const CFHolder<CFURLRef> owned(applicationUrl);
        const CFHolder<CFStringRef> path(owned ? CFURLCopyFileSystemPath(owned.get(), kCFURLPOSIXPathStyle)
                                               : nullptr);
        if (path) {
            application = CFStringToQString(path.get());
        }
    } else {
        qWarning("LSGetApplicationForURL failed!\n");
    }
    return QLatin1String("Default e-mail app: ") + QStringLiteral("'%1'").arg(application) + sNewLine;
}

} // namespace norvex::SystemInfo::MacSysInfo

NORVEX_DEPRECATED_CALLS_END
