#include "fuzz/require.h"
#include "systeminfo/norvexSystemInfo.h"

#include <cstdint>

namespace {

struct Reading
{
    bool success;
    QStringList macAddresses;
    unsigned char processors;
    unsigned short revision;
    QString message;
};

Reading read(const QString& report, bool skipBraced, const QStringList& macAddresses = QStringList())
{
    Reading reading = {false, macAddresses, 77, 7777, QStringLiteral("untouched")};
    reading.success = norvex::SystemInfo::extractAccessKeyValues(
        report, skipBraced, reading.macAddresses, reading.processors, reading.revision, reading.message);
    require(reading.success == (reading.message == QLatin1String("untouched")),
            "a message exactly on failure");
    require(!reading.message.isEmpty(), "a failure says why");
    require(!reading.success || !reading.macAddresses.isEmpty(), "success has addresses");
    return reading;
}

QString squeezed(QString text)
{
    return text.remove(QLatin1Char(' ')).remove(QLatin1Char('\r'));
}

bool isSubsequence(const QStringList& part, const QStringList& whole)
{
    int found = 0;
    for (const QString& each : whole) {
        if (found < part.size() && part[found] == each) {
            ++found;
        }
    }
    return found == part.size();
}

bool sameValues(const Reading& one, const Reading& other)
{
    return one.macAddresses == other.macAddresses && one.processors == other.processors &&
           one.revision == other.revision && one.message == other.message;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString report = QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const Reading all = read(report, false);
    const QString text = squeezed(report);
    for (const QString& address : all.macAddresses) {
        require(address.count(QLatin1Char(':')) == 5, "five colons");
        require(!address.contains(QLatin1Char('\n')) && squeezed(address) == address,
                "no blank, no line end");
        require(text.contains(address + QLatin1Char('\n')), "the address is the end of a line of the text");
    }

    const Reading withoutBraced = read(report, true);
    require(isSubsequence(withoutBraced.macAddresses, all.macAddresses), "nothing new by leaving braces out");

    const QString earlier = QStringLiteral("earlier");
    const Reading appended = read(report, false, QStringList(earlier));
    require(appended.macAddresses == QStringList(earlier) + all.macAddresses, "addresses are appended");
    require(sameValues(read(report, false), all), "each reading is independent");

    // Text in front that contains no part of a label moves everything and changes nothing. Its length makes
    // Qt search in another way.
    require(sameValues(read(QString(600, QLatin1Char('x')) + QLatin1Char('\n') + report, false), all),
            "the same behind other text");
    return 0;
}
