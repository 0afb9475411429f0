// Runs the command-line tool as its users do, from a shell.

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

namespace {

struct Outcome
{
    int status = -1;
    QString output;
    QString messages;
};

/// The output without what differs from one call to the next and without what stands between sections.
QString steadyLines(QString text)
{
    static const QRegularExpression changing(
        QStringLiteral(
            "^(Local Date and Time|UTC   Date and Time|Application PID): .*$|^-{72}\n|^#{5,} .* #+\n"),
        QRegularExpression::MultilineOption);
    return text.remove(changing);
}

} // namespace

class ToolTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void commands_data();
    void commands();
    void sectionsMakeTheReport();
    void withoutAnsweringServer_data();
    void withoutAnsweringServer();

private:
    Outcome runScript(const QString& script, const QMap<QString, QString>& variables = {});

    QTemporaryDir folder_;
};

void ToolTest::initTestCase()
{
    QVERIFY(folder_.isValid());
    const QDir reports(QStringLiteral(NORVEX_TEST_DATA "/reports"));
    const QStringList names = reports.entryList({QStringLiteral("*.txt")});
    for (const QString& name : names) {
        QVERIFY(QFile::copy(reports.filePath(name), folder_.filePath(name)));
    }
    const Outcome made = runScript(QStringLiteral(
        "echo old >keep; mkfifo pipe; ln -s target link; mkdir runtime; chmod 700 runtime\n"
        "printf '<plist>\\n<dict>\\n<key>recording</key>\\n' >cut.plist\n"
        "printf '<plist><dict><key>recording</key><integer>1</integer><key>sysctl</key><dict>\\n"
        "<key>hw.model</key><string>Mac9,9</string></dict></dict></plist>' >mac.plist\n"));
    QCOMPARE(made.status, 0);
}

Outcome ToolTest::runScript(const QString& script, const QMap<QString, QString>& variables)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name :
         {"DISPLAY", "WAYLAND_DISPLAY", "XDG_SESSION_TYPE", "QT_QPA_PLATFORM", "QT_QPA_PLATFORMTHEME"}) {
        environment.remove(QString::fromLatin1(name));
    }
    environment.insert(QStringLiteral("TOOL"), QStringLiteral(NORVEX_TOOL));
    environment.insert(QStringLiteral("DATA"), QStringLiteral(NORVEX_TEST_DATA));
    environment.insert(QStringLiteral("VERSION"), QStringLiteral(NORVEX_VERSION));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), folder_.filePath(QStringLiteral("runtime")));
    for (auto it = variables.begin(); it != variables.end(); ++it) {
        environment.insert(it.key(), it.value());
    }
    QProcess shell;
    shell.setProcessEnvironment(environment);
    shell.setWorkingDirectory(folder_.path());
    shell.start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), script});
    if (!shell.waitForFinished(60000) || shell.exitStatus() != QProcess::NormalExit) {
        return {};
    }
    return {shell.exitCode(), QString::fromUtf8(shell.readAllStandardOutput()),
            QString::fromUtf8(shell.readAllStandardError())};
}

/// Reads tests/data/toolCommands.txt. A row begins with "== NAME" and ends with an empty line. Its lines are a script,
/// "-- STATUS", a pattern for all of the output, and behind "-- messages" one for a part of the messages; without a
/// pattern there is only silence.
void ToolTest::commands_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("message");
    QFile file(QStringLiteral(NORVEX_TEST_DATA "/toolCommands.txt"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QRegularExpression row(
        QStringLiteral(
            "^== (.+)\n((?:.+\n)+?)-- (\\d+)\n((?:(?!-- ).+\n)*)(?:-- messages\n((?:.+\n)+))?(?:\n|\\z)"),
        QRegularExpression::MultilineOption);
    const QString text = QString::fromUtf8(file.readAll());
    int end = 0;
    for (QRegularExpressionMatch match;
         (match = row.match(text, end)).hasMatch() && match.capturedStart() == end;) {
        end = match.capturedEnd();
        QString message = match.captured(5);
        message.chop(1);
        QTest::newRow(qPrintable(match.captured(1)))
            << match.captured(2) << match.captured(3).toInt() << match.captured(4) << message;
    }
    QCOMPARE(end, text.size());
}

void ToolTest::commands()
{
    QFETCH(QString, script);
    QFETCH(int, status);
    QFETCH(QString, output);
    QFETCH(QString, message);
    const Outcome outcome = runScript(script);
    QVERIFY2(QRegularExpression(QRegularExpression::anchoredPattern(output)).match(outcome.output).hasMatch(),
             qPrintable(outcome.output));
    const bool isSaid = QRegularExpression(message).match(outcome.messages).hasMatch();
    QVERIFY2(message.isEmpty() ? outcome.messages.isEmpty() : isSaid, qPrintable(outcome.messages));
    QCOMPARE(outcome.status, status);
}

/// Every name gives the section that stands at its place in the report.
void ToolTest::sectionsMakeTheReport()
{
    const QString here = QStringLiteral(" --machine mac.plist");
    QStringList names = runScript(QStringLiteral("$TOOL --list-sections"))
                            .output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(names.takeFirst(), QStringLiteral("macintosh"));
    const QString options = QStringLiteral(" --section ") + names.join(QStringLiteral(" --section "));
    const Outcome joined = runScript(QStringLiteral("exec $TOOL") + here + options);
    const Outcome whole = runScript(QStringLiteral("exec $TOOL") + here);
    QCOMPARE(whole.status, 0);
    QVERIFY(whole.output.startsWith(QStringLiteral("############ Macintosh specific section ###########\n")));
    QVERIFY(joined.output.size() > 1000);
    QCOMPARE(steadyLines(joined.output), steadyLines(whole.output));

    const Outcome shorter = runScript(QStringLiteral("exec $TOOL --no-opengl") + here);
    QVERIFY(steadyLines(whole.output).startsWith(steadyLines(shorter.output)));
    QVERIFY(!shorter.output.contains(QStringLiteral("hasOpenGL")));
    const Outcome macintosh = runScript(QStringLiteral("exec $TOOL --section macintosh") + here);
    QVERIFY(whole.output.startsWith(macintosh.output + QStringLiteral("###### System informations")));
}

void ToolTest::withoutAnsweringServer_data()
{
    QTest::addColumn<QString>("settings");
    QTest::addColumn<QString>("message");
    // DISPLAY=silent and CUPS_SERVER=silent stand for a server that accepts connections and does not answer.
    const auto row = [](const char* settings, const char* message) {
        QTest::newRow(settings) << QString::fromLatin1(settings) << QString::fromLatin1(message);
    };
    row("", "");
    row("DISPLAY=silent", "no display answers with DISPLAY=127.0.0.1:");
    row("DISPLAY=:987", "no display can be used with DISPLAY=:987;");
    row("DISPLAY=nonsense", "DISPLAY=nonsense;");
    row("QT_QPA_PLATFORM=xcb DISPLAY=:987", "QT_QPA_PLATFORM=xcb, DISPLAY=:987;");
    row("QT_QPA_PLATFORM=xcb", "QT_QPA_PLATFORM=xcb;");
    row("QT_QPA_PLATFORM=offscreen DISPLAY=:987", "");
    row("QT_QPA_PLATFORM=offscreen DISPLAY=silent", "no display answers with");
    row("QT_QPA_PLATFORM=xcb;minimal DISPLAY=silent", "no display answers with"); // asked by each alternative
    row("QT_QPA_PLATFORM=bogus", "QT_QPA_PLATFORM=bogus;");
    row("QT_QPA_PLATFORM=eglfs", "QT_QPA_PLATFORM=eglfs;");
    row("QT_QPA_PLATFORM=bogus;minimal", "");
    row("QT_QPA_PLATFORMTHEME=needsDisplay", "");
    row("QT_QPA_PLATFORMTHEME=needsDisplay QT_QPA_PLATFORM=bogus;minimal", "");
    row("CUPS_SERVER=silent", "the print server does not answer; the report names no printer\n");
}

void ToolTest::withoutAnsweringServer()
{
    QFETCH(QString, settings);
    QFETCH(QString, message);
    // Qt's minimal platform has no OpenGL, the offscreen one does, even where it cannot make a context.
    const bool isMinimal =
        settings.contains(QStringLiteral("minimal")) || settings.contains(QStringLiteral("DISPLAY=silent"));
    const QString openGL = QStringLiteral("hasOpenGL         %1").arg(isMinimal ? 0 : 1);
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    settings.replace(QStringLiteral("DISPLAY=silent"),
                     QStringLiteral("DISPLAY=127.0.0.1:%1").arg(server.serverPort() - 6000));
    settings.replace(QStringLiteral("SERVER=silent"),
                     QStringLiteral("SERVER=127.0.0.1:%1").arg(server.serverPort()));
    const QStringList lines = settings.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    QMap<QString, QString> variables = {
        {QStringLiteral("QT_PLUGIN_PATH"), QStringLiteral(NORVEX_TEST_PLUGINS)}};
    for (const QString& line : lines) {
        variables.insert(line.section(QLatin1Char('='), 0, 0), line.section(QLatin1Char('='), 1));
    }
    QElapsedTimer timer;
    timer.start();
    const Outcome outcome = runScript(QStringLiteral("exec $TOOL --machine mac.plist"), variables);
    // Each of them alone takes less than 4 s; the rest is for a busy machine.
    QVERIFY(timer.elapsed() < 6000);
    QCOMPARE(outcome.status, 0);
    QVERIFY2(outcome.messages.contains(message), qPrintable(outcome.messages));
    QCOMPARE(outcome.messages.contains(QStringLiteral("norvex-systeminfo: ")), !message.isEmpty());
    for (const QString& part :
         QStringList{QStringLiteral("QScreen\n#1"), QStringLiteral("    <None>"), openGL}) {
        QVERIFY2(outcome.output.contains(QLatin1Char('\n') + part + QLatin1Char('\n')), qPrintable(part));
    }
    for (const QString& line : lines) {
        QVERIFY2(outcome.output.contains(QStringLiteral("\n  ") + line + QLatin1Char('\n')),
                 qPrintable(line));
    }
    QVERIFY(outcome.output.endsWith(QString(72, QLatin1Char('-')) + QLatin1Char('\n')));
}

QTEST_GUILESS_MAIN(ToolTest)
#include "toolTest.moc"
