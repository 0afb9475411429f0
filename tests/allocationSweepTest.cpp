// Every allocation of an action fails once: the first in the first run, the second in the second, and so on until
// a run makes fewer. An action with very many allocations has only some of them fail, at even distances;
// NORVEX_WHOLE_SWEEP in the environment makes all of them fail.
//
// What counts is what the thread asks of malloc, calloc and realloc, wherever it asks: in this project, in Qt's
// containers (Qt throws std::bad_alloc when it gets no memory), in the XML parser and, through operator new, in the
// standard library. Aligned allocations and other threads do not count, nor do the few functions below that end the
// process when they get no memory.
//
// After each run everything is as before: the live counts, the open descriptors and the blocks of memory. A run that
// leaves more blocks is repeated, because what is made once and kept is no leak. Where the address sanitizer watches,
// it reports leaks too, at the end.

#include "machelpers/applicationServices.h"
#include "machelpers/norvexMacHelpers.h"
#include "recordingSupport.h"
#include "scriptedServices.h"
#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/norvexReport.h"
#include "systeminfo/norvexSystemInfo.h"
#include "tools/anonymise/anonymiser.h"
#include "tools/record/recorder.h"
#include "tools/record/recordingWriter.h"

#include <QtTest>

#include <algorithm>
#include <array>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <functional>
#include <new>
#include <vector>

#include <dlfcn.h>
#include <fcntl.h>
#include <glob.h>
#include <plist/plist.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

thread_local long allocationsToFailure = 0; // 0: none fails
thread_local long liveBlocks = 0;

class NothingFails
{
public:
    NothingFails() = default;
    NothingFails(const NothingFails&) = delete;
    NothingFails& operator=(const NothingFails&) = delete;
    ~NothingFails() { allocationsToFailure = spared_; }

private:
    const long spared_ = std::exchange(allocationsToFailure, 0);
};

} // namespace

// These functions replace those of the C library or, under the address sanitizer, its own. The sanitizer calls them
// before its shadow memory exists, so they must not be instrumented.
#define NORVEX_INTERPOSED [[gnu::visibility("default"), gnu::no_sanitize_address]]
#define NORVEX_NEXT(function)                                                                                \
    static decltype(&(function)) next = nullptr;                                                             \
    if (next == nullptr) {                                                                                   \
        next = reinterpret_cast<decltype(&(function))>(dlsym(RTLD_NEXT, #function));                         \
    }
#define NORVEX_ALLOCATE(function, ...)                                                                       \
    NORVEX_NEXT(function)                                                                                    \
    if (allocationsToFailure > 0 && --allocationsToFailure == 0) {                                           \
        return nullptr;                                                                                      \
    }                                                                                                        \
    void* const allocated = next(__VA_ARGS__);                                                               \
    liveBlocks += allocated != nullptr ? 1 : 0

extern "C" {

NORVEX_INTERPOSED void* malloc(std::size_t size) noexcept
{
    NORVEX_ALLOCATE(malloc, size);
    return allocated;
}

NORVEX_INTERPOSED void* calloc(std::size_t count, std::size_t size) noexcept
{
    NORVEX_ALLOCATE(calloc, count, size);
    return allocated;
}

NORVEX_INTERPOSED void* realloc(void* block, std::size_t size) noexcept
{
    NORVEX_ALLOCATE(realloc, block, size);
    // realloc() frees the old block, if there was one, unless it fails to allocate the new one.
    liveBlocks -= block != nullptr && (allocated != nullptr || size == 0) ? 1 : 0;
    return allocated;
}

NORVEX_INTERPOSED void free(void* block) noexcept
{
    static decltype(&free) next = nullptr;
    static bool isSearching = false;
    static void* kept = nullptr; // dlsym itself frees the text of an earlier error
    if (next == nullptr && isSearching) {
        kept = block;
        return;
    }
    if (next == nullptr) {
        isSearching = true;
        next = reinterpret_cast<decltype(&free)>(dlsym(RTLD_NEXT, "free"));
        next(kept);
    }
    liveBlocks -= block != nullptr ? 1 : 0;
    next(block);
}

NORVEX_INTERPOSED int posix_memalign(void** block, std::size_t alignment, std::size_t size) noexcept
{
    NORVEX_NEXT(posix_memalign)
    const int error = next(block, alignment, size);
    liveBlocks += error == 0 ? 1 : 0;
    return error;
}

NORVEX_INTERPOSED void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept
{
    NORVEX_NEXT(aligned_alloc)
    void* const allocated = next(alignment, size);
    liveBlocks += allocated != nullptr ? 1 : 0;
    return allocated;
}

// libplist ends the process when it gets no memory, and it calls allocating functions of the C library itself. No
// allocation fails inside these calls.
#define NORVEX_SPARED(function, ...)                                                                         \
    NORVEX_NEXT(function)                                                                                    \
    const NothingFails nothingFails;                                                                         \
    return next(__VA_ARGS__)

// glob() of glibc 2.36 frees a block twice when there is no memory for its list of matches.
NORVEX_INTERPOSED int glob(const char* pattern, int flags, int (*onError)(const char*, int),
                           glob_t* found) noexcept
{
    NORVEX_SPARED(glob, pattern, flags, onError, found);
}

NORVEX_INTERPOSED void plist_from_bin(const char* contents, std::uint32_t length, plist_t* list)
{
    NORVEX_SPARED(plist_from_bin, contents, length, list);
}

// Defined only in a build with the leak sanitizer.
[[gnu::weak]] void __lsan_disable(); // NOLINT(bugprone-reserved-identifier)
[[gnu::weak]] void __lsan_enable();  // NOLINT(bugprone-reserved-identifier)

} // extern "C"

/// The operators of the address sanitizer do not call malloc(), where allocations fail; these do.
NORVEX_INTERPOSED void* operator new(std::size_t size)
{
    if (void* const block = malloc(size)) {
        return block;
    }
    throw std::bad_alloc();
}
NORVEX_INTERPOSED void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return malloc(size);
}
NORVEX_INTERPOSED void* operator new[](std::size_t size)
{
    return operator new(size);
}
NORVEX_INTERPOSED void operator delete(void* block) noexcept
{
    free(block);
}
NORVEX_INTERPOSED void operator delete(void* block, std::size_t) noexcept
{
    free(block);
}
NORVEX_INTERPOSED void operator delete[](void* block) noexcept
{
    free(block);
}
NORVEX_INTERPOSED void operator delete[](void* block, std::size_t) noexcept
{
    free(block);
}

namespace {

using namespace norvex;
namespace MacSysInfo = SystemInfo::MacSysInfo;

using Section = QString (*)();

constexpr long everyAllocation = 0;

/// Some functions of Qt leak when they get no memory. While an object of this class lives, a number of blocks may leak.
class QtLeaks
{
public:
    explicit QtLeaks(std::ptrdiff_t blocks)
    {
        allowed = blocks;
        if (allowed > 0 && __lsan_disable != nullptr) {
            __lsan_disable();
        }
    }
    QtLeaks(const QtLeaks&) = delete;
    QtLeaks& operator=(const QtLeaks&) = delete;
    ~QtLeaks()
    {
        if (allowed > 0 && __lsan_enable != nullptr) {
            __lsan_enable();
        }
        allowed = 0;
    }

    static inline std::ptrdiff_t allowed = 0;
    static constexpr std::ptrdiff_t any = 1'000'000;
    static constexpr std::ptrdiff_t ofXmlReader =
        2; ///< the two stacks that QXmlStreamReader's constructor makes
    static constexpr std::ptrdiff_t ofExpression = 4; ///< what QRegularExpression makes for a match
};

std::ptrdiff_t openDescriptors()
{
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    return std::distance(begin(descriptors), end(descriptors));
}

bool hasChildren()
{
    return waitpid(-1, nullptr, WNOHANG | __WALL) != -1;
}

/// The first words of each line, which stay the same while values change.
QStringList labelsOf(const QString& text)
{
    QStringList labels = text.split('\n');
    for (QString& label : labels) {
        label = label.section(QRegularExpression("[:=(]"), 0, 0).left(24);
    }
    return labels;
}

QByteArray recording()
{
    Tool::RecordedValue machine = Tool::recordMachine();
    Tool::anonymise(machine, QStringLiteral("host"), QStringLiteral("user"));
    return Tool::recordingText(machine);
}

/// A helper's call, with the result that is right and the one that stands for a failure.
struct HelperCall
{
    const char* name;
    std::function<int()> call;
    int right;
    int failed;
};

int lookUp(const char* file)
{
    std::array<char, 16> buffer = {};
    const int code = getValueForKeyInPropertyList(file, "k", buffer.data(), buffer.size());
    const char* const expected = code == 0 ? "value" : "";
    return qstrcmp(buffer.data(), expected) == 0 ? code : 1;
}

/// The result of a look-up: 1 for the right path, 0 for none.
int isPath(const char* found, const char* expected)
{
    return found == nullptr ? 0 : qstrcmp(found, expected) == 0 ? 1 : 2;
}

void onChild(int) {}

bool isChildHandlerBack()
{
    struct sigaction action = {};
    sigaction(SIGCHLD, nullptr, &action);
    return action.sa_handler == onChild;
}

} // namespace

Q_DECLARE_METATYPE(Section)

class AllocationSweepTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void reports_data();
    void reports();
    void loading();
    void recordings();
    void reader();
    void documents();
    void liveSections_data();
    void liveSections();
    void liveRecording();
    void linuxHelpers();
    void helpers();
    void execution();
    void cleanup();

private:
    // Runs an action with each of its allocations failing once, or with no more of them than `limit`.
    // `check(result, hasFailed)` looks at the result of a run without an exception.
    template <typename Action, typename Check>
    void sweep(Action action, Check check, long limit = everyAllocation);
    template <typename Action, typename Check>
    bool runsWithFailure(long failing, Action action, Check check);
    void sweepHelpers(const std::vector<HelperCall>& calls);
    QByteArray write(const char* name, const QByteArray& contents);

    QTemporaryDir folder_;
    QByteArray application_;
    bool isLast_ = false;
    long exceptions_ = 0;
};

QByteArray AllocationSweepTest::write(const char* name, const QByteArray& contents)
{
    QFile file(folder_.filePath(name));
    const bool isWritten = QDir().mkpath(QFileInfo(file).path()) && file.open(QIODevice::WriteOnly) &&
                           file.write(contents) == contents.size();
    QTest::qVerify(isWritten, "written", name, __FILE__, __LINE__);
    return QFile::encodeName(file.fileName());
}

void AllocationSweepTest::initTestCase()
{
    write("applications/mailer.desktop", "[Desktop Entry]\nType=Application\nName=Mailer\nExec=true %u\n");
    write("applications/mimeapps.list", "[Default Applications]\nx-scheme-handler/mailto=mailer.desktop\n");
    application_ = write("applications/org.example.Tool.desktop",
                         "[Desktop Entry]\nType=Application\nName=Tool\nExec=true\n");
    for (const char* variable : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_DATA_DIRS", "XDG_CONFIG_DIRS"}) {
        qputenv(variable, folder_.path().toUtf8());
    }
    // Qt speaks to a bus on a thread of its own.
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent");
    qputenv("TZ", "UTC");
    tzset();
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
}

void AllocationSweepTest::cleanup()
{
    setMachine(nullptr);
    setApplicationServices(nullptr);
    activityTokenAvailable = false;
}

/// One run; false when something is wrong with its result or with what it leaves.
template <typename Action, typename Check>
bool AllocationSweepTest::runsWithFailure(long failing, Action action, Check check)
{
    bool isRight = true;
    try {
        allocationsToFailure = failing;
        const auto result = action();
        isLast_ = std::exchange(allocationsToFailure, 0) > 0;
        isRight = check(result, !isLast_);
    } catch (const std::bad_alloc&) {
        isLast_ = false;
        isRight = std::exchange(allocationsToFailure, 0) == 0;
        ++exceptions_;
    }
    const QByteArray which = "allocation " + QByteArray::number(qlonglong(failing));
    return QTest::qVerify(isRight, "result", which.constData(), __FILE__, __LINE__) &&
           QTest::qVerify(liveCounts().isZero(), "live counts", which.constData(), __FILE__, __LINE__) &&
           QTest::qVerify(!hasChildren(), "no child", which.constData(), __FILE__, __LINE__);
}

template <typename Action, typename Check>
void AllocationSweepTest::sweep(Action action, Check check, long limit)
{
    constexpr long unreached = 1000000;
    constexpr int repetitions = 6;
    long distance = 1;
    if (limit != everyAllocation && !qEnvironmentVariableIsSet("NORVEX_WHOLE_SWEEP")) {
        allocationsToFailure = unreached;
        action();
        distance = 1 + (unreached - std::exchange(allocationsToFailure, 0)) / limit;
    }
    exceptions_ = 0;
    isLast_ = false;
    long failing = 1;
    long runs = 0;
    for (; !isLast_; failing += distance) {
        QVERIFY(failing < unreached);
        ++runs;
        const auto descriptors = openDescriptors();
        long left = 1;
        for (int repetition = 0; left > 0 && repetition < repetitions; ++repetition) {
            const long before = liveBlocks;
            if (!runsWithFailure(failing, action, check)) {
                return;
            }
            left = liveBlocks - before;
        }
        const QByteArray which = "allocation " + QByteArray::number(qlonglong(failing));
        QVERIFY2(left <= QtLeaks::allowed,
                 which + " leaks " + QByteArray::number(qlonglong(left)) + " blocks");
        QVERIFY2(openDescriptors() <= descriptors || QtLeaks::allowed == QtLeaks::any, which.constData());
    }
    fprintf(stdout, "every %ld. of %ld allocations failed: %ld runs, %ld exceptions\n", distance,
            failing - distance - 1, runs, exceptions_);
}

void AllocationSweepTest::reports_data()
{
    QTest::addColumn<QString>("name");
    for (const char* name :
         {"report-complete", "report-noPort", "report-noMatching", "ioKitUsbDevices-unusableNumbers"}) {
        QTest::newRow(name) << NORVEX_TEST_DATA "/recordings/" + QString(name);
    }
}

/// The first report also makes all that is made once and kept.
void AllocationSweepTest::reports()
{
    QFETCH(QString, name);
    setMachine(loadRecording(name + ".plist", nullptr));
    std::optional<QString> last;
    sweep(MacSysInfo::allInfos, [&](const QString& report, bool) {
        const bool isSame = !last || *last == report;
        last = report;
        return isSame;
    });
    if (QString(QTest::currentDataTag()).startsWith("report")) {
        QVERIFY(last.value_or(QString()).startsWith(QString::fromUtf8(contentsOf(name + ".txt"))));
    }
}

void AllocationSweepTest::loading()
{
    const QString file = NORVEX_TEST_DATA "/recordings/report-complete.plist";
    const QtLeaks leaks(QtLeaks::ofXmlReader);
    sweep([&] { return loadRecording(file, nullptr) != nullptr; },
          [](bool isLoaded, bool) { return isLoaded; });
}

void AllocationSweepTest::recordings()
{
    setMachine(loadRecording(NORVEX_TEST_DATA "/recordings/report-complete.plist", nullptr));
    const QByteArray expected = recording();
    QVERIFY(expected.size() > 10000);
    const QtLeaks leaks(QtLeaks::ofExpression);
    sweep(
        recording, [&](const QByteArray& text, bool) { return text == expected; }, 200);
}

void AllocationSweepTest::reader()
{
    const QString report = QString::fromUtf8(contentsOf(NORVEX_TEST_DATA "/reports/macintosh.txt"));
    QStringList expected;
    const auto read = [&report] {
        QStringList values;
        unsigned char processors = 0;
        unsigned short revision = 0;
        QString message;
        const bool isRead =
            SystemInfo::extractAccessKeyValues(report, true, values, processors, revision, message);
        return values << QString::number(processors) << QString::number(revision) << message
                      << (isRead ? "read" : "failed");
    };
    expected = read();
    QVERIFY(expected.size() > 4 && expected.last() == "read");
    sweep(read, [&](const QStringList& values, bool) { return values == expected; });
}

/// Without qtHostInfo(): the C library's resolver, which Qt loads by itself, ends the process by an assertion.
void AllocationSweepTest::liveSections_data()
{
    QTest::addColumn<Section>("section");
    QTest::addColumn<long>("limit");
    QTest::newRow("report") << Section(MacSysInfo::allInfos) << 50L;
    for (const SystemInfo::SectionInfo& section : SystemInfo::sections()) {
        if (section.thread == SystemInfo::SectionThread::Any && section.text != SystemInfo::qtHostInfo) {
            QTest::newRow(section.name) << Section(section.text) << 400L;
        }
    }
}

/// A call of the C library or of libudev that gets no memory fails like any other, so lines may be missing.
void AllocationSweepTest::liveSections()
{
    QFETCH(Section, section);
    QFETCH(long, limit);
    const QString expected = section();
    const QStringList labels = labelsOf(expected);
    // A serial port that libudev fails to describe shows lines that this machine's report may not have.
    const QStringList allLabels =
        labelsOf(expected + contentsOf(NORVEX_TEST_DATA "/recordings/report-codesOfZero.txt"));
    // QStandardPaths leaks what realpath gives, QNetworkInterface a socket.
    const QByteArray name = QTest::currentDataTag();
    const QtLeaks leaks(name == "qtDesktopServices" || name == "network" ? QtLeaks::any : 0);
    const QString separator = MacSysInfo::separator();
    sweep(
        section,
        [&](const QString& text, bool hasFailed) {
            const QStringList found = labelsOf(text);
            for (const QString& label : found) {
                if (!allLabels.contains(label)) {
                    fprintf(stdout, "not in the report: \"%s\"\n", qPrintable(label));
                    return false;
                }
            }
            return (hasFailed || found == labels) && text.count(separator) == expected.count(separator);
        },
        limit);
}

void AllocationSweepTest::liveRecording()
{
    sweep(
        recording, [](const QByteArray& text, bool) { return text.endsWith("</plist>\n"); }, 30);
}

/// A helper throws nothing: without memory it gives its failure result.
void AllocationSweepTest::sweepHelpers(const std::vector<HelperCall>& calls)
{
    const auto previous = signal(SIGCHLD, onChild);
    for (const HelperCall& helper : calls) {
        const QtLeaks leaks(QByteArray(helper.name) == "XML list" ? QtLeaks::ofXmlReader : 0);
        sweep(helper.call, [&](int result, bool hasFailed) {
            return (result == helper.right || (hasFailed && result == helper.failed)) && isChildHandlerBack();
        });
        QVERIFY2(!QTest::currentTestFailed() && exceptions_ == 0, helper.name);
    }
    signal(SIGCHLD, previous);
}

void AllocationSweepTest::linuxHelpers()
{
    const QByteArray xml =
        write("xml.plist", "<plist><dict><key>k</key><string>value</string></dict></plist>");
    // A dictionary, its key and its value, the table of their offsets, and the trailer.
    const QByteArray binary = write(
        "binary.plist", QByteArray::fromHex("62706c6973743030d10102516b5576616c7565080b0d0000000000000101"
                                            "000000000000000300000000000000000000000000000013"));
    const auto findApplication = [&] {
        return isPath(absolutePathForAppBundleWithIdentifier("org.example.Tool"), application_.constData());
    };
    QCOMPARE(findApplication(), 1); // registers the thread's text with the C library, which needs memory
    sweepHelpers({
        {"instances", checkIfApplicationIsAlreadyRunningThenActivate, 0, 0},
        {"process", [] { return checkIfProcessWithIdIsRunning(unsigned(getpid())); }, 1, 0},
        {"volume", checkVolumeCaseSensitiveForAppExecutableURL, checkVolumeCaseSensitiveForAppExecutableURL(),
         0},
        {"application", findApplication, 1, 0},
        {"no application", [] { return isPath(absolutePathForAppBundleWithIdentifier("none"), ""); }, 0, 0},
        {"XML list", [&] { return lookUp(xml.constData()); }, 0, -2},
        {"binary list", [&] { return lookUp(binary.constData()); }, 0, -2},
        {"no list", [&] { return lookUp("/nonexistent"); }, -1, -2},
        {"no activity", [] { return disableAppNap("why"), enableAppNap(), int(activityTokenAvailable); }, 0,
         0},
        {"no screen", [] { return int(macBackingScaleFactor()); }, 0, 0},
    });
}

void AllocationSweepTest::execution()
{
    if (geteuid() != 0) {
        QSKIP("only root needs no authorisation");
    }
    QByteArray file = write("starts", "");
    QByteArray option = "-c";
    QByteArray script = "echo >> $0";
    const std::array<char*, 4> arguments = {option.data(), script.data(), file.data(), nullptr};
    int starts = 0;
    const auto run = [&] {
        const bool isStarted = executeWithAuthorization("/bin/sh", arguments.data(), true);
        starts += isStarted ? 1 : 0;
        return int(isStarted);
    };
    sweepHelpers({
        {"awaited", run, 1, 0},
        {"detached", [] { return executeWithAuthorization("/bin/true", nullptr, false); }, 1, 0},
    });
    QCOMPARE(contentsOf(QFile::decodeName(file)).size(), starts); // a call that fails has started nothing
}

void AllocationSweepTest::helpers()
{
    ScriptedServices services;
    services.instances = {RunningApplication(7), RunningApplication(8)};
    services.runningProcess = 5;
    services.string = "value";
    services.atEachCall = [] { ::operator delete(::operator new(1)); };
    setApplicationServices(&services);
    const auto isClean = [&](int result) {
        const int open = activityTokenAvailable ? 1 : 0;
        const bool isRight = services.openPools == 0 && services.openAuthorizations == 0 &&
                             services.retained == open && services.openActivities == open;
        return isRight ? result : 99;
    };
    const auto findApplication = [] {
        return isPath(absolutePathForAppBundleWithIdentifier("known"), "/path");
    };
    const auto napTwice = [&] {
        disableAppNap("why");
        disableAppNap("again");
        const int isOpen = isClean(activityTokenAvailable);
        enableAppNap();
        return isOpen;
    };
    std::vector<HelperCall> calls = {
        {"instances", checkIfApplicationIsAlreadyRunningThenActivate, 1, 0},
        {"process", [] { return checkIfProcessWithIdIsRunning(5); }, 1, 0},
        {"volume", checkVolumeCaseSensitiveForAppExecutableURL, 1, 0},
        {"application", findApplication, 1, 0},
        {"list", [] { return lookUp("p"); }, 0, -2},
        {"detached", [] { return executeWithAuthorization("/tool", nullptr, false); }, 1, 0},
        {"awaited", [] { return executeWithAuthorization("/tool", nullptr, true); }, 0, 0},
        {"activity", napTwice, 1, 0},
        {"screen", [] { return int(macBackingScaleFactor()); }, 2, 0},
        {"log", [] { return macLog("line"), 1; }, 1, 1},
    };
    for (HelperCall& helper : calls) {
        helper.call = [&isClean, call = helper.call] { return isClean(call()); };
    }
    sweepHelpers(calls);
}

void AllocationSweepTest::documents()
{
    const QString text = QString::fromUtf8(contentsOf(NORVEX_TEST_DATA "/reports/twoDisks.txt"));
    const QString other = QString(text).replace("Free:  ", "Avail: ");
    const auto read = [&] {
        const auto report = norvex::SystemInfo::CReport::fromText(text);
        const auto differences = report.compare(norvex::SystemInfo::CReport::fromText(other));
        return report.value("ioKitSataDiskDevices[W1D2Q3R4]/Size") + QString::number(differences.size()) +
               report.text();
    };
    sweep(read, [&](const QString& result, bool) { return result == "1000.2 GB5" + text; });

    const auto report = norvex::SystemInfo::CReport::fromText(
        "Other\nOtto7 has C:\\Users\\jo and 10.1.2.3\nQHostInfo\nLocal host name:   otto7.gmbh\n");
    const auto redact = [&report] {
        norvex::SystemInfo::CRedactor redactor;
        redactor.collect(report);
        return report.redacted(&redactor).text();
    };
    const QString redacted = redact();
    QVERIFY(redacted.contains("host1 has C:\\Users\\user1 and 192.0.2.1"));
    // A QRegularExpression that gets no memory finds nothing; the redaction then hides more than it has to.
    const QtLeaks leaks(QtLeaks::ofExpression);
    sweep(redact, [&redacted](const QString& result, bool hasFailed) {
        const bool isPrivate = result.contains("otto", Qt::CaseInsensitive) || result.contains("jo") ||
                               result.contains("10.1") || result.contains("gmbh");
        return hasFailed ? !isPrivate && result.count('\n') == 4 : result == redacted;
    });
}

QTEST_GUILESS_MAIN(AllocationSweepTest)
#include "allocationSweepTest.moc"
