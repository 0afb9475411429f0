#include "systeminfo/mac/ioRegistry.h"
#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/sectionText.h"

#include <QtGlobal>

namespace norvex::SystemInfo::MacSysInfo {

namespace {

template <typename Integer>
std::optional<Integer> readNumber(CFNumberRef number, CFNumberType type)
{
    Integer value = 0;
    if (CFNumberGetValue(number, type, &value)) {
        return value;
    }
    qWarning("CFNumberGetValue failed");
    return std::nullopt;
}

bool isDisplay(CFStringRef name)
{
    return name != nullptr &&
           CFStringCompare(name, CFSTR("display"), kCFCompareCaseInsensitive) == kCFCompareEqualTo;
}

QString modelText(const PropertyValue& model)
{
    const CFDataRef data = model.data();
    if (data == nullptr) {
        return QStringLiteral("???");
    }
    const QByteArray bytes = bytesOf(data);
    const int zero = bytes.indexOf('\0');
    return QString::fromUtf8(bytes.constData(), zero < 0 ? bytes.size() : zero);
}

unsigned long long sizeValue(const PropertyValue& value)
{
    if (const CFNumberRef number = value.number()) {
        return ConvertVRAM_CFNumberToUInt64(number);
    }
    if (const CFDataRef data = value.data()) {
        return ConvertVRAM_CFDataToUInt64(data);
    }
    return 0;
}

/// The first of these properties that the device or an entry below it has decides, even if its value is unusable.
unsigned long long videoMemory(const IoEntry& device, CFDictionaryRef properties)
{
    constexpr int bytesPerMebibyteShift = 20;
    static const struct
    {
        const char* key;
        int shift; // to bytes
    } sources[] = {{"VRAM,totalMB", bytesPerMebibyteShift}, {"VRAM,totalsize", 0}};

    for (const auto& source : sources) {
        PropertyValue value = valueIn(properties, source.key);
        if (!value.isPresent()) {
            value = device.search(source.key);
        }
        if (value.isPresent()) {
            return sizeValue(value) << source.shift;
        }
    }
    return 0;
}

} // namespace

unsigned long long ConvertVRAM_CFNumberToUInt64(const __CFNumber* number)
{
    const CFNumberType type = CFNumberGetType(number);
    std::optional<long long> value;
    if (type == kCFNumberSInt32Type) {
        value = readNumber<std::int32_t>(number, type);
        if (value && *value < 0) {
            qWarning("VRAM size negative: %d", static_cast<int>(*value));
        }
    } else if (type == kCFNumberSInt64Type) {
        value = readNumber<std::int64_t>(number, type);
        if (value && *value < 0) {
            qWarning("VRAM size negative: %lld", *value);
        }
    } else {
        qWarning("Error unexpected CFNumber type: %ld", static_cast<long>(type));
    }
    return value && *value > 0 ? static_cast<unsigned long long>(*value) : 0;
}

unsigned long long ConvertVRAM_CFDataToUInt64(const __CFData* data)
{
    const CFIndex length = CFDataGetLength(data);
    if (length < 1 || length > 8) {
        return 0;
    }
    const UInt8* const bytes = CFDataGetBytePtr(data);
    unsigned long long value = 0;
    for (CFIndex i = 0; i < length; ++i) {
        value |= static_cast<unsigned long long>(bytes[i]) << (8 * i);
    }
    return value;
}

QString ioKitGraphicsCards()
{
    Internal::SectionText section(sNewLine);
    section.line("Graphics card info (from IOKit)");
    IoIterator devices = servicesOfClass(RegistryClass::PciDevice);
    int number = 1;
    while (const IoEntry device = devices.next()) {
        const auto properties = device.properties();
        if (!properties || !isDisplay(valueIn(properties.get(), "IOName").string())) {
            continue;
        }
        const QString model = modelText(valueIn(properties.get(), "model"));
        const QString memory = memorySizeConvertUserFriendly(videoMemory(device, properties.get()));
        section.line("Card #", QString::number(number++))
            .line("   Model:      ", model)
            .line("   VRAM total: ", memory);
    }
    return section.text();
}

} // namespace norvex::SystemInfo::MacSysInfo
