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

// What differs from one call to the next, and what stands between sections.
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
    void withoutAnsweringDisplay_data();
    void withoutAnsweringDisplay();

private:
    Outcome runScript(const QString& script, const QMap<QString, QString>& variables = {});
    void addUsageRows();
    void addWritingRows();
    void addIdentifyRows();

    QTemporaryDir folder_;
};

void ToolTest::initTestCase()
{
    QVERIFY(folder_.isValid());
    for (const QString& report : {QStringLiteral("macintosh.txt"), QStringLiteral("windows.txt")}) {
        QVERIFY(QFile::copy(QStringLiteral(NORVEX_TEST_DATA "/reports/") + report, folder_.filePath(report)));
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
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "XDG_SESSION_TYPE", "QT_QPA_PLATFORM"}) {
        environment.remove(QString::fromLatin1(name));
    }
    environment.insert(QStringLiteral("TOOL"), QStringLiteral(NORVEX_TOOL));
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

// The columns: a script, its exit status, a pattern for all of its output, and one for a part of its messages. An
// empty pattern matches nothing but silence.
#define ROW(name, script, status, output, message)                                                           \
    QTest::newRow(name) << QString::fromUtf8(script) << (status) << QString::fromUtf8(output)                \
                        << QString::fromUtf8(message)

void ToolTest::addUsageRows()
{
    ROW("help", "$TOOL -h", 0, "Usage: norvex-systeminfo [^\\0]*--list-sections [^\\0]*\n", "");
    ROW("version", "$TOOL --bogus --version || $TOOL --version", 0, "norvex-systeminfo " NORVEX_VERSION "\n",
        "'--bogus'");
    ROW("unknown option", "$TOOL --bogus", 2, "", "'--bogus'\n.*--help");
    ROW("unknown section", "$TOOL --section osVersion --section OSversion", 2, "", "section 'OSversion'");
    ROW("section without name", "$TOOL --section", 2, "", "'--section' requires");
    ROW("argument", "$TOOL some.txt", 2, "", "argument 'some.txt'");
    ROW("two files", "$TOOL -o a -o b || ls a b 2>/dev/null || exit 3", 3, "",
        "more than one file for --output");
    ROW("two reports", "$TOOL --identify=macintosh.txt windows.txt", 2, "",
        "more than one file for --identify");
    ROW("no name", "$TOOL --output ''", 2, "", "file for --output is empty");
    ROW("OpenGL and not", "$TOOL --no-opengl --section openGL", 2, "", "openGL and --no-opengl");
    ROW("two actions", "$TOOL --identify --list-sections", 2, "", "exclude each other");
    ROW("section of a list", "$TOOL --list-sections --section openGL", 2, "", "--list-sections goes");
    ROW("section to identify", "$TOOL --identify --section network", 2, "", "exclude each other");
    ROW("machine of a file", "$TOOL --machine mac.plist --identify macintosh.txt", 2, "", "--machine has no");
    ROW("JSON report", "$TOOL --json", 2, "", "--json goes with --identify");
    ROW("braces in a report", "$TOOL --skip-braced", 2, "", "--skip-braced goes with --identify");

    ROW("given order", "$TOOL --section macModel --section qtGlobal --section macModel --machine mac.plist",
        0, "Model: Mac9,9\nQt Global\n(.*\n){6}Model: Mac9,9\n", "");
    ROW("cut recording", "$TOOL --machine cut.plist --section macModel", 1, "", "cut\\.plist:\\d+: ");
    ROW("no recording", "$TOOL --machine keep", 1, "", "keep:1: ");
    ROW("absent recording", "$TOOL --machine absent.plist -o keep; cat keep", 0, "old\n", "absent\\.plist: ");
    ROW("UTF-8 in any locale",
        "LC_ALL=C UMLAUT=äöü $TOOL --section qtSystemEnvironment -o größe; grep äö gr*", 0, "  UMLAUT=äöü\n",
        "");
    ROW("unchanged environment",
        "$TOOL --section qtScreens --section qtSystemEnvironment | sed '1,/^System/d; s/^  //; /^_=/d' | "
        "sort >a\n"
        "env | sed '/^_=/d' | sort | diff a - && test -s a",
        0, "", "");
    ROW("screens alone", "$TOOL --section qtScreens", 0, "QScreen\n#1\n[^\\0]*", "");
    ROW("nothing of the GUI", "QT_QPA_PLATFORM=bogus $TOOL --section qtPrinterInfo --section network", 0,
        "QPrinterInfo\n[^\\0]*\nNetwork Interfaces Info\n[^\\0]*", "");
    ROW("with a display", "xvfb-run -a -s '-screen 0 1024x700x24' $TOOL --section qtScreens --section openGL",
        0, "QScreen\n#1\n[^\\0]*: 1024 x 700\n[^\\0]*GL_RENDERER\\) = .+\n.*\n", "");
}

void ToolTest::addWritingRows()
{
    ROW("full device", "$TOOL --list-sections >/dev/full", 1, "", "cannot write standard output: No space");
    ROW("closed output", "$TOOL --help >&-", 1, "", "standard output: Bad file descriptor");
    ROW("closed pipe", "exec 3<>pipe 4>pipe 3<&-; $TOOL --no-opengl 2>/dev/null >&4", 141, "", "");
    ROW("closed pipe, no signal", "trap '' PIPE; exec 3<>pipe 4>pipe 3<&-; $TOOL --list-sections >&4", 1, "",
        "");
    ROW("new file", "umask 027; $TOOL --section macModel --machine mac.plist -o new; cat new; stat -c %a new",
        0, "Model: Mac9,9\n640\n", "");
    ROW("existing file",
        "echo old >f; chmod 604 f; $TOOL --list-sections -o f; $TOOL --list-sections | cmp - f; stat -c %a f",
        0, "604\n", "");
    ROW("link",
        "$TOOL --version >/dev/null; $TOOL --list-sections -o link; test -L link; "
        "$TOOL --list-sections | cmp - target",
        0, "", "");
    ROW("no space for a file",
        "(ulimit -f 1; $TOOL --no-opengl -o keep 2>e || tail -n1 e); cat keep; ls keep*", 0,
        "norvex-systeminfo: cannot write 'keep': File too large\nold\nkeep\n", "");
    ROW("no space for output", "(ulimit -f 1; $TOOL --no-opengl >long)", 1, "",
        "standard output: File too large");
    ROW("folder", "$TOOL --list-sections -o runtime", 1, "", "cannot write 'runtime': .*directory");
    ROW("no folder", "$TOOL --list-sections -o absent/file", 1, "", "'absent/file': No such file");
    ROW("pipe as file",
        "cat pipe >f & $TOOL --list-sections -o pipe; wait; test -p pipe && "
        "$TOOL --list-sections | cmp - f",
        0, "", "");
    ROW("stdout as file",
        "(echo a; $TOOL --section macModel -o /dev/stdout --machine mac.plist; echo b) >f; cat f", 0,
        "a\nModel: Mac9,9\nb\n", "");
}

void ToolTest::addIdentifyRows()
{
    ROW("report", "$TOOL --identify macintosh.txt", 0,
        "A0:99:9B:0C:11:22\n82:0A:60:C2:4B:00\n02:99:9B:0C:11:22\n82:0A:60:C2:4B:00\n4\n1633\n", "");
    ROW("other line ends, byte-order mark, zero byte",
        "(printf '\\357\\273\\277\\0'; cat windows.txt) | $TOOL --identify --skip-braced -", 0,
        "00:1b:21:aa:bb:02\n00:1B:21:AA:BB:03\n8\n15363\n", "");
    ROW("JSON", "$TOOL --json --identify windows.txt -o f; cat f", 0,
        "\\{\"macAddresses\":\\[\"00:1B:21:AA:BB:01\",\"00:1b:21:aa:bb:02\",\"00:1B:21:AA:BB:03\"\\],"
        "\"numberOfProcessors\":8,\"processorRevision\":15363\\}\n",
        "");
    ROW("blank values",
        "sed 's/processors:  .*/processors: /; s/revision: .*/revision: =/' windows.txt | "
        "$TOOL --identify=- --skip-braced",
        0, "00:1b:21:aa:bb:02\n00:1B:21:AA:BB:03\n0\n0\n", "");
    ROW("no report", "$TOOL --json --identify keep", 1, "", "'keep': Section with .* Qt was not found!");
    ROW("values before a failure", "sed 's/CPU s.*/CPU/' macintosh.txt | $TOOL --identify -", 1, "",
        "standard input: .* revision!");
    ROW("directory", "$TOOL --identify runtime", 1, "", "cannot read 'runtime': .*directory");
    ROW("absent report", "$TOOL --identify absent.txt", 1, "", "cannot read 'absent.txt': No such file");
    ROW("closed input", "$TOOL --identify - <&-", 1, "", "cannot read standard input: Bad file descriptor");
    ROW("this machine",
        "$TOOL --identify 2>/dev/null >a; $TOOL --no-opengl 2>/dev/null | $TOOL --identify - | diff a -; wc "
        "-l <a",
        0, "([3-9]|\\d\\d+)\n", "");
}

void ToolTest::commands_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("message");
    addUsageRows();
    addWritingRows();
    addIdentifyRows();
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

// Every name gives the section that stands at its place in the report.
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

void ToolTest::withoutAnsweringDisplay_data()
{
    QTest::addColumn<QString>("platform");
    QTest::addColumn<QString>("display"); // "silent": a server that accepts and says nothing
    QTest::addColumn<QString>("message");
    const auto row = [](const char* name, const char* platform, const char* display, const char* message) {
        QTest::newRow(name) << QString::fromLatin1(platform) << QString::fromLatin1(display)
                            << QString::fromLatin1(message);
    };
    row("none", "", "", "");
    row("silent", "", "silent", "no display answers with DISPLAY=127.0.0.1:");
    row("no server", "", ":987", "no display can be used with DISPLAY=:987;");
    row("no display's name", "", "nonsense", "DISPLAY=nonsense;");
    row("X11 wanted", "xcb", ":987", "QT_QPA_PLATFORM=xcb, DISPLAY=:987;");
    row("X11 wanted, no display", "xcb", "", "QT_QPA_PLATFORM=xcb;");
    row("offscreen wanted", "offscreen", ":987", "");
    row("offscreen wanted, silent", "offscreen", "silent", "no display answers with");
    row("no such plugin", "bogus", "", "QT_QPA_PLATFORM=bogus;");
    row("plugin that fails", "eglfs", "", "QT_QPA_PLATFORM=eglfs;");
    row("plugin that works", "bogus;minimal", "", "");
}

void ToolTest::withoutAnsweringDisplay()
{
    QFETCH(QString, platform);
    QFETCH(QString, display);
    QFETCH(QString, message);
    // Qt's minimal platform has no OpenGL, the offscreen one does, even where it cannot make a context.
    const bool isMinimal =
        platform.contains(QStringLiteral("minimal")) || display == QStringLiteral("silent");
    const QString openGL = QStringLiteral("\nhasOpenGL         %1\n").arg(isMinimal ? 0 : 1);
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    if (display == QStringLiteral("silent")) {
        display = QStringLiteral("127.0.0.1:%1").arg(server.serverPort() - 6000);
    }
    QMap<QString, QString> variables = {{QStringLiteral("QT_QPA_PLATFORM"), platform}};
    QString inReport = QStringLiteral("\n  QT_QPA_PLATFORM=%1\n").arg(platform);
    if (!display.isEmpty()) {
        variables.insert(QStringLiteral("DISPLAY"), display);
        inReport = QStringLiteral("\n  DISPLAY=%1\n").arg(display);
    }
    QElapsedTimer timer;
    timer.start();
    const Outcome outcome = runScript(QStringLiteral("exec $TOOL --machine mac.plist"), variables);
    QVERIFY(timer.elapsed() < 20000);
    QCOMPARE(outcome.status, 0);
    QVERIFY2(outcome.messages.contains(message), qPrintable(outcome.messages));
    QCOMPARE(outcome.messages.contains(QStringLiteral("no display ")), !message.isEmpty());
    for (const QString& part : {QStringLiteral("\nQScreen\n#1\n"), openGL, inReport}) {
        QVERIFY2(outcome.output.contains(part), qPrintable(part));
    }
    QVERIFY(outcome.output.endsWith(QString(72, QLatin1Char('-')) + QLatin1Char('\n')));
}

QTEST_GUILESS_MAIN(ToolTest)
#include "toolTest.moc"
