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
    const QString start = mac + qt + network;
    const QString nothing = " [] 77 7777";
    const QString noNetwork = "No valid network interface section found!" + nothing;
    const QString noNameLine = "Failed to extract network interface name - no end of line for name";
    const QString noSeparatorEnd =
        "Failed to extract network interface name - no end of line after separator";
    const QString valid = start + block("en0");
    const QString found = " [" + address + "] ";
    const QString noNumber = "Could not find number of processors!" + found + "77 7777";
    const QString noNumberValue = "Could not find the value for number of processors." + found + "77 7777";
    const QString noRevision = "Could not find processor revision!" + found;
    const QString noRevisionValue = "Could not find the value the processor revision." + found + "4 7777";
    const QString win = windows + "Number of processors: 1\nProcessor information:\n";
    const QString good = "true untouched" + found + "4 9";
    const QString end = "\n" + block("en0") + cores + "CPU signature: 9\n";
    const auto repeated = [](const QString& text) { return text.repeated(10000000 / text.size()); };
    const std::pair<QString, QString> rows[] = {
        {"", "Section with the information retrieved using Qt was not found!" + nothing},
        {qt, "No valid operating system specific section found!" + nothing},
        {mac + qt, noNetwork},
        {mac + network + block("en0") + qt, noNetwork},
        {start + separator, noSeparatorEnd + nothing},
        {valid + separator + "\nen1", noNameLine + found + "77 7777"},
        {start + separator + "\n\nen1\n", noNameLine + nothing},
        {start, "No MAC addresses found!" + nothing},
        {start + separator + "\nen0\nHardware address: " + address, "No MAC addresses found!" + nothing},
        {start + separator + "\nen0\nHardware address", "No MAC addresses found!" + nothing},
        {windows + valid, "Processor specific section not found!" + found + "77 7777"},
        {valid, noNumber},
        {win + valid, noNumber},
        {valid + "Number of physical cores: 4", noNumberValue},
        {valid + "Number of physical cores:\n", noNumberValue},
        {valid + "Number of physical cores: 4x \n",
         "Could not convert number of processors '4x'." + found + "0 7777"},
        {valid + "Number of physical cores: 4294967296\n",
         "Could not convert number of processors '4294967296'." + found + "0 7777"},
        {valid + cores, noRevision + "4 7777"},
        {win + "Number of processors: 2\nCPU sub type: 8\n" + valid, noRevision + "2 7777"},
        {valid + cores + "CPU signature: 1", noRevisionValue},
        {valid + cores + "CPU signature:\n", noRevisionValue},
        {valid + cores + "CPU sub type", noRevisionValue},
        {valid + cores + "CPU signature: - 5 = 0x5\n",
         "Could not convert processor revision '-5'." + found + "4 0"},
        // Texts that would take minutes if any of the time grew with the square of the length.
        {start + repeated(separator + "\n") + end, good},
        {start + repeated(separator.left(54) + QChar(0x15f)) + end, good},
        {start + repeated("_"), noSeparatorEnd + nothing},
        {start + separator + "\nx\n" + repeated("Hardware address: \n") + end, good},
        {valid + cores + "CPU signature: 9" + repeated("=") + "\n", good},
        {valid + "Number of physical cores:" + repeated(" \r") + "1x\n",
         "Could not convert number of processors '1x'." + found + "0 7777"},
    };
    QTest::addColumn<QString>("report");
    QTest::addColumn<QString>("expected");
    for (const auto& row : rows) {
        QTest::addRow("%d %s", int(&row - rows), qPrintable(row.second)) << row.first << row.second;
    }
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
    const QString signature = "CPU signature: 198339\n";
    const QString frame = mac + cores + signature + qt + network;
    const QString win =
        windows +
        "Processor revision:5\nProcessor information:\nNumber of processors:4\nProcessor revision:9\n";
    const QString names = block("awdl0", "a:1::::") + block("p2p1", "b:1::::") + block("p2p0", "c:1::::") +
                          block("AWDL0", "d:1::::") + block("p2p00", "e:1::::") + block("p2", "f:1::::") +
                          block("{1}", "g:1::::") + block("{2", "h:1::::") + block("3}", "i:1::::");
    const QString badAddresses = block("a", "1:2:3:4:5") + block("b", "1:2:3:4:5:6:7") + block("c", "") +
                                 separator + "\nd\nHardware address:\n" + block("e", "x");
    const QString valid = mac + qt + network + block("en0");
    const struct
    {
        const char* name;
        QString report;
        const char* result;
        const char* resultSkippingBraces = nullptr; // Where it differs.
    } rows[] = {
        {"minimal", frame + block("en0"), " 00:11:22:33:44:55] 4 1731"},
        {"no interface, but an earlier address", frame, "] 4 1731"},
        {"cut off at an address", frame + separator + "\nen1\nHardware address: " + address, "] 4 1731"},
        {"names", frame + names, " c:1:::: d:1:::: f:1:::: g:1:::: h:1:::: i:1::::] 4 1731",
         " c:1:::: d:1:::: f:1:::: h:1:::: i:1::::] 4 1731"},
        {"both banners", frame + win + names,
         " a:1:::: b:1:::: c:1:::: d:1:::: e:1:::: f:1:::: g:1:::: h:1:::: i:1::::] 4 9",
         " a:1:::: b:1:::: c:1:::: d:1:::: e:1:::: f:1:::: h:1:::: i:1::::] 4 9"},
        {"addresses", frame + badAddresses + block("Hardware address: 0:0:0:0:0:0", "aB: :c:d :e:F"),
         " aB::c:d:e:F] 4 1731"},
        {"almost a banner or a label",
         windows.left(48) + separator.left(54) + "number of physical cores: 8\n" + frame, "] 4 1731"},
        {"first label counts", frame + QString(cores).replace('4', '9') + "CPU signature: 5\n", "] 4 1731"},
        {"300 cores", valid + "Number of physical cores: 300\nCPU signature:65537=1\n",
         " 00:11:22:33:44:55] 44 1"},
        {"fallback", valid + cores + "CPU sub type: 8 = 0x8 = X86_64 Haswell feature set\n",
         " 00:11:22:33:44:55] 4 8"},
        {"fallback before signature", valid + cores + "CPU sub type: 8 = 0x8 = \n" + signature,
         " 00:11:22:33:44:55] 4 1731"},
        {"blank values", valid + "Number of physical cores:  \nCPU signature: = 7\n",
         " 00:11:22:33:44:55] 77 7777"},
        {"macintosh.txt", file("macintosh.txt"),
         " A0:99:9B:0C:11:22 82:0A:60:C2:4B:00 02:99:9B:0C:11:22 82:0A:60:C2:4B:00] 4 1633"},
        {"windows.txt", file("windows.txt"),
         " 00:1B:21:AA:BB:01 00:1b:21:aa:bb:02 00:1B:21:AA:BB:03] 8 15363",
         " 00:1b:21:aa:bb:02 00:1B:21:AA:BB:03] 8 15363"},
    };
    QTest::addColumn<QString>("report");
    QTest::addColumn<QString>("result");
    QTest::addColumn<QString>("resultSkippingBraces");
    for (const auto& row : rows) {
        const QString start = "true untouched [earlier";
        QTest::newRow(row.name) << row.report << start + row.result
                                << start + (row.resultSkippingBraces ? row.resultSkippingBraces : row.result);
    }
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
