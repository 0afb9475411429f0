#include "recordingSupport.h"
#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/mac/platform/failureInjection.h"

#include <QtTest>

using namespace norvex;
using namespace norvex::SystemInfo::MacSysInfo;
using norvex::SystemInfo::ReportHalf;
using norvex::SystemInfo::SectionInfo;

namespace {

/// The Macintosh sections in the order of the report.
QVector<SectionInfo> macintoshSections()
{
    QVector<SectionInfo> found;
    for (const SectionInfo& section : SystemInfo::sections()) {
        if (section.half == ReportHalf::Macintosh) {
            found += section;
        }
    }
    return found;
}

/// Lines that stand in the report only because a call failed.
const QStringList failureLines{
    "failed to get IO master port",
    "ioCalloutDeviceName == NULL!! Maybe no correct driver installed for that RS232 device!",
    "!!Device does not exist as file!!",
    "No driver installed.",
    "Key CFBundleVersion not found",
    "Key CFBundleName not found",
};

/// The groups of a report; empty when its banner or a separator line is missing.
QStringList groupsOf(const QString& report)
{
    const QString banner = "############ Macintosh specific section ###########\n";
    QStringList groups = report.mid(banner.size()).split(QString(72, '-') + '\n');
    const bool isWhole = report.startsWith(banner) && groups.takeLast().isEmpty() &&
                         groups.size() == groupCount(ReportHalf::Macintosh);
    return isWhole ? groups : QStringList();
}

QString labelOf(const QString& line)
{
    return line.left(line.indexOf(':') + 1);
}

/// The labels of a text's lines; of lines without one, the lines.
QSet<QString> labelsOf(const QString& text)
{
    QSet<QString> labels;
    for (const QString& line : text.split('\n')) {
        labels += labelOf(line).isEmpty() ? line : labelOf(line);
    }
    return labels;
}

/// The first line of a group that is neither a failure line nor has a label of the known lines.
QString strangeLine(const QString& group, const QString& known)
{
    const QSet<QString> labels = labelsOf(known);
    for (const QString& line : group.split('\n')) {
        const bool isKnown = labels.contains(labelOf(line).isEmpty() ? line : labelOf(line));
        if (!isKnown && !failureLines.contains(line)) {
            return line;
        }
    }
    return QString();
}

/// What a section prints whatever fails: the labels that it has on this machine and on one that answers nothing.
QSet<QString> lastingLabels(const SectionInfo& section)
{
    QSet<QString> labels = labelsOf(section.text());
    const auto machine = currentMachine();
    useMachine(QByteArray());
    labels &= labelsOf(section.text());
    setMachine(machine);
    return labels;
}

/// For every call that can fail while the report is made, the group that it is made for.
QVector<int> groupsOfCalls()
{
    QVector<int> groups;
    for (const SectionInfo& section : macintoshSections()) {
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

/// One call fails, once: only the group that it is made for may change, and that by lines that go, values that
/// change or texts that tell of the failure. Where a recording makes very many calls, some of them stand for
/// all.
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
    QVERIFY(!undisturbed.isEmpty());
    QCOMPARE(countedCalls(), calls.size());
    QStringList known = undisturbed;
    QVector<QSet<QString>> lasting(undisturbed.size());
    for (const SectionInfo& section : macintoshSections()) {
        lasting[section.group] += lastingLabels(section);
        if (section.name == QByteArray("ioKitGetRs232SerialDevices")) {
            known[section.group] += ioKitGetRs232SerialDevices(false); // a port of unknown type is listed
        }
    }

    const int stride = std::max(1, calls.size() / 2500);
    int failed = 0;
    int changed = 0;
    for (int call = 0; call < calls.size(); call += stride, ++failed) {
        const QByteArray which = "call " + QByteArray::number(call + 1);
        failCall(call + 1);
        const QStringList groups = groupsOf(allInfos());
        QVERIFY2(liveCounts().isZero(), which.constData());
        QVERIFY2(!groups.isEmpty(), which.constData());
        for (int group = 0; group < groups.size(); ++group) {
            QVERIFY2(labelsOf(groups[group]).contains(lasting[group]), which.constData());
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
