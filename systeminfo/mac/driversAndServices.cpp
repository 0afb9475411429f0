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
    PropertyListResult result;
    QString text;
};

DriverValue driverValue(const char* key)
{
    constexpr int bufferSize = 512;
    char buffer[bufferSize] = {};
    const PropertyListResult result = propertyListValue(ftdiDriverPropertyList, key, buffer, bufferSize);
    const QString keyText = QString::fromLatin1(key);
    switch (result) {
    case PropertyListResult::Found:
        return {result, QStringLiteral("%1: %2").arg(keyText, QString::fromUtf8(buffer))};
    case PropertyListResult::NoFile: return {result, QStringLiteral("No driver installed.")};
    case PropertyListResult::NoString: return {result, QStringLiteral("Key %1 not found").arg(keyText)};
    case PropertyListResult::BufferTooSmall:
        return {result,
                QStringLiteral("Buffer size %1 to small for value for key %2").arg(bufferSize).arg(keyText)};
    }
    return {result, QStringLiteral("Unknown return code %1").arg(static_cast<int>(result))};
}

} // namespace

QString checkFtdiDriver()
{
    SectionText section(sNewLine);
    const DriverValue version = driverValue(ftdiDriverVersionKey);
    section.line("FTDI driver").line(version.text);
    if (version.result != PropertyListResult::Found) {
        return section.text();
    }
    DriverValue name = driverValue(ftdiDriverNameKey);
    if (name.result == PropertyListResult::NoFile) { // the file was there a moment ago
        name.text = QStringLiteral("Unexpected error code %1 for key %2")
                        .arg(static_cast<int>(name.result))
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
