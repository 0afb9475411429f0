#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "tests/referenceFormatting.h"

#include <QtTest>
#include <cmath>
#include <random>

using namespace norvex::SystemInfo::MacSysInfo;
using Formatter = QString (*)(unsigned long long);
Q_DECLARE_METATYPE(Formatter)

class ValueFormattingTest : public QObject
{
    Q_OBJECT

private slots:
    void examples_data();
    void examples();
    void agreesWithReference();
};

void ValueFormattingTest::examples_data()
{
    const struct
    {
        Formatter formatter;
        const char* examples;
    } tables[] = {
        {clockSpeedConvertUserFriendly,
         "0: 0 Hz, 999: 999 Hz, 1000: 1.000 kHz, 1234: 1.234 kHz, 9999: 9.999 kHz, 10000: 10.00 kHz, "
         "12000: 12.00 kHz, 12345: 12.35 kHz, 99995: 100.00 kHz, 123456: 123.5 kHz, 999950: 1000.0 "
         "kHz, 1000000: 1.000 MHz, 33333333: 33.33 MHz, 133000000: 133.0 MHz, 999999999: 1000.0 MHz, "
         "1000000000: 1.000 GHz, 2005000000: 2.005 GHz, 2400000000: 2.400 GHz, 2666666666: 2.667 GHz, "
         "2999499999: 2.999 GHz, 2999500000: 3.000 GHz, 10000000000: 10.00 GHz, 10050000000: 10.05 "
         "GHz, 12345678901: 12.35 GHz, 123456789012: 123.5 GHz, 999999999999: 1000.0 GHz, "
         "1000000000000: 1000 GHz, 1999999999999: 1999 GHz, 18446744073709551615: 18446744073 GHz"},
        {memorySizeConvertUserFriendly,
         "0: 0 Byte, 1023: 1023 Byte, 1024: 1.0 KByte, 1536: 1.5 KByte, 1048575: 1023.9 KByte, "
         "1048576: 1.0 MByte, 268435456: 256.0 MByte, 1073741823: 1023.9 MByte, 1073741824: 1.0 GByte, "
         "1610612736: 1.5 GByte, 4294967295: 3.9 GByte, 17179869184: 16.0 GByte, 18446744073709551615: "
         "17179869183.9 GByte"},
        {diskSizeConvertUserFriendly,
         "0: 0 Byte, 999: 999 Byte, 1000: 0.9 KB, 1023: 0.9 KB, 1024: 1.0 KB, 999999: 976.5 KB, "
         "1000000: 1.0 MB, 123456789: 123.4 MB, 999999999: 999.9 MB, 1000000000: 1.0 GB, 500107862016: "
         "500.1 GB, 1000204886016: 1000.2 GB, 18446744073709551615: 18446744073.7 GB"},
    };
    QTest::addColumn<Formatter>("formatter");
    QTest::addColumn<qulonglong>("value");
    QTest::addColumn<QString>("text");
    for (const auto& table : tables) {
        for (const QString& example : QString(table.examples).split(", ")) {
            const QStringList parts = example.split(": ");
            QTest::newRow(qPrintable(example)) << table.formatter << parts[0].toULongLong() << parts[1];
        }
    }
}

void ValueFormattingTest::examples()
{
    QFETCH(Formatter, formatter);
    QFETCH(qulonglong, value);
    QTEST(formatter(value), "text");
}

void ValueFormattingTest::agreesWithReference()
{
    std::mt19937_64 random(20260205);
    for (int i = 0; i < 100000; ++i) {
        // Every magnitude is as likely as any other. From each value come some on the edges of rounding: half
        // way between two decimal steps and just below, and the first and the last of a binary step.
        const unsigned long long value = random() >> random() % 64;
        const unsigned long long step = static_cast<unsigned long long>(std::pow(10, random() % 19));
        const unsigned long long half = value - value % step + step / 2;
        const unsigned long long lowBits = (1ULL << random() % 40) - 1;
        for (const unsigned long long each : {value, half, half - 1, value & ~lowBits, value | lowBits}) {
            QCOMPARE(clockSpeedConvertUserFriendly(each).toStdString(), reference::clockSpeed(each));
            QCOMPARE(memorySizeConvertUserFriendly(each).toStdString(), reference::memorySize(each));
            QCOMPARE(diskSizeConvertUserFriendly(each).toStdString(), reference::diskSize(each));
        }
    }
}

QTEST_GUILESS_MAIN(ValueFormattingTest)
#include "valueFormattingTest.moc"
