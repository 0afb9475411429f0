#include "fuzz/require.h"
#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/mac/platform/machine.h"
#include "systeminfo/mac/platform/recorded/recordedMachine.h"

#include <QBuffer>

#include <cstdint>

using namespace norvex::SystemInfo::MacSysInfo;

namespace {

void discard(QtMsgType, const QMessageLogContext&, const QString&) {}

const bool isQuiet = (qInstallMessageHandler(discard), true);

} // namespace

/// Loads any bytes as a recording; what is accepted has a whole Macintosh section that leaves nothing behind.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    QByteArray text(reinterpret_cast<const char*>(data), int(size));
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    norvex::PropertyListFailure failure;
    auto machine = norvex::readRecording(buffer, failure);
    require((machine == nullptr) == !failure.reason.isEmpty(), "a reason exactly on refusal");
    if (machine == nullptr) {
        return 0;
    }
    norvex::setMachine(std::move(machine));
    const QString section = allInfos();
    norvex::setMachine(nullptr);
    require(isQuiet && norvex::liveCounts().isZero(), "nothing is left behind");
    require(section.startsWith(QLatin1String("############ Macintosh specific section ###########\n")),
            "a banner");
    require(section.count(separator()) >= 16, "a separator behind each group");
    return 0;
}
