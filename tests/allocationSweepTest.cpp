// Every allocation of an action fails once: the first in the first run, the second in the second, and so on until
// a run makes fewer. Measured is what the thread asks of malloc, calloc and realloc, wherever it asks: in this
// project, in Qt's containers (Qt throws std::bad_alloc when it gets no memory), in the XML parser and, through
// operator new, in the standard library. Aligned allocations and other threads are not counted. Leaks show in the
// live counts and, where the address sanitizer watches, in its report at the end.

#include "recordingSupport.h"
#include "systeminfo/mac/norvexSystemInfoMac.h"

#include <QtTest>
#include <ctime>
#include <dlfcn.h>
#include <new>

namespace {

thread_local long allocationsToFailure = 0; // 0: none fails

} // namespace

// In place of the C library's (or the sanitizer's, and then called before its shadow memory exists).
#define NORVEX_INTERPOSED [[gnu::visibility("default"), gnu::no_sanitize_address]]
#define NORVEX_FORWARD(function, ...)                                                                        \
    static decltype(&function) next = nullptr;                                                               \
    if (next == nullptr)                                                                                     \
        next = reinterpret_cast<decltype(&function)>(dlsym(RTLD_NEXT, #function));                           \
    if (allocationsToFailure > 0 && --allocationsToFailure == 0)                                             \
        return nullptr;                                                                                      \
    return next(__VA_ARGS__)

extern "C" {

NORVEX_INTERPOSED void* malloc(std::size_t size) noexcept
{
    NORVEX_FORWARD(malloc, size);
}

NORVEX_INTERPOSED void* calloc(std::size_t count, std::size_t size) noexcept
{
    NORVEX_FORWARD(calloc, count, size);
}

NORVEX_INTERPOSED void* realloc(void* block, std::size_t size) noexcept
{
    NORVEX_FORWARD(realloc, block, size);
}

// QXmlStreamReader's constructor leaks its two stacks when a later allocation in it fails. Qt has no symbols that could
// name it, so all that this program leaks through QtCore is passed over; other programs report it.
[[gnu::visibility("default")]] const char*
__lsan_default_suppressions() // NOLINT: the sanitizer asks for this name
{
    return "leak:libQt5Core.so.5\n";
}

} // extern "C"

// The sanitizer's operators do not go through malloc; these do.
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

class AllocationSweepTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void reports_data();
    void reports();
    void loading();
    void cleanup() { norvex::setMachine(nullptr); }

private:
    // Runs an action with each of its allocations failing once; `check` looks at the result of a run that survives.
    template <typename Action, typename Check>
    void sweep(Action action, Check check);
};

void AllocationSweepTest::initTestCase()
{
    qputenv("TZ", "UTC");
    tzset();
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
}

template <typename Action, typename Check>
void AllocationSweepTest::sweep(Action action, Check check)
{
    constexpr long unreached = 1000000;
    long failing = 0;
    long survived = 0;
    for (long left = 0; left == 0; ++failing) {
        QVERIFY(failing < unreached);
        try {
            allocationsToFailure = failing + 1;
            const auto result = action();
            left = std::exchange(allocationsToFailure, 0);
            ++survived;
            QVERIFY(check(result));
        } catch (const std::bad_alloc&) {
            QCOMPARE(std::exchange(allocationsToFailure, 0), 0L);
        }
        QVERIFY2(norvex::liveCounts().isZero(), QByteArray::number(qlonglong(failing + 1)).constData());
    }
    QVERIFY(failing > 100);
    fprintf(stdout, "%ld allocations failed, %ld of them without an exception\n", failing - 1, survived - 1);
}

void AllocationSweepTest::reports_data()
{
    QTest::addColumn<QString>("name");
    for (const char* name :
         {"report-complete", "report-noPort", "report-noMatching", "ioKitUsbDevices-unusableNumbers"}) {
        QTest::newRow(name) << NORVEX_TEST_DATA "/recordings/" + QString(name);
    }
}

// The first of them finds everything that is made once and kept not yet made.
void AllocationSweepTest::reports()
{
    QFETCH(QString, name);
    norvex::setMachine(norvex::loadRecording(name + ".plist", nullptr));
    std::optional<QString> last;
    sweep(norvex::SystemInfo::MacSysInfo::allInfos, [&](const QString& report) {
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
    sweep([&] { return norvex::loadRecording(file, nullptr) != nullptr; },
          [](bool isLoaded) { return isLoaded; });
}

QTEST_GUILESS_MAIN(AllocationSweepTest)
#include "allocationSweepTest.moc"
