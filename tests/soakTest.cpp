// Many reports in one process: memory, descriptors and threads stay what they were. NORVEX_SOAK is the number of
// reports, a few hundred when it is not set; with OpenGL there are a twentieth of them.

#include "recordingSupport.h"
#include "systeminfo/norvexSystemInfo.h"

#include <QApplication>
#include <QOpenGLContext>
#include <QtTest>
#include <limits>
#include <malloc.h>
#include <unistd.h>

using namespace norvex;

namespace {

/// How much the caches of other libraries may grow after the first reports. A leak of a few bytes in each of ten
/// thousand reports is more than that.
const qint64 heapAllowance = 128LL * 1024;
#ifdef __SANITIZE_ADDRESS__
const qint64 residentAllowance = std::numeric_limits<qint64>::max(); // it keeps freed memory for a while
#else
const qint64 residentAllowance = 4LL * 1024 * 1024;
#endif

/// What this process holds.
struct Held
{
    qint64 heapBytes;     ///< allocated and not freed
    qint64 residentBytes; ///< of physical memory
    int descriptors;
    int threads;
};

Held held()
{
    malloc_trim(0);
    const struct mallinfo2 heap = mallinfo2();
    const QByteArray pages = contentsOf("/proc/self/statm").split(' ').value(1);
    const auto entries = [](const char* folder) {
        return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
    };
    return {qint64(heap.uordblks) + qint64(heap.hblkhd), pages.toLongLong() * sysconf(_SC_PAGESIZE),
            entries("/proc/self/fd"), entries("/proc/self/task")};
}

void makeReports(int count, bool skipOpenGL)
{
    for (int i = 0; i < count; ++i) {
        const QString report = SystemInfo::allInfos(skipOpenGL);
        if (!report.endsWith(SystemInfo::separator())) {
            QFAIL("a report without its last separator");
        }
        // What the main loop of an application does between two reports.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
}

} // namespace

class SoakTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { setMachine(nullptr); }

    void staysFlat_data()
    {
        QTest::addColumn<QString>("recording");
        QTest::addColumn<bool>("skipOpenGL");
        QTest::newRow("live") << QString() << true;
        QTest::newRow("recorded") << NORVEX_TEST_DATA "/recordings/report-complete.plist" << true;
        QTest::newRow("with OpenGL") << QString() << false;
    }

    void staysFlat()
    {
        QFETCH(QString, recording);
        QFETCH(bool, skipOpenGL);
        bool isNumber = false;
        const int wanted = qEnvironmentVariableIntValue("NORVEX_SOAK", &isNumber);
        const int reports = std::max(1, (isNumber ? wanted : 200) / (skipOpenGL ? 1 : 20));
        const LoggedMessages quiet;
        QString reason;
        if (!recording.isEmpty()) {
            setMachine(loadRecording(recording, &reason));
        }
        QCOMPARE(reason, QString());

        if (!skipOpenGL) {
            if (!qEnvironmentVariableIsSet("DISPLAY")) {
                QSKIP("no display, so no OpenGL");
            }
            QVERIFY(SystemInfo::allInfos(false).contains("hasOpenGL         1\n"));
        }

        // Caches of Qt, of the driver and of the C library fill during the first ones.
        makeReports(10, skipOpenGL);
        LoggedMessages::text().clear();
        const Held before = held();
        QElapsedTimer timer;
        timer.start();
        makeReports(reports, skipOpenGL);
        const qint64 milliseconds = timer.elapsed();
        LoggedMessages::text() = QString();
        const Held after = held();

        std::fprintf(stderr,
                     "%s: %d reports, %.2f ms each; heap %+lld bytes, resident %+lld bytes, %+d descriptors, "
                     "%+d threads\n",
                     QTest::currentDataTag(), reports, double(milliseconds) / reports,
                     static_cast<long long>(after.heapBytes - before.heapBytes),
                     static_cast<long long>(after.residentBytes - before.residentBytes),
                     after.descriptors - before.descriptors, after.threads - before.threads);
        QVERIFY(after.heapBytes - before.heapBytes <= heapAllowance);
        QVERIFY(after.residentBytes - before.residentBytes <= residentAllowance);
        QCOMPARE(after.descriptors, before.descriptors);
        QCOMPARE(after.threads, before.threads);
        QVERIFY(!QOpenGLContext::currentContext());
    }
};

QTEST_MAIN(SoakTest)
#include "soakTest.moc"
