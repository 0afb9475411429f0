// The helpers over applicationServicesMac.mm, which runs against GNUstep's Foundation and stand-ins of the rest.

#include "machelpers/norvexMacHelpers.h"
#include "tests/objectiveC/standIns.h"
#include "tests/propertyListCases.h"

#include <QtTest>

#include <functional>
#include <memory>

#include <sys/wait.h>

namespace {

using standIns::script;

QByteArray number(bool value)
{
    return QByteArray::number(value);
}

/// Starts the shell with this script and one argument more.
QByteArray runShell(const char* text, bool waits)
{
    char shell[] = "-c";
    QByteArray copy(text);
    char argument[] = "a b";
    char* const arguments[] = {shell, copy.data(), argument, nullptr};
    return number(executeWithAuthorization("/bin/sh", arguments, waits));
}

/// A helper, what it gives when all calls are answered, and when one of them is not. Everything that it gives is in
/// a text, because the helper's objects may be gone afterwards.
struct Helper
{
    const char* name;
    std::function<QByteArray()> run;
    QByteArray found;
    QByteArray notFound;
    QList<QByteArray> calls; ///< the calls in their order, each as its name and its arguments
};

const QList<Helper> helpers = {
    {"activate",
     [] {
         // What logging makes, belongs to the caller.
         const std::unique_ptr<standIns::Pool> pool(script().raising.empty() ? new standIns::Pool : nullptr);
         return number(checkIfApplicationIsAlreadyRunningThenActivate());
     },
     "1",
     "0",
     {"currentApplication", "bundleIdentifier", "runningApplicationsWithBundleIdentifier: org.example",
      "processIdentifier", "currentApplication", "processIdentifier", "processIdentifier",
      "currentApplication", "processIdentifier", "activateWithOptions: 2 of 42",
      "NSLog Activated other app =1"}},
    {"process",
     [] { return number(checkIfProcessWithIdIsRunning(4711)); },
     "1",
     "0",
     {"runningApplicationWithProcessIdentifier: 4711"}},
    {"volume",
     [] { return number(checkVolumeCaseSensitiveForAppExecutableURL()); },
     "1",
     "0",
     {"currentApplication", "executableURL", "getResourceValue:forKey:error: case-sensitive names"}},
    {"bundle",
     [] {
         const standIns::Pool pool;
         return QByteArray(absolutePathForAppBundleWithIdentifier("org.\u00fc"));
     },
     "/Applications/org.\u00fc.app",
     "",
     {"sharedWorkspace", "absolutePathForAppBundleWithIdentifier: org.\u00fc"}},
    {"scale",
     [] { return QByteArray::number(macBackingScaleFactor()); },
     "2",
     "0",
     {"mainScreen", "backingScaleFactor"}},
    {"activity",
     [] {
         disableAppNap("why \u00fc");
         const int begun = standIns::liveActivities();
         const bool isOpen = activityTokenAvailable;
         disableAppNap(nullptr);
         const int stillOne = standIns::liveActivities();
         enableAppNap();
         enableAppNap();
         return QByteArray::number(begun) + number(isOpen) + QByteArray::number(stillOne);
     },
     "111",
     "000",
     {"beginActivityWithOptions:reason: 16777215 why \u00fc", "endActivity: StandInActivity",
      "beginActivityWithOptions:reason: 16777215 ", "endActivity: StandInActivity"}},
    {"tool",
     [] { return runShell("test \"$0\" = 'a b'", true); },
     "1",
     "0",
     {"AuthorizationCreate system.privilege.admin 19",
      "AuthorizationExecuteWithPrivileges /bin/sh 0 -c test \"$0\" = 'a b' a b", "AuthorizationFree 8"}},
    {"log", [] { return macLog("100%d %s %n"), QByteArray(); }, "", "", {"NSLog 100%d %s %n"}},
};

QByteArray nameOf(const QByteArray& call)
{
    return call.split(' ').first();
}

} // namespace

class ApplicationServicesMacTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir folder_;

    /// Runs a helper inside the caller's pool, again and again: each run gives the same, and nothing lives on.
    static void repeat(const Helper& helper, const QByteArray& expected)
    {
        const standIns::Pool pool;
        long before = 0;
        for (int run = 0; run < 6; ++run) {
            if (run == 3) { // what is made once and kept, has been made
                before = standIns::liveObjects();
            }
            script().calls.clear();
            QCOMPARE(helper.run(), expected);
            QCOMPARE(standIns::liveActivities(), 0);
            QCOMPARE(standIns::liveAuthorizations(), 0);
        }
        QCOMPARE(standIns::liveObjects(), before);
    }

private slots:
    void init()
    {
        script() = standIns::Script();
        activityTokenAvailable = false;
    }

    void answered_data()
    {
        QTest::addColumn<int>("helper");
        for (int index = 0; index < helpers.size(); ++index) {
            QTest::newRow(helpers[index].name) << index;
        }
    }

    void answered()
    {
        QFETCH(int, helper);
        repeat(helpers[helper], helpers[helper].found);
        QList<QByteArray> calls;
        for (const std::string& call : script().calls) {
            calls << QByteArray::fromStdString(call);
        }
        QCOMPARE(calls, helpers[helper].calls);
    }

    void notAnswered_data()
    {
        QTest::addColumn<int>("helper");
        QTest::addColumn<QByteArray>("call");
        QTest::addColumn<bool>("raises");
        QTest::addColumn<QByteArray>("expected");
        for (int index = 0; index < helpers.size(); ++index) {
            const Helper& helper = helpers[index];
            QSet<QByteArray> names;
            for (const QByteArray& call : helper.calls) {
                const QByteArray name = nameOf(call);
                if (name == "NSLog" || name == "AuthorizationFree" || names.contains(name)) {
                    continue;
                }
                names.insert(name);
                // The system's answer to these two changes nothing for the caller.
                const bool isIgnored = name == "activateWithOptions:" || name == "endActivity:";
                const QByteArray title = helper.name + QByteArray(", ") + name;
                QTest::newRow((title + " nothing").constData())
                    << index << name << false << (isIgnored ? helper.found : helper.notFound);
                if (!name.startsWith("Authorization")) { // plain C raises nothing
                    QTest::newRow((title + " raises").constData())
                        << index << name << true << (name == "endActivity:" ? helper.found : helper.notFound);
                }
            }
        }
    }

    void notAnswered()
    {
        QFETCH(int, helper);
        QFETCH(QByteArray, call);
        QFETCH(bool, raises);
        QFETCH(QByteArray, expected);
        (raises ? script().raising : script().nothing) = call.toStdString();
        repeat(helpers[helper], expected);
    }

    void version()
    {
        script().nothing = "Gestalt";
        QVERIFY(!checkIfProcessWithIdIsRunning(4711));
        QVERIFY(script().calls.empty());
    }

    void alone()
    {
        script().otherProcess = 0;
        repeat(helpers[0], "0");
    }

    void systemWithoutActivities()
    {
        script().hasActivities = false;
        disableAppNap("why");
        QVERIFY(!activityTokenAvailable && script().calls.empty());
    }

    void tool()
    {
        QCOMPARE(runShell("exit 3", true), QByteArray("0"));
        QCOMPARE(runShell("exit 3", false), QByteArray("1"));
        QVERIFY(wait(nullptr) > 0);
        script().nothing = "AuthorizationCreate";
        script().failedAuthorization = this;
        repeat(helpers[6], "0"); // freed although it was refused
        QCOMPARE(script().calls.back(), std::string("AuthorizationFree 8"));
    }

    void propertyLists_data() { addPropertyListCases(); }

    void propertyLists()
    {
        QFETCH(QByteArray, contents);
        QFETCH(QByteArray, keyPath);
        QFETCH(QByteArray, expected);
        const QString file = folder_.filePath("list.plist");
        repeat({"", [&] { return lookUpIn(file, contents, keyPath); }, {}, {}, {}}, expected);
    }

    void keyValueCoding()
    {
        // The properties that classes have of their own, which the helper's header speaks of.
        const QString file = folder_.filePath("list.plist");
        QCOMPARE(lookUpIn(file, propertyList("xml.plist"), "n.stringValue"), QByteArray("1"));
        QCOMPARE(lookUpIn(file, propertyList("xml.plist"), "d.d.k.lowercaseString"), QByteArray(""));
        const standIns::Pool pool;
        char buffer[8];
        QCOMPARE(getValueForKeyInPropertyList("/nonexistent", "k", buffer, sizeof buffer), -1);
        QCOMPARE(getValueForKeyInPropertyList("\xff", "k", buffer, sizeof buffer), -1);
        QCOMPARE(getValueForKeyInPropertyList("/", "k", buffer, sizeof buffer), -2);
    }
};

QTEST_APPLESS_MAIN(ApplicationServicesMacTest)

#include "applicationServicesMacTest.moc"
