#include "viewer/job.h"
#include "viewer/machineReport.h"
#include "viewer/mainWindow.h"

#include "systeminfo/norvexSystemInfo.h"

#include <QApplication>
#include <QCommandLineParser>

#include <cstdlib>

namespace {

/// How long the program waits at its end for work that nobody wants any more.
const int patienceMs = 2000;

int run(QApplication& application)
{
    using namespace norvex::Viewer;
    QCommandLineParser parser;
    parser.setApplicationDescription(QApplication::translate("main", "Shows system-information reports."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(
        QStringLiteral("FILE"),
        QApplication::translate("main", "A report to open; without any, this machine's."),
        QStringLiteral("[FILE...]"));
    parser.process(application);
    MainWindow window;
    QStringList files = parser.positionalArguments();
    if (files.isEmpty()) {
        for (const QString& file : MainWindow::rememberedFiles()) {
            window.openFile(file);
        }
        window.openThisMachine();
    }
    for (const QString& file : files) {
        window.openFile(file);
    }
    // Last, so that the files are being read meanwhile.
    window.show();
    return QApplication::exec();
}

} // namespace

int main(int argc, char* argv[])
{
    if (norvex::Viewer::answersSection(argc, argv)) {
        return 0;
    }
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("norvex"));
    QApplication::setApplicationName(QStringLiteral("norvex-systeminfo-viewer"));
    QApplication::setApplicationVersion(norvex::SystemInfo::libVersionString());
    const int status = run(application);
    if (!norvex::Viewer::waitForJobs(patienceMs)) {
        std::_Exit(status);
    }
    return status;
}
