// What any thread may call, on several threads at once. The build under the thread sanitizer is what this is for;
// without it the texts still have to be the ones that a thread alone gets.

#include "recordingSupport.h"
#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/norvexNetworkIfInfo.h"
#include "systeminfo/norvexSystemInfo.h"

#include <QtTest>
#include <atomic>
#include <functional>
#include <thread>
#include <vector>

using namespace norvex;
using namespace norvex::SystemInfo;

using SectionText = QString (*)();
Q_DECLARE_METATYPE(SectionText)

namespace {

/// Many of the recordings make sections log warnings, here on several threads at once.
void discard(QtMsgType, const QMessageLogContext&, const QString&) {}

/// Makes a text on four threads, several times on each, and returns those that are not the expected one.
QStringList onThreads(int rounds, const QString& expected, const std::function<QString()>& text)
{
    std::vector<QStringList> others(4);
    std::vector<std::thread> threads;
    threads.reserve(others.size());
    for (QStringList& ofThread : others) {
        threads.emplace_back([&ofThread, rounds, &expected, &text] {
            for (int i = 0; i < rounds; ++i) {
                const QString result = text();
                if (result != expected) {
                    ofThread += result;
                }
            }
        });
    }
    QStringList all;
    for (std::size_t i = 0; i < threads.size(); ++i) {
        threads[i].join();
        all += others[i];
    }
    return all;
}

std::shared_ptr<const Machine> recording(const char* name)
{
    QString reason;
    auto machine = loadRecording(QStringLiteral(NORVEX_TEST_DATA "/recordings/%1.plist").arg(name), &reason);
    QTest::qVerify(machine != nullptr, name, qPrintable(reason), __FILE__, __LINE__);
    return machine;
}

QString identification(const QString& report)
{
    QStringList addresses;
    unsigned char processors = 0;
    unsigned short revision = 0;
    QString message;
    extractAccessKeyValues(report, false, addresses, processors, revision, message);
    return addresses.join(' ') + QStringLiteral(" %1 %2 ").arg(processors).arg(revision) + message;
}

} // namespace

class ThreadsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qInstallMessageHandler(discard); }

    void cleanup()
    {
        setMachine(nullptr);
        QVERIFY(liveCounts().isZero());
    }

    void recordedMachine_data()
    {
        QTest::addColumn<QString>("name");
        const QDir folder = recordingFolder();
        for (const QString& name : folder.entryList()) {
            QTest::newRow(qPrintable(name)) << folder.filePath(name);
        }
    }

    void recordedMachine()
    {
        QFETCH(QString, name);
        setMachine(loadRecording(name, nullptr));
        QCOMPARE(onThreads(5, MacSysInfo::allInfos(), MacSysInfo::allInfos), QStringList());
    }

    void thisHost_data()
    {
        QTest::addColumn<SectionText>("text");
        QTest::addColumn<bool>("moves");
        // Clocks and block counts move on their own, and ports come and go.
        const QStringList moving{"cpuInfo", "listFileSystemVolumesInfo", "ioKitGetRs232SerialDevices",
                                 "qtDateTime"};
        for (const SectionInfo& section : sections()) {
            if (section.thread == SectionThread::Any) {
                QTest::newRow(section.name) << section.text << moving.contains(section.name);
            }
        }
    }

    void thisHost()
    {
        QFETCH(SectionText, text);
        QFETCH(bool, moves);
        const auto steadyText = [text, moves] { return moves ? text().section(':', 0, 0) : text(); };
        QCOMPARE(onThreads(10, steadyText(), steadyText), QStringList());
    }

    void reports_data()
    {
        QTest::addColumn<QString>("report");
        for (const char* name : {"macintosh", "windows"}) {
            const QByteArray text = contentsOf(QStringLiteral(NORVEX_TEST_DATA "/reports/%1.txt").arg(name));
            QVERIFY(!text.isEmpty());
            QTest::newRow(name) << QString::fromUtf8(text);
        }
    }

    void reports()
    {
        QFETCH(QString, report);
        QCOMPARE(onThreads(50, identification(report), [&report] { return identification(report); }),
                 QStringList());
    }

    /// A report that is being made meanwhile may ask both machines; it keeps its frame and leaves nothing behind.
    void machineChangesMeanwhile()
    {
        const std::shared_ptr<const Machine> machines[] = {recording("ioKitGetRs232SerialDevices-parents"),
                                                           recording("report-complete"), nullptr};
        std::atomic<bool> ends{false};
        std::thread changing([&] {
            for (std::size_t i = 0; !ends; ++i) {
                setMachine(machines[i % std::size(machines)]);
            }
        });
        const auto separators = [] { return QString::number(MacSysInfo::allInfos().count(separator())); };
        const QStringList others =
            onThreads(20, QString::number(groupCount(ReportHalf::Macintosh)), separators);
        ends = true;
        changing.join();
        QCOMPARE(others, QStringList());
    }
};

QTEST_GUILESS_MAIN(ThreadsTest)
#include "threadsTest.moc"
