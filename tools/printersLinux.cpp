#include "tools/otherProcessLinux.h"
#include "tools/printers.h"

#include "systeminfo/norvexSystemInfo.h"

#include <QCoreApplication>

#include <chrono>
#include <memory>
#include <utility>

namespace norvex::Tool {

namespace {

using Clock = std::chrono::steady_clock;

std::unique_ptr<OtherProcess> process;
Clock::time_point deadline;

void answerPrinterSection(int answerTo)
{
    char name[] = "norvex-systeminfo";
    char* arguments[] = {name, nullptr};
    int count = 1;
    const QCoreApplication application(count, arguments);
    OtherProcess::giveAnswer(answerTo, SystemInfo::qtPrinterInfo().toUtf8());
}

} // namespace

void startToAskForPrinters()
{
    deadline = Clock::now() + std::chrono::milliseconds(printerTimeoutMs);
    process = std::make_unique<OtherProcess>(answerPrinterSection);
}

bool readPrinterSection(QString& section, QString& errorMessage)
{
    QByteArray answer;
    const std::unique_ptr<OtherProcess> asked = std::move(process);
    switch (asked->wait(deadline, answer)) {
    case OtherProcess::Result::Answered: section = QString::fromUtf8(answer); return true;
    case OtherProcess::Result::Silent:
        errorMessage = QStringLiteral("the print server does not answer");
        break;
    case OtherProcess::Result::Failed: errorMessage = QStringLiteral("Qt cannot ask for the printers"); break;
    case OtherProcess::Result::NotStarted:
        errorMessage = QStringLiteral("no process can be started to ask for the printers");
        break;
    }
    return false;
}

} // namespace norvex::Tool
