#include "cases.h"
#include "systeminfo/norvexSystemInfo.h"

#include <QFile>
#include <QTranslator>
#include <QtTest>
#include <random>

using norvex::SystemInfo::extractAccessKeyValues;

namespace {

const QString qt = "###### System informations retrieved using Qt #######\n";
const QString mac = "############ Macintosh specific section ###########\n";
const QString windows = "############ Windows specific section ###########\n";
const QString network = "Network Interfaces Info\n";
const QString separator(55, QLatin1Char('_'));
const QString cores = "Number of physical cores: 4\n";
const QString address = "00:11:22:33:44:55";

QString block(const QString& name, const QString& hardwareAddress = address)
{
    return separator + "\n" + name + "\nHardware address: " + hardwareAddress + "\nStatus: Up\n";
}

/// Everything that a reading gives, in one text: success or the message, addresses, processors, revision. The
/// variables begin with values that no report of these tests holds.
QString reading(const QString& report, bool skipBraced, QStringList addresses)
{
    unsigned char processors = 77;
    unsigned short revision = 7777;
    QString message = "untouched";
    const bool success = extractAccessKeyValues(report, skipBraced, addresses, processors, revision, message);
    return QStringLiteral("%1%2 [%3] %4 %5")
        .arg(success ? "true " : "", message, addresses.join(' '))
        .arg(processors)
        .arg(revision);
}

QString file(const char* name)
{
    QFile file(QStringLiteral(NORVEX_TEST_DATA "/reports/") + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// Puts the context in front of every text.
class ContextTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* text, const char*, int) const override
    {
        return QString("%1: %2").arg(context, text);
    }
};

} // namespace

class ReportReaderTest : public QObject
{
    Q_OBJECT

private slots:
    void failuresAndHostileTexts_data();
    void failuresAndHostileTexts();
    void translatedMessage();
    void values_data();
    void values();
    void resultsInPlaceOfReport();
    void randomBlocks();
};

void ReportReaderTest::failuresAndHostileTexts_data()
{
    addCases("reportReader/failures.txt", {"report", "expected"});
    // Texts that would take minutes if any of the time grew with the square of the length.
    const QString start = mac + qt + network;
    const QString valid = start + block("en0");
    const QString end = "\n" + block("en0") + cores + "CPU signature: 9\n";
    const QString good = "true untouched [" + address + "] 4 9";
    const auto repeated = [](const QString& text) { return text.repeated(10000000 / text.size()); };
    QTest::newRow("separators") << start + repeated(separator + "\n") + end << good;
    QTest::newRow("almost separators") << start + repeated(separator.left(54) + QChar(0x15f)) + end << good;
    QTest::newRow("endless separator")
        << start + repeated("_")
        << "Failed to extract network interface name - no end of line after separator [] 77 7777";
    QTest::newRow("labels") << start + separator + "\nx\n" + repeated("Hardware address: \n") + end << good;
    QTest::newRow("signs") << valid + cores + "CPU signature: 9" + repeated("=") + "\n" << good;
    QTest::newRow("blanks") << valid + "Number of physical cores:" + repeated(" \r") + "1x\n"
                            << "Could not convert number of processors '1x'. [" + address + "] 0 7777";
}

void ReportReaderTest::failuresAndHostileTexts()
{
    QFETCH(QString, report);
    QTEST(reading(report, false, {}), "expected");
}

void ReportReaderTest::translatedMessage()
{
    ContextTranslator translator;
    QCoreApplication::installTranslator(&translator);
    QCOMPARE(reading(qt, false, {}),
             QString("QObject: No valid operating system specific section found! [] 77 7777"));
}

void ReportReaderTest::values_data()
{
    addCases("reportReader/values.txt", {"report", "result", "resultSkippingBraces"});
    const QString start = "true untouched [earlier ";
    const QString macintosh =
        start + "A0:99:9B:0C:11:22 82:0A:60:C2:4B:00 02:99:9B:0C:11:22 82:0A:60:C2:4B:00] 4 1633";
    const QString other = "00:1b:21:aa:bb:02 00:1B:21:AA:BB:03] 8 15363";
    QTest::newRow("macintosh.txt") << file("macintosh.txt") << macintosh << macintosh;
    QTest::newRow("windows.txt") << file("windows.txt") << start + "00:1B:21:AA:BB:01 " + other
                                 << start + other;
}

void ReportReaderTest::values()
{
    QFETCH(QString, report);
    const QString withLineFeeds = QString(report).remove('\r');
    for (const QString& each : {withLineFeeds, QString(withLineFeeds).replace("\n", "\r\n")}) {
        QTEST(reading(each, false, {"earlier"}), "result");
        QTEST(reading(each, true, {"earlier"}), "resultSkippingBraces");
    }
}

/// The message, and the list of addresses as it grows.
void ReportReaderTest::resultsInPlaceOfReport()
{
    QString blocks;
    for (int i = 100; i < 600; ++i) {
        blocks += block("en", QString("0:0:0:0:0:%1").arg(i));
    }
    QString report = mac + cores + qt + network + blocks;
    QStringList addresses = {report};
    addresses.reserve(200);
    const QByteArray behind(2000, 'x'); // where the list could grow
    while (addresses.size() < 200) {
        addresses += QString();
    }
    unsigned char processors = 0;
    unsigned short revision = 0;
    const QString message = "Could not find processor revision!";
    QVERIFY(!extractAccessKeyValues(addresses[0], false, addresses, processors, revision, report));
    QCOMPARE(report, message);
    QCOMPARE(addresses.size() + behind.size(), 700 + 2000);
    QCOMPARE(addresses.last(), QString("0:0:0:0:0:599"));
}

void ReportReaderTest::randomBlocks()
{
    const QStringList names = {"en", "awdl", "p2p", "{", "Ethernet ", "{x}", "}", "bridge"};
    const QStringList addresses = {address, "AA:bb:01:02:03:04", "1:2:3:4:5", "1:2:3:4:5:6:7", "", "::::: ="};
    std::mt19937 random(1202);
    const auto below = [&random](unsigned limit) { return int(random() % limit); };
    for (int round = 0; round < 2000; ++round) {
        const bool isMac = below(2);
        const bool skipBraced = below(2);
        const unsigned processors = unsigned(random()) >> below(32);
        const unsigned revision = unsigned(random()) >> below(32);
        const QString values =
            isMac ? "Number of physical cores: %1\nCPU signature: %2\n"
                  : "Processor information:\nNumber of processors: %1\nProcessor revision:%2\n";
        QString report = (isMac ? mac : windows) + values.arg(processors).arg(revision) + qt + network;
        QStringList expected = {"earlier"};
        QString name; // Of the block whose address is still to come: one without the label leaves it open.
        for (int blocks = below(20); blocks > 0; --blocks) {
            const QString own = names[below(8)] + QString(below(2), '0') + QString(below(2), '}');
            name = name.isEmpty() ? own : name;
            report +=
                separator + QString(below(54), '_') + "\n" + own + "\n" + QString(below(70), '-') + "\n";
            if (below(6) == 0) {
                continue;
            }
            const QString& hardwareAddress = addresses[below(6)];
            report += "Hardware address:" + QString(hardwareAddress).insert(below(6), " ") + "\nStatus: Up\n";
            const bool ignored =
                (isMac && (name.startsWith("awdl") || (name.startsWith("p2p") && name != "p2p0"))) ||
                (skipBraced && name.startsWith('{') && name.endsWith('}'));
            if (hardwareAddress.count(':') == 5 && !ignored) {
                expected << QString(hardwareAddress).remove(' ');
            }
            name.clear();
        }
        QCOMPARE(reading(below(2) ? report.replace("\n", "\r\n") : report, skipBraced, {"earlier"}),
                 QString("true untouched [%1] %2 %3")
                     .arg(expected.join(' '))
                     .arg(processors & 0xff)
                     .arg(revision & 0xffff));
    }
}

QTEST_GUILESS_MAIN(ReportReaderTest)
#include "reportReaderTest.moc"
