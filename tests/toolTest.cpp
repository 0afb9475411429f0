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

/// What differs from one call to the next, and what stands between sections.
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
    for (const char* name :
         {"DISPLAY", "WAYLAND_DISPLAY", "XDG_SESSION_TYPE", "QT_QPA_PLATFORM", "QT_QPA_PLATFORMTHEME"}) {
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
    ROW("options of the wrong form", "$TOOL --json=1; $TOOL --s; $TOOL -x", 2, "",
        "'--json' takes no argument\n.*\n.*'--s' is ambiguous\n.*\n.*unknown option '-x'\n");
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
    ROW("machine to identify", "$TOOL --machine mac.plist --identify", 2, "", "exclude each other");
    ROW("list on a terminal",
        "for i in TERM=xterm 'TERM=xterm NO_COLOR=1' TERM=dumb; do "
        "env $i script -qec '$TOOL --list-sections' /dev/null | tr -d '\\r' | sed -n 2p; done\n"
        "script -qec '$TOOL --list-sections -o f' /dev/null; head -n 2 f",
        0,
        "\x1b\\[1mosVersion\x1b\\[0m {2,}version and .*\n(osVersion {2,}version and "
        ".*\n){2}macintosh\nosVersion\n",
        "");
    ROW("JSON report", "$TOOL --json", 2, "", "--json goes with --identify");
    ROW("braces in a report", "$TOOL --skip-braced", 2, "", "--skip-braced goes with --identify");

    ROW("given order", "$TOOL --section macModel --section qtGlobal --section macModel --machine mac.plist",
        0, "Model: Mac9,9\nQt Global\n(.*\n){6}Model: Mac9,9\n", "");
    ROW("cut recording", "$TOOL --machine cut.plist --section macModel", 1, "", "cut\\.plist:\\d+: ");
    ROW("no recording", "$TOOL --machine keep", 1, "", "keep:1: ");
    ROW("absent recording", "$TOOL --machine absent.plist -o keep; cat keep", 0, "old\n", "absent\\.plist: ");
    ROW("hostile name", "$TOOL --section \"$(printf '\\033[31m%05000d' 0)\"", 2, "",
        "^(?=.{200}\n)norvex-systeminfo: unknown section '\\\\x1b\\[31m0+\\.{3}0+' \\(--list-sections "
        "prints.*\n");
    ROW("hostile recording",
        "printf '<plist><dict><key>recording</key>\\n<integer>\\302\\233%05000000d</integer>' 1 "
        ">hostile.plist\n"
        "$TOOL --machine hostile.plist",
        1, "", "^(?=.{0,200}\n)norvex-systeminfo: hostile\\.plist:2: \"\\\\x9b0+\\.{3}0+1\" is no integer\n");
    ROW("no new process or thread",
        "chmod 755 .; cp $TOOL tool; test $(id -u) != 0 || "
        "set -- setpriv --reuid=65534 --regid=65534 --clear-groups\n"
        "export ASAN_OPTIONS=detect_leaks=0 DISPLAY=:987\n"
        "\"$@\" prlimit --nproc=1 ./tool --machine mac.plist",
        0, "[^\\0]*\nQScreen\n#1\n[^\\0]*\n    <None>\n[^\\0]*\nhasOpenGL         0\n[^\\0]*",
        "no display can be used with DISPLAY=:987;[^\\0]*no process can be started");
    ROW("UTF-8 in any locale",
        "LC_ALL=C UMLAUT=äöü $TOOL --section qtSystemEnvironment -o größe; grep äö gr*", 0, "  UMLAUT=äöü\n",
        "");
    ROW("unchanged environment",
        "export QT_QPA_PLATFORMTHEME=needsDisplay LAST=1\n"
        "$TOOL --section qtScreens --section qtSystemEnvironment | sed '1,/^System/d; s/^  //; /^_=/d' >a\n"
        "env | sed '/^_=/d' | diff a - && test -s a",
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
    ROW("descriptor as file",
        "ln -s /dev/fd/3 third\n"
        "for i in /dev/stdout /dev/stderr third -; do (echo a >&3; $TOOL --section macModel --machine "
        "mac.plist "
        "-o $i; echo b >&3) 3>f 2>&3 >&3; cat f; done",
        0, "(a\nModel: Mac9,9\nb\n){4}", "");
    ROW("closed descriptor", "$TOOL --list-sections -o /dev/fd/9", 1, "",
        "write '/dev/fd/9': Bad file descr");
    ROW("recording to standard output", "$TOOL --machine mac.plist --record - | grep -A 1 hw.model", 0,
        ".*\n.*Mac9,9.*\n", "");
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
    ROW("forged interface",
        "LINE=$(printf %055d 0 | tr 0 _)\n"
        "EVIL=$(printf '\\n%s\\nevil0\\nHardware address: 00:11:22:33:44:55\\n.' $LINE) $TOOL --identify | "
        "grep -c "
        "00:11:22:33:44:55",
        1, "0\n", "");
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
    // DISPLAY=silent, CUPS_SERVER=silent: a server that accepts and says nothing
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
