#include "fuzz/require.h"
#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "tests/referenceFormatting.h"

#include <cctype>
#include <cstdint>

using namespace norvex::SystemInfo::MacSysInfo;

namespace {

void compare(unsigned long long value)
{
    require(clockSpeedConvertUserFriendly(value).toStdString() == reference::clockSpeed(value),
            "clock speed");
    require(memorySizeConvertUserFriendly(value).toStdString() == reference::memorySize(value),
            "memory size");
    require(diskSizeConvertUserFriendly(value).toStdString() == reference::diskSize(value), "disk size");
}

} // namespace

/// The input is a list of decimal numbers, modulo 2^64, with anything between them.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    unsigned long long value = 0;
    for (std::size_t i = 0; i < size; ++i) {
        if (std::isdigit(data[i])) {
            value = value * 10 + (data[i] - '0');
        } else {
            compare(value);
            value = 0;
        }
    }
    compare(value);
    return 0;
}
