#include "tools/printers.h"

#include "systeminfo/norvexSystemInfo.h"

#include <QCoreApplication>
#include <QProcess>

namespace norvex::Tool {

namespace {

/// In the environment of the process that answers.
const char answersVariable[] = "NORVEX_SYSTEMINFO_ANSWERS_PRINTERS";

} // namespace

/// A process that is forked on macOS cannot use the frameworks before it starts a program, so readPrinterSection() starts
/// this one again.
void startToAskForPrinters() {}

bool readPrinterSection(QString& section, QString& errorMessage)
{
    if (!qEnvironmentVariableIsEmpty(answersVariable)) {
        section = SystemInfo::qtPrinterInfo();
        return true;
    }
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QString::fromLatin1(answersVariable), QStringLiteral("1"));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(),
                  {QStringLiteral("--section"), QStringLiteral("qtPrinterInfo")});
    if (!process.waitForFinished(printerTimeoutMs)) {
        errorMessage = process.error() == QProcess::Timedout
                           ? QStringLiteral("the print server does not answer")
                           : QStringLiteral("no process can be started to ask for the printers");
        process.kill();
        process.waitForFinished();
        return false;
    }
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        errorMessage = QStringLiteral("Qt cannot ask for the printers");
        return false;
    }
    section = QString::fromUtf8(process.readAllStandardOutput());
    return true;
}

} // namespace norvex::Tool
