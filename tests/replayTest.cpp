#include "recordingSupport.h"
#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/norvexSystemInfo.h"

#include <QtTest>
#include <ctime>

using namespace norvex::SystemInfo::MacSysInfo;
using norvex::SystemInfo::ReportHalf;
using norvex::SystemInfo::SectionInfo;
using norvex::SystemInfo::sections;

namespace {

/// What a recording gives, by its name up to the first hyphen: a section, "system" (what is printed of the system),
/// "serialAll" (every serial port), or else the whole Macintosh section.
QString textFor(const QString& recording)
{
    const QString topic = recording.section('-', 0, 0);
    for (const SectionInfo& section : sections()) {
        if (topic == QLatin1String(section.name)) {
            return section.text();
        }
    }
    if (topic == "system") {
        return osVersion(true) + platformName() + sNewLine + kernelInfo() + macModel() + architecture();
    }
    return topic == "serialAll" ? ioKitGetRs232SerialDevices(false) : allInfos();
}

struct Replay
{
    QString text;
    QString warnings;
};

/// A text of the whole Macintosh section ends where the section ended when it was written. Sections that were added
/// since follow it; they have recordings of their own.
void cutNewerSections(Replay& replay, const Replay& expected)
{
    const int groups = expected.text.count(separator());
    if (groups == groupCount(ReportHalf::Macintosh)) {
        return;
    }
    for (const SectionInfo& section : sections()) {
        if (section.half == ReportHalf::Macintosh && section.group >= groups) {
            const QStringList own = recordingFolder().entryList({QString(section.name) + "-*.plist"});
            QVERIFY2(!own.isEmpty(), section.name);
        }
    }
    replay.text = replay.text.section(separator(), 0, groups - 1) + separator();
    replay.warnings.truncate(expected.warnings.size());
}

QList<QStringList> tableOf(const char* fileName)
{
    QList<QStringList> rows;
    for (const QByteArray& line : contentsOf(NORVEX_TEST_DATA "/" + QString(fileName)).split('\n')) {
        if (!line.isEmpty() && !line.startsWith('#')) {
            rows += QString::fromUtf8(line).split('\t');
        }
    }
    return rows;
}

} // namespace

class ReplayTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        qputenv("TZ", "UTC");
        tzset();
    }
    void cleanupTestCase() { norvex::setMachine(nullptr); }
    void recordings_data();
    void recordings();
    void processorNames_data();
    void processorNames();
    void usbVendors();
};

void ReplayTest::recordings_data()
{
    QTest::addColumn<QString>("file");
    const QDir folder = recordingFolder();
    QVERIFY2(!folder.isEmpty(), qPrintable(folder.path()));
    for (const QFileInfo& file : folder.entryInfoList()) {
        QTest::newRow(qPrintable(file.completeBaseName())) << file.path() + '/' + file.completeBaseName();
    }
}

/// Beside each recording stand the text that it must give and, unless there are none, the warnings.
void ReplayTest::recordings()
{
    QFETCH(QString, file);
    QString refusal;
    const auto machine = norvex::loadRecording(file + ".plist", &refusal);
    QVERIFY2(machine != nullptr, qPrintable(refusal));
    norvex::setMachine(machine);

    const LoggedMessages messages;
    Replay replay{textFor(QTest::currentDataTag()), messages.text()};
    QVERIFY(norvex::liveCounts().isZero());
    QVERIFY(QFile::exists(file + ".txt"));
    const Replay expected{QString::fromUtf8(contentsOf(file + ".txt")),
                          QString::fromUtf8(contentsOf(file + ".warnings"))};
    if (expected.text.startsWith("####")) {
        cutNewerSections(replay, expected);
    }
    sameLines(replay.text, expected.text);
    sameLines(replay.warnings, expected.warnings);
}

void ReplayTest::processorNames_data()
{
    QTest::addColumn<QStringList>("row");
    for (const QStringList& row : tableOf("processorNames.txt")) {
        QTest::newRow(qPrintable(row.mid(0, 4).join(' '))) << row;
    }
}

void ReplayTest::processorNames()
{
    QFETCH(QStringList, row);
    const char* const names[] = {"hw.cputype", "hw.cpusubtype", "hw.cpufamily", "machdep.cpu.model"};
    const char* const labels[] = {"CPU type: ", "CPU sub type: ", "CPU family: "};
    QCOMPARE(row.size(), 7);
    QString values;
    QString expected;
    for (int i = 0; i < 4; ++i) {
        if (row[i] != "-") {
            values += QString("<key>%1</key><integer size='32'>%2</integer>").arg(names[i], row[i]);
        }
    }
    for (int i = 0; i < 3; ++i) {
        if (row[4 + i] != "-") {
            expected += labels[i] + row[4 + i] + '\n';
        }
    }
    if (row[3] != "-") {
        expected += "CPU model: " + row[3] + '\n';
    }
    QVERIFY(useMachine("<key>sysctl</key><dict>" + values.toUtf8() + "</dict>"));
    QCOMPARE(cpuInfo(), expected);
}

/// The first vendor of the table, the last and some between, and IDs beside theirs, which have no name.
void ReplayTest::usbVendors()
{
    const auto rows = tableOf("usbVendors.txt");
    QVERIFY(rows.size() > 5);
    for (const QStringList& row : rows) {
        const unsigned id = row[0].toUInt(nullptr, 16);
        QCOMPARE(convertUsbVendorIdToName(id), row[1]);
        for (const unsigned other : {id - 1, id + 1, id + 0x10000, id + 0x80000000}) {
            QVERIFY2(convertUsbVendorIdToName(other).isNull(), qPrintable(row[0]));
        }
    }
    int names = 0;
    for (unsigned id = 0; id < 0x30000; ++id) {
        names += convertUsbVendorIdToName(id).isNull() ? 0 : 1;
    }
    QCOMPARE(names, 64);
}

QTEST_GUILESS_MAIN(ReplayTest)
#include "replayTest.moc"
