// What the helpers decide. Scripted services stand in for the system's, and record each call.

#include "machelpers/applicationServices.h"
#include "machelpers/norvexMacHelpers.h"
#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "tests/interruptions.h"
#include "tests/scriptedServices.h"

#include <QtTest>

#include <climits>
#include <functional>
#include <memory>
#include <optional>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace norvex;

/// Ends by a signal, with a core dump where the system writes one for it, into the current folder.
int dieOf(int signalNumber)
{
    const rlimit unlimited = {RLIM_INFINITY, RLIM_INFINITY};
    setrlimit(RLIMIT_CORE, &unlimited);
    signal(signalNumber, SIG_DFL);
    return raise(signalNumber);
}

void noteChild(int, siginfo_t*, void*) {}

} // namespace

class MacHelpersTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir folder_;
    std::unique_ptr<ScriptedServices> services_;

private slots:
    void initTestCase() { QVERIFY(QDir::setCurrent(folder_.path())); }

    void init()
    {
        services_ = std::make_unique<ScriptedServices>();
        setApplicationServices(services_.get());
    }

    void cleanup()
    {
        QCOMPARE(services_->openPools, 0);
        setApplicationServices(nullptr);
        activityTokenAvailable = false;
    }

    void versionGate_data()
    {
        QTest::addColumn<QList<int>>("version");
        QTest::addColumn<int>("failing");
        QTest::addColumn<bool>("opens");
        QTest::newRow("10.5") << QList<int>{10, 5, 8} << -1 << false;
        QTest::newRow("10.6") << QList<int>{10, 6, 0} << -1 << true;
        QTest::newRow("10.14") << QList<int>{10, 14, 6} << -1 << true;
        QTest::newRow("11.2") << QList<int>{11, 2, 9} << -1 << false;
        QTest::newRow("11.6") << QList<int>{11, 6, 0} << -1 << true;
        QTest::newRow("9.8") << QList<int>{9, 8, 9} << -1 << false;
        QTest::newRow("no major number") << QList<int>{10, 6, 0} << 0 << false;
        QTest::newRow("no minor number") << QList<int>{10, 6, 0} << 1 << false;
        QTest::newRow("no bug-fix number") << QList<int>{10, 6, 0} << 2 << true;
    }

    void versionGate()
    {
        QFETCH(QList<int>, version);
        QFETCH(int, failing);
        QFETCH(bool, opens);
        for (int index = 0; index < 3; ++index) {
            services_->version[index] = version[index];
        }
        services_->failingVersion = failing;
        services_->instances = {RunningApplication(7), RunningApplication(8)};
        services_->runningProcess = 5;
        const QStringList gate = {"gestalt 0 outside", "gestalt 1 outside", "gestalt 2 outside"};
        QCOMPARE(checkIfApplicationIsAlreadyRunningThenActivate(), opens);
        QCOMPARE(services_->calls == gate, !opens);
        services_->calls.clear();
        QCOMPARE(checkIfProcessWithIdIsRunning(5), opens);
        QCOMPARE(services_->calls, opens ? gate + QStringList{"running"} : gate);
        services_->calls.clear();
        QCOMPARE(checkVolumeCaseSensitiveForAppExecutableURL(), opens);
        QCOMPARE(services_->calls, opens ? gate + QStringList{"volume"} : gate);
    }

    void instances_data()
    {
        QTest::addColumn<QList<int>>("instances");
        QTest::addColumn<QStringList>("calls");
        QTest::newRow("none") << QList<int>{} << QStringList{};
        QTest::newRow("one, another") << QList<int>{8} << QStringList{};
        QTest::newRow("itself twice") << QList<int>{7, 7} << QStringList{"current", "current"};
        QTest::newRow("the first other")
            << QList<int>{7, 9, 8}
            << QStringList{"current", "current", "activate 9", "Activated other app =1 outside"};
    }

    void instances()
    {
        QFETCH(QList<int>, instances);
        QFETCH(QStringList, calls);
        for (const int instance : instances) {
            services_->instances.push_back(RunningApplication(quintptr(instance)));
        }
        QCOMPARE(checkIfApplicationIsAlreadyRunningThenActivate(), calls.size() > 2);
        QCOMPARE(services_->calls.mid(4), calls);

        services_->canActivate = false;
        services_->calls.clear();
        QVERIFY(!checkIfApplicationIsAlreadyRunningThenActivate());
        QVERIFY(services_->calls.filter("Activated").isEmpty());
    }

    void processAndVolume()
    {
        services_->runningProcess = -1;
        QVERIFY(!checkIfProcessWithIdIsRunning(UINT_MAX));
        services_->volumeValue = 2;
        QVERIFY(!checkVolumeCaseSensitiveForAppExecutableURL());
        services_->volumeValue = 1;
        services_->volumeKnown = false;
        QVERIFY(!checkVolumeCaseSensitiveForAppExecutableURL());
        QCOMPARE(absolutePathForAppBundleWithIdentifier("known"), "/path");
        QVERIFY(!absolutePathForAppBundleWithIdentifier("unknown"));
        QCOMPARE(services_->calls.mid(10), QStringList({"volume", "path outside", "path outside"}));
        QVERIFY(!absolutePathForAppBundleWithIdentifier(nullptr));
        macLog("line");
        macLog(nullptr);
        QCOMPARE(services_->calls.mid(13), QStringList({"line"}));
        QCOMPARE(macBackingScaleFactor(), 2.0);
    }

    void buffer_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("result");
        QTest::addColumn<QByteArray>("buffer"); // with what is left of the filling
        QTest::newRow("shorter") << QByteArray("ab") << 4 << 0 << QByteArray("ab\0##", 5);
        QTest::newRow("just fits") << QByteArray("abc") << 4 << 0 << QByteArray("abc\0#", 5);
        QTest::newRow("one too many") << QByteArray("abcd") << 4 << -3 << QByteArray("abc\0#", 5);
        QTest::newRow("inside a character")
            << QByteArray("a\u20acb") << 4 << -3 << QByteArray("a\xe2\x82\0#", 5);
        QTest::newRow("empty") << QByteArray("") << 1 << 0 << QByteArray("\0####", 5);
        QTest::newRow("no room at all") << QByteArray("a") << 1 << -3 << QByteArray("\0####", 5);
        QTest::newRow("no buffer") << QByteArray("a") << 0 << -3 << QByteArray("#####", 5);
        QTest::newRow("no string") << QByteArray() << 4 << -2 << QByteArray("#####", 5);
    }

    void buffer()
    {
        QFETCH(QByteArray, value);
        QFETCH(int, size);
        if (!value.isNull()) {
            services_->string = value.toStdString();
        }
        QByteArray buffer(5, '#');
        QTEST(getValueForKeyInPropertyList("p", "k", buffer.data(), size), "result");
        QTEST(buffer, "buffer");
        QCOMPARE(getValueForKeyInPropertyList("p", nullptr, buffer.data(), size), -2);
        QCOMPARE(getValueForKeyInPropertyList(nullptr, "k", buffer.data(), size), -1);
        QCOMPARE(getValueForKeyInPropertyList("missing", "k", buffer.data(), size), -1);
        QTEST(buffer, "buffer");
    }

    void driverThatVanishes()
    {
        services_->string = "1.2";
        services_->existing = 1;
        QCOMPARE(
            norvex::SystemInfo::MacSysInfo::checkFtdiDriver(),
            QString("FTDI driver\nCFBundleVersion: 1.2\nUnexpected error code -1 for key CFBundleName\n"));
    }

    void appNap()
    {
        services_->offersBegin = false;
        disableAppNap("x");
        enableAppNap();
        QVERIFY(!activityTokenAvailable && services_->calls.isEmpty());

        services_->offersBegin = true;
        disableAppNap("why");
        QVERIFY(activityTokenAvailable);
        services_->nextActivity = 2;
        disableAppNap(nullptr);
        QVERIFY(activityTokenAvailable);
        QCOMPARE(services_->calls, QStringList({"why", "retain 1", "end 1", "release 1", "", "retain 2"}));
        services_->offersEnd = false;
        enableAppNap();
        QVERIFY(activityTokenAvailable);
        services_->offersEnd = true;
        enableAppNap();
        enableAppNap();
        QCOMPARE(services_->calls.mid(6), QStringList({"end 2", "release 2"}));
        QCOMPARE(reinterpret_cast<quintptr>(activityToken), quintptr(2));

        services_->nextActivity = 0; // the system gives none
        disableAppNap("why");
        QVERIFY(!activityTokenAvailable);
        QCOMPARE(services_->calls.mid(8), QStringList({"why"}));
    }

    void execution_data()
    {
        QTest::addColumn<int>("authorizationError");
        QTest::addColumn<int>("startError");
        QTest::addColumn<bool>("waits");
        QTest::addColumn<int>("exitCode"); // -1: there is no child; above 255: killed by this signal less 256
        QTest::addColumn<bool>("result");
        QTest::newRow("cancelled") << -60006 << 0 << true << -1 << false;
        QTest::newRow("not started") << 0 << -60031 << true << -1 << false;
        QTest::newRow("nothing to wait for") << 0 << 0 << true << -1 << false;
        QTest::newRow("exit code 0") << 0 << 0 << true << 0 << true;
        QTest::newRow("exit code 1") << 0 << 0 << true << 1 << false;
        QTest::newRow("exit code 128") << 0 << 0 << true << 128 << false;
        QTest::newRow("killed") << 0 << 0 << true << 256 + SIGKILL << false;
        QTest::newRow("killed with core dump") << 0 << 0 << true << 256 + SIGQUIT << false;
        QTest::newRow("detached") << 0 << 0 << false << -1 << true;
        QTest::newRow("detached, not started") << 0 << -60031 << false << -1 << false;
    }

    void execution()
    {
        QFETCH(int, authorizationError);
        QFETCH(int, startError);
        QFETCH(bool, waits);
        QFETCH(int, exitCode);
        struct sigaction own = {};
        own.sa_sigaction = noteChild;
        own.sa_flags = SA_SIGINFO | SA_RESTART | SA_NOCLDSTOP;
        sigaddset(&own.sa_mask, SIGUSR2);
        struct sigaction previous = {};
        sigaction(SIGCHLD, &own, &previous);

        services_->authorizationError = authorizationError;
        services_->startError = startError;
        if (exitCode != -1) {
            services_->child = [exitCode] { return exitCode > 255 ? dieOf(exitCode - 256) : exitCode; };
        }
        QTEST(executeWithAuthorization("/tool", nullptr, waits), "result");

        struct sigaction after = {};
        sigaction(SIGCHLD, &previous, &after);
        QVERIFY(after.sa_sigaction == noteChild && sigismember(&after.sa_mask, SIGUSR2) == 1);
        QCOMPARE(after.sa_flags & (SA_SIGINFO | SA_RESTART | SA_NOCLDSTOP), own.sa_flags);
        const QString start = QLatin1String(waits ? "start awaited 1 outside" : "start detached 0 outside");
        QCOMPARE(services_->calls,
                 authorizationError ? QStringList("free outside") : QStringList({start, "free outside"}));
        QCOMPARE(waitpid(-1, nullptr, WNOHANG), -1);
    }

    void interruptedWait()
    {
        services_->child = [] { return usleep(100000); };
        const Interruptions interruptions;
        QVERIFY(executeWithAuthorization("/tool", nullptr, true));
    }
};

QTEST_GUILESS_MAIN(MacHelpersTest)
#include "macHelpersTest.moc"
