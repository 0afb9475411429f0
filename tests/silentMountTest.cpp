#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/mac/platform/live/desktopFiles.h"
#include "systeminfo/mac/platform/live/servedMounts.h"
#include "systeminfo/mac/platform/machine.h"

#include <QtTest>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <linux/fuse.h>
#include <list>
#include <poll.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace norvex;
using SystemInfo::MacSysInfo::FileSystemRecord;
using SystemInfo::MacSysInfo::getFileSystemInfo;

namespace {

const uid_t user = getuid();

/// What the program behind a mount does with requests.
enum Behaviour { ReadsNothing, AnswersNothing, Answers };

/// A FUSE file system with an empty folder. When it goes, whatever waits for it gets an error.
class TestMount
{
public:
    TestMount(const QString& point, Behaviour first)
        : behaviour(first), point_(QFile::encodeName(point)), device_(open("/dev/fuse", O_RDWR | O_CLOEXEC))
    {
        const QByteArray options =
            "fd=" + QByteArray::number(device_) + ",rootmode=40000,user_id=0,group_id=0,allow_other";
        QDir().mkpath(point);
        isMounted =
            mount("test", point_.constData(), "fuse.test", MS_NOSUID | MS_NODEV, options.constData()) == 0;
        server_ = std::thread([this] { serve(); });
    }
    ~TestMount()
    {
        umount2(point_.constData(), MNT_DETACH);
        isOver_ = true;
        server_.join();
        close(device_);
    }
    TestMount(const TestMount&) = delete;
    TestMount& operator=(const TestMount&) = delete;

    std::atomic<Behaviour> behaviour;
    bool isMounted = false;

private:
    void serve() const
    {
        alignas(fuse_in_header) char request[1 << 17];
        while (!isOver_) {
            pollfd news = {device_, POLLIN, 0};
            // Waits only briefly, so that a change of the behaviour soon holds for the next request.
            if (poll(&news, 1, 10) != 1 || behaviour == ReadsNothing) {
                usleep(1000);
            } else if (read(device_, request, sizeof request) > 0) {
                answer(*reinterpret_cast<const fuse_in_header*>(request));
            }
        }
    }

    void answer(const fuse_in_header& request) const
    {
        struct
        {
            fuse_out_header header;
            union {
                fuse_init_out init;
                fuse_attr_out attributes;
                fuse_statfs_out figures;
            } body;
        } reply = {};
        std::size_t size = 0;
        if (request.opcode == FUSE_INIT) {
            reply.body.init.major = FUSE_KERNEL_VERSION;
            reply.body.init.minor = 31;
            reply.body.init.max_write = 4096;
            size = sizeof reply.body.init;
        } else if (behaviour != Answers || request.opcode == FUSE_FORGET ||
                   request.opcode == FUSE_INTERRUPT) {
            return;
        } else if (request.opcode == FUSE_GETATTR) {
            reply.body.attributes.attr.mode = S_IFDIR | 0755;
            reply.body.attributes.attr.nlink = 2;
            size = sizeof reply.body.attributes;
        } else if (request.opcode == FUSE_STATFS) {
            reply.body.figures.st.blocks = 1000;
            reply.body.figures.st.bsize = reply.body.figures.st.frsize = 4096;
            size = sizeof reply.body.figures;
        } else {
            reply.header.error = -ENOSYS;
        }
        reply.header.unique = request.unique;
        reply.header.len = std::uint32_t(sizeof reply.header + size);
        (void)!write(device_, &reply, reply.header.len);
    }

    QByteArray point_;
    int device_;
    std::atomic<bool> isOver_{false};
    std::thread server_;
};

/// Gives this process a mount namespace of its own: nobody else sees the tests' mounts, and they end with the process.
/// @return whether it has one now
bool separateMounts()
{
    const auto write = [](const char* path, const QByteArray& text) {
        QFile file(QString::fromLatin1(path));
        return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write(text) == text.size();
    };
    if (unshare(CLONE_NEWNS) != 0 &&
        !(unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && write("/proc/self/setgroups", "deny") &&
          write("/proc/self/uid_map", "0 " + QByteArray::number(user) + " 1"))) {
        return false;
    }
    return mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

bool areSeparate = false;

} // namespace

class SilentMountTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void report_data();
    void report();
    void manyMounts();
    void paths();
    void links_data();
    void links();
    void withoutProcess();
    void environment_data();
    void environment();
    void systemFolder();

private:
    QByteArray toolOutput(const QString& prefix, const char* sections = "listFileSystemVolumesInfo");
    QString path(const char* name) const { return folder_->filePath(QLatin1String(name)); }

    std::unique_ptr<QTemporaryDir> folder_;
};

void SilentMountTest::init()
{
    folder_ = std::make_unique<QTemporaryDir>();
    const TestMount mount(path("try"), Answers);
    if (!areSeparate || !mount.isMounted) {
        QSKIP("FUSE file systems cannot be mounted here");
    }
}

/// Sections that the tool prints, by default the volumes, up to the end of its output.
/// @param sections the first one's name, then further arguments and redirections
QByteArray SilentMountTest::toolOutput(const QString& prefix, const char* sections)
{
    QProcess process;
    process.start(
        QStringLiteral("sh"),
        {QStringLiteral("-c"), prefix + QStringLiteral(" %1 --section %2 | cat")
                                            .arg(QLatin1String(NORVEX_TOOL), QLatin1String(sections))});
    return process.waitForFinished(10000) ? process.readAllStandardOutput() : QByteArray("no end");
}

void SilentMountTest::report_data()
{
    QTest::addColumn<int>("behaviour");
    QTest::newRow("requests unread") << int(ReadsNothing);
    QTest::newRow("requests read") << int(AnswersNothing);
}

void SilentMountTest::report()
{
    QFETCH(int, behaviour);
    const QByteArray root = toolOutput(QString()).split('\n').value(2);
    const TestMount first(path("a"), Behaviour(behaviour));
    const TestMount second(path("b"), Behaviour(behaviour));
    const TestMount third(path("c"), Answers);
    QElapsedTimer timer;
    timer.start();
    const QByteArray text = toolOutput(QString());
    QVERIFY2(timer.elapsed() >= 1900 && timer.elapsed() < 3500, qPrintable(QString::number(timer.elapsed())));

    const QByteArray lines = "\n" +
                             QFile::encodeName(path("a") + '\n' + path("b") + '\n' + path("c") + '\n') +
                             "  Mount to:         " + QFile::encodeName(path("c"));
    QVERIFY2(text.contains(lines) && text.contains("\n  Blocks total:     1000\n"), text.constData());
    QVERIFY2(root.contains("Mount to: ") && text.contains("/\n" + root + '\n'), text.constData());
    // A request that the program has not read can be withdrawn: no process waits for it after the tool has ended.
    bool isFree = behaviour == AnswersNothing;
    const auto unmount = [&] {
        return isFree = isFree || umount2(QFile::encodeName(path("a")).constData(), 0) == 0;
    };
    QTRY_VERIFY(unmount());
}

/// All of them share the limit, also where few descriptors are left. The table is read only when it changes.
void SilentMountTest::manyMounts()
{
    const auto before = ServedMounts::current();
    QCOMPARE(ServedMounts::current(), before);
    std::list<TestMount> mounts;
    for (int i = 0; i < 60; ++i) {
        mounts.emplace_back(folder_->filePath(QString::number(i)), AnswersNothing);
    }
    QCOMPARE(ServedMounts::current()->points().size(), before->points().size() + 60);

    // Somebody closes the descriptor, and its number becomes another file's.
    for (const QString& name : QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::Files | QDir::System)) {
        const QString link = QStringLiteral("/proc/self/fd/") + name;
        if (QFile::symLinkTarget(link).endsWith(QStringLiteral("/mountinfo"))) {
            QVERIFY(dup2(STDIN_FILENO, name.toInt()) != -1);
            QCOMPARE(ServedMounts::current()->points().size(), before->points().size() + 60);
            QCOMPARE(QFile::symLinkTarget(link), QFile::symLinkTarget(QStringLiteral("/proc/self/fd/0")));
            QVERIFY(close(name.toInt()) == 0);
        }
    }
    QElapsedTimer timer;
    timer.start();
    const QByteArray text = toolOutput(QStringLiteral("prlimit --nofile=48"));
    QVERIFY2(timer.elapsed() < 3500, qPrintable(QString::number(timer.elapsed())));
    QVERIFY2(text.endsWith('\n' + QFile::encodeName(path("9")) + '\n'), text.constData());
}

void SilentMountTest::paths()
{
    TestMount mount(path("mount"), Answers);
    QVERIFY(QFile::link(path("mount"), path("link")));
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(path("mount")));
    qputenv("XDG_DATA_HOME", QFile::encodeName(path("mount")));
    qputenv("XDG_DATA_DIRS", QFile::encodeName(path("share")));
    QVERIFY(QDir().mkpath(path("share/applications")));
    std::ofstream(path("share/applications/a.desktop").toStdString())
        << "[Desktop Entry]\nType=Application\n";
    std::ofstream(path("share/applications/mimeinfo.cache").toStdString())
        << "[MIME Cache]\nx-scheme-handler/mailto=a.desktop\n";
    const QString besides = folder_->filePath("../" + QFileInfo(folder_->path()).fileName() + "/mount");
    const auto answering = [&] {
        FileSystemRecord record = {};
        const QByteArray link = QFile::encodeName(path("link"));
        return QList<bool>{getFileSystemInfo(path("link"), &record),
                           getFileSystemInfo(QStringLiteral("./."), &record),
                           getFileSystemInfo(besides, &record),
                           liveMachine()->caseSensitive(link).result == 1,
                           liveMachine()->fileExists(link),
                           urlHandlerPath("mailto").has_value(),
                           getFileSystemInfo(QStringLiteral("/"), &record)};
    };
    const QList<bool> all = {true, true, true, true, true, true, true};
    QCOMPARE(answering(), all);

    // All calls together wait once, and nothing is left open after the answers.
    const auto descriptors = [] { return QDir(QStringLiteral("/proc/self/fd")).count(); };
    const auto descriptorsBefore = descriptors();
    mount.behaviour = ReadsNothing;
    QElapsedTimer timer;
    timer.start();
    const QList<bool> silent = answering();
    QVERIFY2(timer.elapsed() < 2500, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(silent, (QList<bool>{false, false, false, false, false, false, true}));
    QCOMPARE(wait(nullptr), -1); // for no child that the caller could know
    mount.behaviour = Answers;
    QTRY_COMPARE(answering(), all);
    QCOMPARE(descriptors(), descriptorsBefore);
    QVERIFY(waitpid(-1, nullptr, __WALL | WNOHANG) == -1 && errno == ECHILD);
    QDir::setCurrent(before);
}

void SilentMountTest::links_data()
{
    QTest::addColumn<QString>("link");
    QTest::newRow("none") << QString();
    QTest::newRow("list") << QStringLiteral("mimeapps.list");
    QTest::newRow("desktop file") << QStringLiteral("applications/a.desktop");
    QTest::newRow("program") << QStringLiteral("program");
}

/// Files in a local folder of applications may be links to a silent file system.
void SilentMountTest::links()
{
    QFETCH(QString, link);
    const TestMount mount(path("mount"), ReadsNothing);
    QVERIFY(QDir(folder_->path()).mkpath(QStringLiteral("applications")));
    const auto write = [this](const char* name, const char* text) {
        std::ofstream(path(name).toStdString()) << text;
    };
    write("program", "");
    QVERIFY(QFile::setPermissions(path("program"), QFile::Permissions(0x7755)));
    write("mimeapps.list", "[Default Applications]\nx-scheme-handler/mailto=a.desktop\n");
    write("applications/a.desktop", "[Desktop Entry]\nType=Application\nExec=program %u\n");
    if (!link.isEmpty()) {
        const QString file = folder_->filePath(link);
        QVERIFY(QFile::remove(file) && QFile::link(path("mount/file"), file));
    }
    const QByteArray text =
        toolOutput(QStringLiteral("env XDG_CONFIG_HOME=%1 XDG_DATA_HOME=%1 XDG_DATA_DIRS=%1 PATH=%1:$PATH")
                       .arg(folder_->path()),
                   "defaultEmailApp");
    const QString app = link.isEmpty() ? path("applications/a.desktop") : QStringLiteral("<failed>");
    QVERIFY2(text.endsWith(QFile::encodeName("'" + app + "'\n")), text.constData());
}

void SilentMountTest::withoutProcess()
{
    const TestMount mount(path("a"), Answers);
    QVERIFY(QFile::setPermissions(folder_->path(), QFile::Permissions(0x7755)));
    QVERIFY(toolOutput(QString()).contains("\n  Blocks total:     1000\n"));
    const QByteArray text =
        toolOutput(QStringLiteral("%1 prlimit --nproc=1")
                       .arg(user == 0 ? QStringLiteral("setpriv --reuid=65534 --regid=65534 --clear-groups")
                                      : QString()));
    QVERIFY2(text.contains("/\n  Mount to: ") && text.endsWith('\n' + QFile::encodeName(path("a")) + '\n'),
             text.constData());
}

void SilentMountTest::environment_data()
{
    QTest::addColumn<QString>("settings"); // %1: a silent mount; %2: a local folder with a link to it
    QTest::addColumn<QString>("named");
    QTest::newRow("home") << QStringLiteral("HOME=%1 XDG_RUNTIME_DIR=%2") << QStringLiteral("HOME=%1");
    QTest::newRow("link in home") << QStringLiteral("HOME=%2 XDG_CACHE_HOME=")
                                  << QStringLiteral("XDG_CACHE_HOME=%2/.cache");
    QTest::newRow("settings") << QStringLiteral("HOME=%2 XDG_CACHE_HOME=%2 XDG_CONFIG_HOME=%1")
                              << QStringLiteral("XDG_CONFIG_HOME=%1");
    QTest::newRow("list") << QStringLiteral("XDG_CONFIG_DIRS=/etc/xdg:%1")
                          << QStringLiteral("XDG_CONFIG_DIRS=/etc/xdg:%1");
    QTest::newRow("temporary files") << QStringLiteral("TMPDIR=%1/x") << QStringLiteral("TMPDIR=%1/x");
    QTest::newRow("time zone") << QStringLiteral("TZ=:%1/zone") << QStringLiteral("TZ=:%1/zone");
    QTest::newRow("plug-ins") << QStringLiteral("QT_PLUGIN_PATH=%1") << QStringLiteral("QT_PLUGIN_PATH=%1");
}

/// Libraries do not look at folders that do not answer; the report shows the variables and folders as they are.
void SilentMountTest::environment()
{
    QFETCH(QString, settings);
    QFETCH(QString, named);
    const TestMount mount(path("silent"), ReadsNothing);
    const QString local = path("local");
    QVERIFY(QDir().mkpath(local) && QFile::link(path("silent"), local + QStringLiteral("/.cache")));
    QVERIFY(QFile::setPermissions(local, QFile::Permissions(0x7700))); // else Qt logs early
    for (QString* text : {&settings, &named}) {
        text->replace(QStringLiteral("%1"), path("silent")).replace(QStringLiteral("%2"), local);
    }
    QElapsedTimer timer;
    timer.start();
    const QByteArray text =
        toolOutput(QStringLiteral("env ") + settings,
                   "defaultEmailApp --section qtDateTime --section qtDesktop --section qtDesktopServices "
                   "--section qtSystemEnvironment 2>&1");
    QVERIFY2(timer.elapsed() < 4000, qPrintable(QString::number(timer.elapsed())));
    QStringList lines = settings.split(QLatin1Char(' '));
    const QString home = lines.first().startsWith(QStringLiteral("HOME=")) ? lines.first().mid(5) : QString();
    lines.replaceInStrings(QRegularExpression(QStringLiteral("^")), QStringLiteral("\n  "));
    lines << QStringLiteral("norvex-systeminfo: no file system answers with %1;").arg(named)
          << QStringLiteral("\nNumber of screens:  1\n")
          << QStringLiteral("\nDesktop:                   ") + home
          << QStringLiteral("\nHome:                      ") + home;
    for (const QString& line : lines) {
        QVERIFY2(text.contains(QFile::encodeName(line)),
                 qPrintable(line + QStringLiteral(" not in\n") + QString::fromUtf8(text)));
    }
}

void SilentMountTest::systemFolder()
{
    const QString folder = QStringLiteral("/etc/xdg");
    if (!QFileInfo::exists(folder)) {
        QSKIP("the system has no such folder");
    }
    const TestMount mount(folder, AnswersNothing);
    QCOMPARE(
        toolOutput(QString(), "cpuInfo 2>&1"),
        QByteArray("norvex-systeminfo: the file system of '/etc/xdg' does not answer, and Qt looks there\n"));
}

int main(int argc, char** argv)
{
    areSeparate = separateMounts();
    const QCoreApplication application(argc, argv);
    SilentMountTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "silentMountTest.moc"
