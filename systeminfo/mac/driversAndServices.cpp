#include "systeminfo/mac/driversAndServices.h"

#include "machelpers/propertyListValue.h"
#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/sectionText.h"

#include <QtGlobal>

NORVEX_DEPRECATED_CALLS_BEGIN

namespace norvex::SystemInfo::MacSysInfo {

using namespace Internal;

namespace {

struct DriverValue
{
    int code; // of propertyListValue
    QString text;
};

DriverValue driverValue(const char* key)
{
    constexpr int bufferSize = 512;
    char buffer[bufferSize] = {};
    const int code = propertyListValue(ftdiDriverPropertyList, key, buffer, bufferSize);
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
    SectionText section(sNewLine);
    const DriverValue version = driverValue(ftdiDriverVersionKey);
    section.line("FTDI driver").line(version.text);
    if (version.code != 0) {
        return section.text();
    }
    DriverValue name = driverValue(ftdiDriverNameKey);
    if (name.code == -1) { // the file was there a moment ago
        name.text = QStringLiteral("Unexpected error code %1 for key %2")
                        .arg(-1)
                        .arg(QLatin1String(ftdiDriverNameKey));
    }
    return section.line(name.text).text();
}

DNSServiceErrorType dnsServiceDaemonVersion(std::uint32_t& version)
{
    std::uint32_t size = sizeof version;
    return DNSServiceGetProperty(kDNSServiceProperty_DaemonVersion, &version, &size);
}

void checkBonjour(int& errorCode, QString& versionText)
{
    std::uint32_t version = 0;
    errorCode = dnsServiceDaemonVersion(version);
    if (errorCode == 0) {
        versionText +=
            QStringLiteral("%1.%2.%3").arg(version / 10000).arg(version / 100 % 100).arg(version % 100);
    }
}

QString bonjourVersion()
{
    int error = 0;
    QString version;
    checkBonjour(error, version);
    if (error != 0) {
        version = QStringLiteral(" failed to get version, error = %1").arg(error);
    }
    return SectionText(sNewLine).line("Bonjour version: ", version).text();
}

bool mailApplicationPath(CFHolder<CFStringRef>& path)
{
    const auto text = makeKey((QByteArray(mailScheme) + ':').constData());
    const CFHolder<CFURLRef> link(text ? CFURLCreateWithString(kCFAllocatorDefault, text.get(), nullptr)
                                       : nullptr);
    CFURLRef url = nullptr;
    if (!link || LSGetApplicationForURL(link.get(), kLSRolesAll, nullptr, &url) != 0) {
        return false;
    }
    const CFHolder<CFURLRef> application(url);
    path = CFHolder<CFStringRef>(
        application ? CFURLCopyFileSystemPath(application.get(), kCFURLPOSIXPathStyle) : nullptr);
    return true;
}

QString defaultEmailApp()
{
    CFHolder<CFStringRef> path;
    if (!mailApplicationPath(path)) {
        qWarning("LSGetApplicationForURL failed!\n");
    }
    const QString application = path ? CFStringToQString(path.get()) : QStringLiteral("<failed>");
    return SectionText(sNewLine).quotedLine("Default e-mail app: ", application).text();
}

} // namespace norvex::SystemInfo::MacSysInfo

NORVEX_DEPRECATED_CALLS_END
