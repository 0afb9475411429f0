#include "systeminfo/mac/platform/live/entries.h"
#include "systeminfo/mac/platform/live/kernelFiles.h"

#include <algorithm>

namespace norvex {

namespace {

/// The texts that firmware has, in lower case, when the maker has not entered a value.
constexpr const char* fillers[] = {
    "default string",
    "invalid",
    "n/a",
    "na",
    "none",
    "not applicable",
    "not available",
    "not settable",
    "not specified",
    "o.e.m.",
    "oem",
    "sernum",
    "serial number",
    "system serial number",
    "to be filled by o.e.m.",
    "to be filled by oem",
    "unknown",
    "123456789",
    "0123456789",
    "1234567890",
    "03000200-0400-0500-0006-000700080009", // the same for every board of some makers
};

/// Whether a text repeats one character, such as a UUID of zeros.
bool isOneCharacter(QByteArray text)
{
    text.replace('-', "").replace(' ', "");
    return std::all_of(text.begin(), text.end(), [&](char c) { return c == text[0]; });
}

DeviceText unlessFiller(const DeviceText& text)
{
    const bool isFiller = text && (isOneCharacter(*text) || std::find(std::begin(fillers), std::end(fillers),
                                                                      text->toLower()) != std::end(fillers));
    return isFiller ? std::nullopt : text;
}

DeviceText serialNumber()
{
    for (const char* path : {"/sys/class/dmi/id/product_serial", "/proc/device-tree/serial-number"}) {
        if (auto serial = unlessFiller(KernelFiles().line(path))) {
            return serial;
        }
    }
    return std::nullopt;
}

DeviceText uuid()
{
    const auto text = unlessFiller(KernelFiles().line("/sys/class/dmi/id/product_uuid"));
    return text ? DeviceText(text->toUpper()) : std::nullopt;
}

} // namespace

/// On most systems only the administrator can read the two values; for others they are absent.
void appendPlatform(const Devices&, Registry& registry)
{
    EntryWriter platform(registry, "IOPlatformExpertDevice", "IOPlatformExpertDevice");
    platform.properties.text("IOPlatformSerialNumber", serialNumber()).text("IOPlatformUUID", uuid());
}

} // namespace norvex
