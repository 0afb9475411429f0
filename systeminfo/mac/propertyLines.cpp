#include "systeminfo/mac/propertyLines.h"

#include "systeminfo/mac/norvexSystemInfoMac.h"

#include <QStringList>

namespace norvex::SystemInfo::MacSysInfo {

namespace {

QString hexPairs(const QByteArray& bytes)
{
    QStringList pairs;
    for (const char byte : bytes) {
        pairs += QStringLiteral("%1").arg(uint(static_cast<unsigned char>(byte)), 2, 16, QLatin1Char('0'));
    }
    return pairs.join(QLatin1Char(':'));
}

} // namespace

QString yesNo(bool value)
{
    return value ? QStringLiteral("Yes") : QStringLiteral("No");
}

std::optional<QString> propertyText(const PropertyValue& value, PropertyKind kind)
{
    switch (kind) {
    case PropertyKind::String:
        if (const CFStringRef string = value.string()) {
            return CFStringToQString(string);
        }
        break;
    case PropertyKind::YesNo:
        if (const auto boolean = value.boolean()) {
            return yesNo(*boolean);
        }
        break;
    case PropertyKind::Int32:
        if (const auto number = value.int32()) {
            return QString::number(*number);
        }
        break;
    case PropertyKind::Size:
        if (const auto bytes = value.int64()) {
            return diskSizeConvertUserFriendly(static_cast<unsigned long long>(*bytes));
        }
        break;
    case PropertyKind::Bytes:
        if (const CFDataRef data = value.data()) {
            return hexPairs(bytesOf(data));
        }
        break;
    }
    return std::nullopt;
}

QString deviceSeparator()
{
    return QString(40, QLatin1Char('_'));
}

void appendQuotedString(Internal::SectionText& section, const char* label, const PropertyValue& value)
{
    if (const CFStringRef string = value.string()) {
        section.quotedLine(label, fastString(string));
    }
}

} // namespace norvex::SystemInfo::MacSysInfo
