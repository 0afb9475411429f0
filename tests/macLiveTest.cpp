// This Mac's report beside what the system's own tools say of it.

#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "tests/macTools.h"

#include <QFile>
#include <QProcess>
#include <QtTest>

class MacLiveTest : public QObject
{
    Q_OBJECT

private:
    static QByteArray run(const QString& command)
    {
        // diskutil's last argument is a path, which may have blanks.
        QStringList arguments = command.split(' ');
        if (arguments.first() == "diskutil") {
            arguments = QStringList(arguments.mid(0, 3)) << command.section(' ', 3);
        }
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("LC_ALL", "C");
        environment.insert("PATH", "/usr/bin:/bin:/usr/sbin:/sbin");
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start("/usr/bin/env", arguments, QIODevice::ReadOnly);
        if (!process.waitForFinished(60000)) {
            process.kill();
            process.waitForFinished();
            qWarning("%s does not answer", qPrintable(command));
        }
        return process.readAllStandardOutput();
    }

private slots:
    void macintoshSection()
    {
        const QString report = norvex::SystemInfo::MacSysInfo::allInfos();
        macTools::Outputs outputs;
        for (const QString& command : macTools::commands(report)) {
            outputs[command] = run(command);
        }
        QFile transcript("macLiveTest.txt");
        QVERIFY(transcript.open(QIODevice::WriteOnly));
        transcript.write(macTools::writeTranscript(outputs));

        const macTools::Comparison result = macTools::compare(report, outputs);
        qInfo("%d lines agree; no tool tells about:\n%s", int(result.compared.size()),
              qPrintable(result.notCompared.join('\n')));
        QVERIFY2(!result.compared.isEmpty(), "the tools answer nothing");
        QVERIFY2(result.differences.isEmpty(), qPrintable("\n" + result.differences.join('\n')));
    }
};

QTEST_GUILESS_MAIN(MacLiveTest)

#include "macLiveTest.moc"
