#include "systeminfo/mac/platform/live/desktopFiles.h"
#include "systeminfo/mac/platform/live/services.h"
#include "tests/cases.h"

#include <QtDBus>
#include <QtTest>
#include <csignal>
#include <cstring>
#include <future>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace norvex;

namespace {

constexpr std::int32_t notRunning = -65563;

/// Stands for the Avahi daemon on a bus of the test's own.
class AvahiDouble : public QDBusVirtualObject
{
public:
    QByteArray version; ///< what it answers; nothing at all while empty

    QString introspect(const QString&) const override { return QString(); }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        if (!version.isEmpty()) {
            connection.send(message.createReply(QString::fromUtf8(version)));
        }
        return true;
    }
};

struct TimedAnswer
{
    DaemonAnswer answer;
    qint64 milliseconds;
};

/// Asks on several threads without event loops at once, while this thread's loop serves the double.
QList<TimedAnswer> ask(int threads = 1)
{
    std::vector<std::future<TimedAnswer>> questions;
    questions.reserve(std::size_t(threads));
    for (int thread = 0; thread < threads; ++thread) {
        questions.push_back(std::async(std::launch::async, [] {
            QElapsedTimer timer;
            timer.start();
            const DaemonAnswer answer = avahiVersion();
            return TimedAnswer{answer, timer.elapsed()};
        }));
    }
    QList<TimedAnswer> answers;
    for (auto& question : questions) {
        while (question.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready) {
            QCoreApplication::processEvents();
        }
        answers.append(question.get());
    }
    return answers;
}

} // namespace

class LiveServicesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void versionTexts_data();
    void versionTexts();
    void runningDaemon();
    void noDaemon();
    void stoppedBus();
    void silentSocket();
    void noBus();
    void urlHandlers_data() { addCases("urlHandlers.txt", {"files", "handler"}); }
    void urlHandlers();
    void cleanupTestCase();

private:
    void writeFile(const QString& name, const QByteArray& text) const;

    QTemporaryDir folder_;
    QString address_;
    QProcess bus_;
};

void LiveServicesTest::writeFile(const QString& name, const QByteArray& text) const
{
    QFile file(folder_.filePath(name));
    QVERIFY(QDir().mkpath(QFileInfo(file).path()) && file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), qint64(text.size()));
}

void LiveServicesTest::initTestCase()
{
    const QByteArray folder = folder_.path().toUtf8();
    // The bus could start a daemon, which would leave a file behind.
    writeFile(QStringLiteral("services/org.freedesktop.Avahi.service"),
              "[D-BUS Service]\nName=org.freedesktop.Avahi\nExec=/bin/sh -c \"touch " + folder +
                  "/started\"\n");
    writeFile(
        QStringLiteral("bus.conf"),
        "<busconfig><type>session</type><listen>unix:path=" + folder + "/bus</listen><servicedir>" + folder +
            "/services</servicedir><policy context='default'><allow send_destination='*' eavesdrop='true'/>"
            "<allow eavesdrop='true'/><allow own='*'/></policy></busconfig>");

    bus_.start(QStringLiteral("dbus-daemon"),
               {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                QStringLiteral("--config-file=") + folder_.filePath(QStringLiteral("bus.conf"))});
    QVERIFY2(bus_.waitForReadyRead(), "dbus-daemon does not run");
    // In front of it stand an address of another kind and one that nobody listens at.
    address_ = QString::fromUtf8(bus_.readLine().trimmed());
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "tcp:host=x;unix:path=/no/such%20bus;" + address_.toUtf8());
}

void LiveServicesTest::versionTexts_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("avahi 0.8") << 800;
    QTest::newRow("avahi 0.6.32") << 632;
    QTest::newRow("avahi 1.2.3-rc1") << 10203;
    QTest::newRow("0.9") << 900;
    QTest::newRow("avahi 8") << -1;
    QTest::newRow("avahi 0.100") << -1;
    QTest::newRow("avahi .8") << -1;
    QTest::newRow("avahi") << -1;
}

void LiveServicesTest::versionTexts()
{
    const auto number = avahiVersionNumber(QTest::currentDataTag());
    QTEST(number ? int(*number) : -1, "number");
}

void LiveServicesTest::runningDaemon()
{
    const QString name = QStringLiteral("double");
    AvahiDouble avahi;
    QDBusConnection connection = QDBusConnection::connectToBus(address_, name);
    QVERIFY(connection.registerVirtualObject(QStringLiteral("/"), &avahi));
    QVERIFY(connection.registerService(QStringLiteral("org.freedesktop.Avahi")));

    avahi.version = "avahi 0.6.32";
    for (const TimedAnswer& asked : ask(4)) {
        QCOMPARE(asked.answer.error, 0);
        QCOMPARE(asked.answer.version, 632u);
    }
    avahi.version = "no version";
    QCOMPARE(ask().first().answer.error, notRunning);
    avahi.version.clear();
    const TimedAnswer hung = ask().first();
    QCOMPARE(hung.answer.error, notRunning);
    QVERIFY2(hung.milliseconds <= 250, QByteArray::number(hung.milliseconds).constData());
    // Only the double's own connection is left: no question leaves one behind.
    const QStringList names = connection.interface()->registeredServiceNames();
    QCOMPARE(names.filter(QRegularExpression(QStringLiteral("^:"))), QStringList(connection.baseService()));
    QDBusConnection::disconnectFromBus(name);
}

void LiveServicesTest::noDaemon()
{
    QCOMPARE(ask().first().answer.error, notRunning);
    QVERIFY(!QFile::exists(folder_.filePath(QStringLiteral("started"))));
}

void LiveServicesTest::stoppedBus()
{
    ::kill(pid_t(bus_.processId()), SIGSTOP);
    const TimedAnswer asked = ask().first();
    ::kill(pid_t(bus_.processId()), SIGCONT);
    QCOMPARE(asked.answer.error, notRunning);
    QVERIFY2(asked.milliseconds <= 250, QByteArray::number(asked.milliseconds).constData());
}

void LiveServicesTest::silentSocket()
{
    // Nobody accepts connections, and the backlog has room for one: the first waits, the second is refused.
    const QByteArray path = folder_.filePath(QStringLiteral("silent")).toUtf8();
    sockaddr_un name = {};
    name.sun_family = AF_UNIX;
    std::memcpy(name.sun_path, path.constData(), std::size_t(path.size()));
    const int silent = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    QVERIFY(::bind(silent, reinterpret_cast<const sockaddr*>(&name), sizeof name) == 0 &&
            ::listen(silent, 0) == 0);
    const QByteArray before = qgetenv("DBUS_SYSTEM_BUS_ADDRESS");
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + path);
    const QList<TimedAnswer> answers = {ask().first(), ask().first()};
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", before);
    ::close(silent);
    for (const TimedAnswer& asked : answers) {
        QCOMPARE(asked.answer.error, notRunning);
        QVERIFY2(asked.milliseconds <= 250, QByteArray::number(asked.milliseconds).constData());
    }
}

void LiveServicesTest::noBus()
{
    const QByteArray before = qgetenv("DBUS_SYSTEM_BUS_ADDRESS");
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/no/such/socket");
    const TimedAnswer asked = ask().first();
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", before);
    QCOMPARE(asked.answer.error, notRunning);
    QVERIFY2(asked.milliseconds <= 50, QByteArray::number(asked.milliseconds).constData());
}

void LiveServicesTest::urlHandlers()
{
    QFETCH(QString, files);
    files.replace(QStringLiteral("$usable"), QStringLiteral("[Desktop Entry]|Type=Application|Exec=true"))
        .replace(QStringLiteral("$stated"), QStringLiteral("[MIME Cache]|$mailto=b.desktop;a.desktop;"))
        .replace(QStringLiteral("$chosen "),
                 QStringLiteral("[Other]|$mailto=b.desktop|[Default Applications]|$mailto="))
        .replace(QStringLiteral("$mailto"), QStringLiteral("x-scheme-handler/mailto"));
    const QString folder = QString::fromLatin1(QTest::currentDataTag()) + QLatin1Char('/');
    for (const QString& file : files.split(QLatin1Char('\n'))) {
        const QString lines = file.section(QStringLiteral(": "), 1);
        writeFile(folder + file.section(QStringLiteral(": "), 0, 0),
                  lines.toUtf8().replace('|', '\n') + '\n');
    }
    const QByteArray root = folder_.filePath(folder).toUtf8();
    qputenv("XDG_CONFIG_HOME", root + "config");
    qputenv("XDG_CONFIG_DIRS", root + "etc");
    qputenv("XDG_DATA_HOME", root + "home");
    qputenv("XDG_DATA_DIRS", root + "system");
    qputenv("XDG_CURRENT_DESKTOP", "KDE");
    QFETCH(QString, handler);
    QCOMPARE(urlHandlerPath("MailTo").value_or("none").replace(root, ""), handler.toUtf8());
    QCOMPARE(urlHandlerPath("no-such-scheme").value_or("none"), QByteArray("none"));
    QCOMPARE(urlHandlerPath("").value_or("none"), QByteArray("none"));
}

void LiveServicesTest::cleanupTestCase()
{
    bus_.terminate();
    bus_.waitForFinished();
}

QTEST_GUILESS_MAIN(LiveServicesTest)
#include "liveServicesTest.moc"
