// The helpers over the services of Linux: real processes, files and tools.

#include "machelpers/applicationServices.h"
#include "machelpers/norvexMacHelpers.h"
#include "machelpers/privilegedToolLinux.h"
#include "systeminfo/mac/platform/live/caseSensitivity.h"
#include "tests/interruptions.h"
#include "tests/propertyListCases.h"

#include <QtTest>

#include <climits>
#include <cstdarg>
#include <future>
#include <thread>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#define SKIP_UNLESS_ROOT()                                                                                   \
    if (geteuid() != 0)                                                                                      \
    QSKIP("only root needs no authorisation")

namespace {

using namespace norvex;

QString casefolded; ///< a folder that ioctl() says to fold letter case
int endedChildren = 0;
double scaleFactorBeforeApplication = -1;

void noteChild(int)
{
    ++endedChildren;
}

/// The main function of this program as a launcher: after a moment it refuses, or becomes the tool.
int beLauncher(const QByteArray& name, char** command)
{
    QThread::msleep(50);
    if (name.endsWith("126") || name.endsWith("127")) {
        return name.right(3).toInt();
    }
    for (int descriptor = 3; descriptor < 64; ++descriptor) {
        fcntl(descriptor, F_SETFD, FD_CLOEXEC);
    }
    execv(command[1], command + 1);
    return 127;
}

/// The main function of this program as an application that an upgrade replaces while it runs.
int beReplaced(const char* path)
{
    const bool isReplaced = unlink(path) == 0 && symlink("/dev/null", path) == 0;
    return isReplaced && checkVolumeCaseSensitiveForAppExecutableURL() ? 0 : 1;
}

/// A process whose main thread has ended.
[[noreturn]] void endMainThread()
{
    std::thread([] { pause(); }).detach();
    syscall(SYS_exit, 0);
    abort();
}

QByteArray contentsOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

/// A binary property list of these objects, the first of which is the root. References have two bytes.
QByteArray binaryList(const QList<QByteArray>& objects)
{
    const auto number = [](quint32 value) {
        return QByteArray::fromHex(QByteArray::number(value, 16).rightJustified(8, '0'));
    };
    QByteArray list = "bplist00";
    QByteArray offsets;
    for (const QByteArray& object : objects) {
        offsets += number(quint32(list.size()));
        list += object;
    }
    const QByteArray zero(4, '\0');
    return list + offsets + QByteArray(6, '\0') + "\x04\x02" + zero + number(quint32(objects.size())) + zero +
           zero + zero + number(quint32(list.size()));
}

const QByteArray pair("\xd1\0\1\0\2", 5); ///< a dictionary of the second and third object

class Arguments
{
public:
    Arguments(std::initializer_list<QByteArray> texts) : texts_(texts)
    {
        for (QByteArray& text : texts_) {
            pointers_.push_back(text.data());
        }
        pointers_.push_back(nullptr);
    }
    char* const* get() const { return pointers_.data(); }

private:
    std::vector<QByteArray> texts_;
    std::vector<char*> pointers_;
};

int openDescriptors()
{
    return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System).size();
}

} // namespace

/// Replaces the C library's function, because few file systems can fold letter case.
extern "C" int ioctl(int descriptor, unsigned long request, ...) noexcept // NOLINT(cert-dcl50-cpp)
{
    va_list arguments;
    va_start(arguments, request);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    const QString name = QFile::symLinkTarget(QStringLiteral("/proc/self/fd/%1").arg(descriptor));
    if (request == FS_IOC_GETFLAGS && name == casefolded) {
        *static_cast<unsigned int*>(argument) = FS_CASEFOLD_FL;
        return 0;
    }
    return static_cast<int>(syscall(SYS_ioctl, descriptor, request, argument));
}

class MacHelpersLinuxTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir folder_;

    QByteArray path(const char* name) { return QFile::encodeName(folder_.filePath(QLatin1String(name))); }

    void write(const QByteArray& file, const QByteArray& contents)
    {
        QFile output(QFile::decodeName(file));
        QVERIFY(output.open(QIODevice::WriteOnly) && output.write(contents) == contents.size());
    }

    QByteArray lookUp(const QByteArray& contents, const char* keyPath = "k")
    {
        return lookUpIn(folder_.filePath("list.plist"), contents, keyPath);
    }

    bool runShell(const QByteArray& script, bool waits = true)
    {
        return executeWithAuthorization("/bin/sh", Arguments({"-c", script, path("out")}).get(), waits);
    }

private slots:
    void init() { QFile::remove(folder_.filePath("out")); }

    void exitStatus()
    {
        SKIP_UNLESS_ROOT();
        QVERIFY(runShell("exit 0"));
        QVERIFY(!runShell("exit 1"));
        QVERIFY(!runShell("kill -KILL $$"));
        QVERIFY(runShell("exit 1", false));
        QCOMPARE(waitpid(-1, nullptr, __WALL), -1); // none leaves a child
    }

    void toolThatCannotStart()
    {
        SKIP_UNLESS_ROOT();
        endedChildren = 0;
        const auto previous = signal(SIGCHLD, noteChild);
        QVERIFY(QDir::setCurrent(folder_.path()) && symlink("/bin/true", "tool") == 0);
        for (const char* tool : {"/nonexistent/tool", "tool", "/tmp", "/etc/passwd"}) {
            QVERIFY(!executeWithAuthorization(tool, nullptr, true));
            QVERIFY(!executeWithAuthorization(tool, nullptr, false));
        }
        QVERIFY(signal(SIGCHLD, previous) == noteChild);
        QCOMPARE(endedChildren, 0);
        QCOMPARE(wait(nullptr), -1);
    }

    void whatReachesTheTool()
    {
        SKIP_UNLESS_ROOT();
        const Arguments arguments({"-c", "out=$0; for a; do printf '[%s]' \"$a\"; done > $out", path("out"),
                                   "a  b", "it's \"q\"", "", "\u00fc\u20ac", "$HOME *", "-n"});
        QVERIFY(executeWithAuthorization("/bin/sh", arguments.get(), true));
        QCOMPARE(contentsOf(folder_.filePath("out")),
                 QByteArray("[a  b][it's \"q\"][][\u00fc\u20ac][$HOME *][-n]"));

        const int low = open("/dev/null", O_RDONLY);
        const int high = fcntl(low, F_DUPFD, 900);
        const auto previous = signal(SIGPIPE, SIG_IGN);
        const QByteArray script = "(echo /proc/$$/fd/*; grep -E 'Sig(Blk|Ign)' /proc/$$/status) > $0";
        for (const bool waits : {true, false}) {
            init();
            QVERIFY(runShell(script, waits));
            QTRY_VERIFY(contentsOf(folder_.filePath("out")).count('\n') == 3);
            const QList<QByteArray> lines = contentsOf(folder_.filePath("out")).split('\n');
            QCOMPARE(lines[0].count("/fd/"), 3);
            QVERIFY(lines[0].endsWith("/fd/2"));
            QCOMPARE(lines[1].mid(7).trimmed().toULongLong(nullptr, 16), 0ULL);
            QCOMPARE(lines[2].mid(7).trimmed().toULongLong(nullptr, 16), 0ULL);
        }
        signal(SIGPIPE, previous);
        close(low);
        close(high);
    }

    void otherChildren()
    {
        SKIP_UNLESS_ROOT();
        // An ignored SIGCHLD would have the system take the children away before anyone has waited for them.
        const auto previous = signal(SIGCHLD, SIG_IGN);
        QVERIFY(runShell("exit 0"));
        QVERIFY(signal(SIGCHLD, previous) == SIG_IGN);

        const pid_t other = fork();
        if (other == 0) {
            _exit(3);
        }
        siginfo_t information = {};
        QCOMPARE(waitid(P_PID, id_t(other), &information, WEXITED | WNOWAIT), 0);
        QVERIFY(!runShell("sleep 0.2")); // the other child's end decides
        QVERIFY(wait(nullptr) > 0);      // and leaves the tool to the caller
        QCOMPARE(wait(nullptr), -1);
    }

    void launcher_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<int>("detachedResult");
        QTest::addColumn<int>("awaitedStatus");
        QTest::newRow("cancelled") << QByteArray("launcher126") << QByteArray("exit 0") << EACCES << 126;
        QTest::newRow("refused") << QByteArray("launcher127") << QByteArray("exit 0") << EACCES << 127;
        QTest::newRow("allowed") << QByteArray("launcher") << QByteArray("echo ran > $0") << 0 << 0;
        const QByteArray late = "sleep 0.3; echo ran > $0; exit 127";
        QTest::newRow("fails") << QByteArray("launcher") << QByteArray("echo ran > $0; exit 5") << 0 << 5;
        QTest::newRow("fails like a refusal, later") << QByteArray("launcher") << late << 0 << 127;
    }

    void launcher()
    {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, script);
        QFETCH(int, awaitedStatus);
        QFile::link(QCoreApplication::applicationFilePath(), folder_.filePath(QString::fromLatin1(name)));
        const QByteArray launcher = path(name.constData());
        const Arguments arguments({"-c", script, path("out")});
        PrivilegedTool tool = {launcher.constData(), "/bin/sh", arguments.get(), ToolUse::Detached};
        const int descriptors = openDescriptors();
        QTEST(startPrivilegedTool(tool), "detachedResult");
        QCOMPARE(waitpid(-1, nullptr, __WALL), -1);
        if (script.contains("ran")) {
            QTRY_COMPARE(contentsOf(folder_.filePath("out")), QByteArray("ran\n"));
        }
        tool.use = ToolUse::Awaited;
        QCOMPARE(startPrivilegedTool(tool), 0);
        int status = 0;
        QVERIFY(wait(&status) > 0);
        QVERIFY(WIFEXITED(status));
        QCOMPARE(WEXITSTATUS(status), awaitedStatus);
        tool.launcher = "/nonexistent/launcher";
        QCOMPARE(startPrivilegedTool(tool), ENOENT);
        tool.use = ToolUse::Detached;
        QCOMPARE(startPrivilegedTool(tool), ENOENT);
        QCOMPARE(openDescriptors(), descriptors);
    }

    void interruptedStart()
    {
        QFile::link(QCoreApplication::applicationFilePath(), folder_.filePath("launcher127"));
        const Interruptions interruptions;
        QCOMPARE(
            startPrivilegedTool({path("launcher127"), "/bin/sh", Arguments({}).get(), ToolUse::Detached}),
            EACCES);
    }

    void processes()
    {
        QVERIFY(checkIfProcessWithIdIsRunning(unsigned(getpid())));
        QVERIFY(checkIfProcessWithIdIsRunning(1));
        QVERIFY(!checkIfProcessWithIdIsRunning(0));
        QVERIFY(!checkIfProcessWithIdIsRunning(unsigned(INT_MAX) + 1));
        bool isProcess = true;
        std::thread([&] { isProcess = checkIfProcessWithIdIsRunning(unsigned(syscall(SYS_gettid))); }).join();
        QVERIFY(!isProcess);
        const pid_t ended = fork();
        if (ended == 0) {
            _exit(0);
        }
        siginfo_t information = {};
        QCOMPARE(waitid(P_PID, id_t(ended), &information, WEXITED | WNOWAIT), 0);
        QVERIFY(!checkIfProcessWithIdIsRunning(unsigned(ended))); // not yet waited for
        QCOMPARE(waitpid(ended, nullptr, 0), ended);
    }

    void processWithoutMainThread()
    {
        const pid_t process = fork();
        if (process == 0) {
            endMainThread();
        }
        const QString status = QString("/proc/%1/status").arg(process);
        const bool isEnded = QTest::qWaitFor([&] { return contentsOf(status).contains("State:\tZ"); });
        const bool isRunning = checkIfProcessWithIdIsRunning(unsigned(process));
        kill(process, SIGKILL);
        QCOMPARE(waitpid(process, nullptr, 0), process);
        QVERIFY(isEnded && isRunning);
    }

    void withoutStandardStreams()
    {
        QFile::link(QCoreApplication::applicationFilePath(), folder_.filePath("launcher"));
        const QByteArray launcher = path("launcher");
        const Arguments arguments({"-c", "sleep 20", path("out")});
        const pid_t caller = fork();
        if (caller == 0) {
            for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
                close(stream);
            }
            alarm(10);
            _exit(startPrivilegedTool({launcher.constData(), "/bin/sh", arguments.get(), ToolUse::Detached}));
        }
        int status = -1;
        QCOMPARE(waitpid(caller, &status, 0), caller);
        QCOMPARE(status, 0);
    }

    void instances()
    {
        const pid_t other = fork();
        if (other == 0) {
            pause();
        }
        QSet<int> found;
        for (const RunningApplication instance : applicationServices().runningInstances()) {
            found.insert(applicationServices().processIdentifier(instance));
        }
        QVERIFY(!checkIfApplicationIsAlreadyRunningThenActivate());
        kill(other, SIGKILL);
        QCOMPARE(waitpid(other, nullptr, 0), other);
        QCOMPARE(found, QSet<int>({getpid(), other}));
    }

    void propertyListsOfAllSystems_data() { addPropertyListCases(); }

    void propertyListsOfAllSystems()
    {
        QFETCH(QByteArray, contents);
        QFETCH(QByteArray, keyPath);
        QTEST(lookUp(contents, keyPath), "expected");
    }

    void propertyLists()
    {
        const QByteArray binary = binaryList({pair, "\x51k", QByteArray("\x62\x20\xac\x00\xfc", 5)});
        const QByteArray withZero = binaryList({pair, "\x51k", QByteArray("\x53\x61\x00\x62", 4)});
        const QByteArray xml = propertyList("xml.plist");
        QCOMPARE(lookUp(binary), QByteArray("\u20ac\u00fc"));
        QCOMPARE(lookUp(withZero), QByteArray("a"));
        QCOMPARE(lookUp(propertyList("latin1.plist")), QByteArray("\u00fc"));
        QCOMPARE(lookUp(xml), QByteArray("a <& ]]> \u00fc"));
        QCOMPARE(lookUp(xml, ""), QByteArray("empty key"));
        QCOMPARE(lookUp(" \n" + xml), QByteArray("a <& ]]> \u00fc"));
        QCOMPARE(
            lookUp(
                "<dict><key>d</key><dict><key>k</key><string>first</string></dict><key>a</key><date>x</date>"
                "<key>d</key><dict><key>x</key><integer>y</integer><key>k</key><string>last</string></dict>"
                "<key>k</key><string>other</string></dict>",
                "d.k"),
            QByteArray("last"));
        for (const int depth : {500, 600}) {
            // "k" in a dictionary in a dictionary...
            const QByteArray keyPath = QByteArray("k.").repeated(depth - 1) + "k";
            const QByteArray expected = depth < 512 ? "v" : "-2";
            QCOMPARE(lookUp("<plist>" + QByteArray("<dict><key>k</key>").repeated(depth) +
                                "<string>v</string>" + QByteArray("</dict>").repeated(depth) + "</plist>",
                            keyPath),
                     expected);
            QList<QByteArray> chain = {"\x51k", "\x51v"};
            for (int index = 0; index < depth; ++index) {
                const int next = depth - index;
                chain.prepend(QByteArray("\xd1") + char(depth >> 8) + char(depth & 0xff) +
                              char((next + (index == 0)) >> 8) + char((next + (index == 0)) & 0xff));
            }
            QCOMPARE(lookUp(binaryList(chain), keyPath), expected);
        }
        // On macOS these are properties of the values.
        QCOMPARE(lookUp(xml, "n.stringValue"), QByteArray("-2"));
        QCOMPARE(lookUp(xml, "d.d.k.lowercaseString"), QByteArray("-2"));
    }

    void hostilePropertyLists_data()
    {
        const QByteArray xml = propertyList("xml.plist");
        const QByteArray nest =
            QByteArray("<array>").repeated(200000) + QByteArray("</array>").repeated(200000);
        QList<QByteArray> doubling = {"\x51x"};
        for (char index = 60; index > 0; --index) {
            doubling.prepend(QByteArray("\xa2\0", 2) + index + '\0' + index);
        }
        QTest::addColumn<QByteArray>("contents");
        QTest::newRow("entities") << propertyList("entities.plist");
        QTest::newRow("deep") << "<plist>" + nest + "</plist>";
        QTest::newRow("deep where an XML parser does not look")
            << "<!DOCTYPE plist [<!-- ]> " + nest + " -->]><plist><dict/></plist>";
        QTest::newRow("binary, cut off") << binaryList({pair, "\x51k", "\x51v"}).chopped(1);
        const QByteArray value = "<dict><key>k</key><string>v</string></dict>";
        QTest::newRow("unknown entity") << "<!DOCTYPE plist SYSTEM 'plist.dtd'><plist>" +
                                               QByteArray(value).replace("v", "1.&foo;2") + "</plist>";
        QTest::newRow("empty declarations") << "<!DOCTYPE plist []><plist>" + value + "</plist>";
        QTest::newRow("two values") << "<plist>" + value + value + "</plist>";
        QTest::newRow("later value is none")
            << "<plist>" + QByteArray(value).replace("</dict>", "<key>k</key><true/></dict>") + "</plist>";
        QByteArray attributes;
        for (int index = 0; attributes.size() < 3 * 1024 * 1024; ++index) {
            attributes += " a" + QByteArray::number(index) + "=''";
        }
        QTest::newRow("attributes") << "<plist" + attributes + ">" + value + "</plist>";
        QTest::newRow("declared attributes")
            << "<!DOCTYPE plist [<!ATTLIST plist" + attributes.replace("=", " CDATA ") + ">]>" + value;
        QTest::newRow("too long") << xml + QByteArray(16 * 1024 * 1024, ' ');
        QTest::newRow("binary, contains itself") << binaryList({QByteArray("\xd1\0\1\0\0", 5), "\x51k"});
        QTest::newRow("binary, doubles") << binaryList(doubling);
        QTest::newRow("binary, endless")
            << binaryList({pair, "\x51k", "\x5f\x13\x7f\xff\xff\xff\xff\xff\xff\xff"});
        QTest::newRow("binary, not UTF-8") << binaryList({pair, "\x51k", "\x52\xff\xfe"});
    }

    void hostilePropertyLists()
    {
        QFETCH(QByteArray, contents);
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(lookUp(contents), QByteArray("-2"));
        QVERIFY(timer.elapsed() < 20000);
    }

    void otherFiles()
    {
        QVERIFY(mkfifo(path("fifo"), 0600) == 0 && symlink("/nonexistent", path("dangling")) == 0);
        write(path("huge"), "<plist>");
        QVERIFY(truncate(path("huge"), 1LL << 40) == 0);
        QVERIFY(symlink(NORVEX_TEST_DATA "/propertyLists/xml.plist", path("link")) == 0);
        const QMap<QByteArray, int> expected = {
            {path("link"), 0}, {path("fifo"), -2},     {path("huge"), -2},   {folder_.path().toUtf8(), -2},
            {"/dev/zero", -2}, {path("dangling"), -1}, {path("huge/x"), -1}, {"", -1}};
        char buffer[64];
        for (auto row = expected.begin(); row != expected.end(); ++row) {
            QCOMPARE(getValueForKeyInPropertyList(row.key(), "k", buffer, sizeof buffer), row.value());
        }
    }

    void caseSensitivity()
    {
        const auto letters = [](const char* type, const char* options) {
            const CaseSensitivity found = caseSensitivityOfFileSystem(type, options);
            return QByteArray(found.isSensitive ? "aA" : "a") + (found.isPreserving ? " kept" : "");
        };
        QCOMPARE(letters("ext4", "rw,casefold"), QByteArray("aA kept"));
        QCOMPARE(letters("vfat", "rw"), QByteArray("a kept"));
        QCOMPARE(letters("msdos", "rw"), QByteArray("a"));
        QCOMPARE(letters("fuseblk", "rw"), QByteArray("a kept"));
        QCOMPARE(letters("iso9660", "ro,check=r,map=n"), QByteArray("a kept"));
    }

    void casefoldedFolder()
    {
        casefolded = QFileInfo(folder_.path()).canonicalFilePath();
        write(path("file"), "");
        const auto folder = caseSensitivityOf(QFile::encodeName(casefolded));
        const auto file = caseSensitivityOf(path("file"));
        casefolded.clear();
        QVERIFY(folder && !folder->isSensitive && folder->isPreserving);
        QVERIFY(file && !file->isSensitive && file->isPreserving);
        QVERIFY(caseSensitivityOf("/proc")->isSensitive);
    }

    void executablesVolume()
    {
        if (!caseSensitivityOf(QCoreApplication::applicationFilePath().toUtf8())) {
            QSKIP("the program's mount is not to be seen from here");
        }
        // Whether the file is also found by its name in capitals shows how the file system treats letter case.
        const QString program = QCoreApplication::applicationFilePath();
        const QFileInfo other(QFileInfo(program).path() + QLatin1Char('/') +
                              QFileInfo(program).fileName().toUpper());
        QCOMPARE(checkVolumeCaseSensitiveForAppExecutableURL(), !other.exists());
        QVERIFY(!caseSensitivityOf("/nonexistent"));
        QVERIFY(caseSensitivityOf("/proc/self/exe")->isPreserving);
        QVERIFY(QFile::copy(program, folder_.filePath("replaced")));
        QCOMPARE(QProcess::execute(folder_.filePath("replaced"), {}),
                 caseSensitivityOf(QFile::encodeName(folder_.path()))->isSensitive ? 0 : 1);
    }

    void applicationBundle()
    {
        const QString file = qEnvironmentVariable("XDG_DATA_HOME") + "/applications/org.example.Tool.desktop";
        QVERIFY(QDir().mkpath(QFileInfo(file).path()));
        write(QFile::encodeName(file), "[Desktop Entry]\nType=Application\nName=Tool\nExec=/bin/true\n");
        QCOMPARE(QString(absolutePathForAppBundleWithIdentifier("org.example.Tool")), file);
        QCOMPARE(QString(absolutePathForAppBundleWithIdentifier("org.example.Tool.desktop")), file);
        QVERIFY(!absolutePathForAppBundleWithIdentifier("org.example.Other"));
        QVERIFY(!absolutePathForAppBundleWithIdentifier("../applications/org.example.Tool"));
        QVERIFY(!absolutePathForAppBundleWithIdentifier(""));
    }

    void screenActivityAndLog()
    {
        QCOMPARE(scaleFactorBeforeApplication, 0.0);
        QCOMPARE(macBackingScaleFactor(), 2.0);
        disableAppNap("test");
        QVERIFY(!activityTokenAvailable && !activityToken);
        enableAppNap();

        const int standardError = dup(STDERR_FILENO);
        const int file = open(path("log"), O_WRONLY | O_CREAT, 0600);
        dup2(file, STDERR_FILENO);
        macLog("100%d %s %n \u00fc");
        dup2(standardError, STDERR_FILENO);
        close(file);
        close(standardError);
        QCOMPARE(contentsOf(folder_.filePath("log")), QByteArray("100%d %s %n \u00fc\n"));
    }

    /// Signals arrive while the reader keeps the log waiting. It may be too slow on a busy machine, so it gets five
    /// tries.
    void interruptedLog()
    {
        const QByteArray longLine(1 << 17, 'x'); // more than a pipe holds
        int received = 0;
        for (int attempt = 0; attempt < 5 && received != longLine.size() + 1; ++attempt) {
            int ends[2];
            QCOMPARE(pipe(ends), 0);
            std::future<int> reader = std::async(std::launch::async, [&ends] {
                std::this_thread::sleep_for(std::chrono::milliseconds(30));
                QFile file;
                file.open(ends[0], QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
                return file.readAll().size();
            });
            const int standardError = dup(STDERR_FILENO);
            dup2(ends[1], STDERR_FILENO);
            close(ends[1]);
            {
                const Interruptions interruptions;
                macLog(longLine);
            }
            dup2(standardError, STDERR_FILENO);
            close(standardError);
            received = reader.get();
        }
        QCOMPARE(received, longLine.size() + 1);
    }

    void logThatNobodyReads_data()
    {
        QTest::addColumn<bool>("isSocket");
        QTest::newRow("pipe") << false;
        QTest::newRow("socket") << true;
    }

    /// Standard error has a reader, then a reader that does not read, then none.
    void logThatNobodyReads()
    {
        QFETCH(bool, isSocket);
        int ends[2];
        QCOMPARE(isSocket ? socketpair(AF_UNIX, SOCK_STREAM, 0, ends) : pipe(ends), 0);
        const QByteArray longLine(1 << 20, 'x');
        QElapsedTimer timer;
        timer.start();
        const int standardError = dup(STDERR_FILENO);
        dup2(ends[1], STDERR_FILENO);
        close(ends[1]);
        alarm(20); // ends the test where a call blocks
        macLog("first");
        macLog(longLine);
        macLog(longLine);
        char first[6] = {};
        const bool isRead = read(ends[0], first, sizeof first) == sizeof first;
        const bool isShared = (fcntl(STDERR_FILENO, F_GETFL) & O_NONBLOCK) == 0;
        close(ends[0]);
        macLog("nobody");
        alarm(0);
        dup2(standardError, STDERR_FILENO);
        close(standardError);
        QVERIFY(isRead && isShared);
        QCOMPARE(QByteArray(first, sizeof first), QByteArray("first\n"));
        QVERIFY(timer.elapsed() < 10000);
        sigset_t pending;
        sigpending(&pending);
        QCOMPARE(sigismember(&pending, SIGPIPE), 0);
    }
};

int main(int argc, char** argv)
{
    const QByteArray name = QByteArray(argv[0]).split('/').last();
    if (name.startsWith("launcher")) {
        return beLauncher(name, argv);
    }
    if (name == "replaced") {
        return beReplaced(argv[0]);
    }
    const QTemporaryDir data;
    qputenv("XDG_DATA_HOME", QFile::encodeName(data.path()));
    qputenv("QT_SCALE_FACTOR", "2");
    scaleFactorBeforeApplication = macBackingScaleFactor();
    const QGuiApplication application(argc, argv);
    MacHelpersLinuxTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "macHelpersLinuxTest.moc"
