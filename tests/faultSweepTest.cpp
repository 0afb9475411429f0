#include "recordingSupport.h"
#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/mac/platform/failureInjection.h"

#include <QtTest>

using namespace norvex;
using namespace norvex::SystemInfo::MacSysInfo;

namespace {

/// The sections in the order of the report, the group between separator lines to which each belongs, and what
/// it prints whatever fails.
const struct
{
    int group;
    const char* lasting;
    QString (*text)();
} sections[] = {
    {0, "MacOS version: ", [] { return osVersion(true); }},
    {0, "Kernel information:\n", kernelInfo},
    {1, "", macModel},
    {1, "Architecture of executed binary: Intel (64bit mode)\n", architecture},
    {1, "", cpuInfo},
    {2, "", memoryInfo},
    {3, "AHCI disk (from IOKit)\n", ioKitSataDiskDevices},
    {4, "AHCI Serial ATAPI (from IOKit)\n", ioKitSerialAtapiDevices},
    {5, "NVMEXpress devices (from IOKit)\n", ioKitNVMExpressDevices},
    {6, "Volumes\n", listFileSystemVolumesInfo},
    {7, "Ethernet interfaces (from IOKit)\n", ioKitEthernetDevices},
    {8, "Platform info (from IOKit)\n", ioKitPlatformInfos},
    {9, "Root info (from IOKit)\n", ioKitRootInfos},
    {10, "Graphics card info (from IOKit)\n", ioKitGraphicsCards},
    {11, "Attached USB devices (from IOKit):\n", ioKitUsbDevices},
    {12, "RS232 Serial Devices Info (from IOKit)\n", [] { return ioKitGetRs232SerialDevices(true); }},
    {13, "FTDI driver\n", checkFtdiDriver},
    {14, "Bonjour version: ", bonjourVersion},
    {15, "Default e-mail app: '", defaultEmailApp},
};

/// Lines that only a failure puts into the report.
const QStringList failureLines{
    "failed to get IO master port",
    "ioCalloutDeviceName == NULL!! Maybe no correct driver installed for that RS232 device!",
    "!!Device does not exist as file!!",
    "No driver installed.",
    "Key CFBundleVersion not found",
    "Key CFBundleName not found",
};

/// The groups of a report; empty when its banner or one of its 16 separator lines is missing.
QStringList groupsOf(const QString& report)
{
    const QString banner = "############ Macintosh specific section ###########\n";
    QStringList groups = report.mid(banner.size()).split(QString(72, '-') + '\n');
    if (!report.startsWith(banner) || groups.size() != 17 || !groups.takeLast().isEmpty()) {
        return {};
    }
    return groups;
}

QString labelOf(const QString& line)
{
    return line.left(line.indexOf(':') + 1);
}

/// The first line of a group whose label is not among those of the known lines and that tells of no failure.
QString strangeLine(const QString& group, const QString& known)
{
    const QStringList lines = known.split('\n');
    QSet<QString> labels;
    for (const QString& line : lines) {
        labels += labelOf(line);
    }
    for (const QString& line : group.split('\n')) {
        const QString label = labelOf(line);
        const bool isKnown =
            label.isEmpty() ? lines.contains(line) || failureLines.contains(line) : labels.contains(label);
        if (!isKnown) {
            return line;
        }
    }
    return QString();
}

/// For every call that can fail while the report is made, the group that it is made for.
QVector<int> groupsOfCalls()
{
    QVector<int> groups;
    for (const auto& section : sections) {
        failCall(0);
        section.text();
        groups += QVector<int>(int(countedCalls()), section.group);
    }
    return groups;
}

} // namespace

class FaultSweepTest : public QObject
{
    Q_OBJECT

private slots:
    void everyCallFails_data();
    void everyCallFails();
    void cleanup();
};

void FaultSweepTest::everyCallFails_data()
{
    QTest::addColumn<QString>("file");
    const QDir folder = recordingFolder();
    QVERIFY2(!folder.isEmpty(), qPrintable(folder.path()));
    for (const QFileInfo& file : folder.entryInfoList()) {
        if (qEnvironmentVariableIsSet("NORVEX_RECORDINGS") || file.fileName() == "report-complete.plist") {
            QTest::newRow(qPrintable(file.completeBaseName())) << file.filePath();
        }
    }
}

// One call fails, once: only the group that it is made for may change, and that by lines that go, values that
// change or texts that tell of the failure. Where a recording makes very many calls, some of them stand for
// all.
void FaultSweepTest::everyCallFails()
{
    QFETCH(QString, file);
    QString refusal;
    setMachine(loadRecording(file, &refusal));
    QVERIFY2(refusal.isEmpty(), qPrintable(refusal));
    const LoggedMessages messages;
    const QVector<int> calls = groupsOfCalls();
    failCall(0);
    const QStringList undisturbed = groupsOf(allInfos());
    QCOMPARE(undisturbed.size(), 16);
    QCOMPARE(countedCalls(), calls.size());
    QStringList known = undisturbed;
    known[12] += ioKitGetRs232SerialDevices(false); // a port whose type cannot be had is listed

    const int stride = std::max(1, calls.size() / 2500);
    int failed = 0;
    int changed = 0;
    for (int call = 0; call < calls.size(); call += stride, ++failed) {
        const QByteArray which = "call " + QByteArray::number(call + 1);
        failCall(call + 1);
        const QStringList groups = groupsOf(allInfos());
        QVERIFY2(liveCounts().isZero(), which.constData());
        QVERIFY2(groups.size() == 16, which.constData());
        for (const auto& section : sections) {
            QVERIFY2(groups[section.group].contains(section.lasting), which.constData());
        }
        for (int group = 0; group < 16; ++group) {
            if (group != calls[call]) {
                QCOMPARE(groups[group], undisturbed[group]);
            }
        }
        const QString strange = strangeLine(groups[calls[call]], known[calls[call]]);
        QVERIFY2(strange.isEmpty(), qPrintable(which + ": " + strange));
        changed += groups != undisturbed;
    }
    QVERIFY(changed > 0);
    fprintf(stdout, "%s: made %d of %d calls fail, %d changed the report\n", QTest::currentDataTag(), failed,
            calls.size(), changed);
}

void FaultSweepTest::cleanup()
{
    failCall(0);
    setMachine(nullptr);
}

QTEST_GUILESS_MAIN(FaultSweepTest)
#include "faultSweepTest.moc"
