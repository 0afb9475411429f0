#include "viewer/job.h"
#include "viewer/mainWindow.h"
#include "viewer/sectionProcess.h"
#include "viewer/translations.h"

#include "systeminfo/norvexSystemInfo.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileOpenEvent>
#include <QIcon>
#include <QLocale>

#include <cstdlib>

namespace {

/// How long the program waits at its end for work that nobody wants any more.
const int patienceMs = 2000;

/// Opens the files that macOS hands to a program that runs.
class FileOpener : public QObject
{
public:
    explicit FileOpener(norvex::Viewer::MainWindow* window) : QObject(window), window_(window) {}

protected:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() == QEvent::FileOpen) {
            window_->openFile(static_cast<QFileOpenEvent*>(event)->file());
            return true;
        }
        return QObject::eventFilter(object, event);
    }

private:
    norvex::Viewer::MainWindow* const window_;
};

/// While it lives, Qt does not load OpenGL's driver for an X server's first window. That would take half the time of a
/// start, and the window is painted without it.
class WithoutOpenGL
{
public:
    WithoutOpenGL() : isWanted_(!qEnvironmentVariableIsSet(variable))
    {
        if (isWanted_) {
            qputenv(variable, "none");
        }
    }
    ~WithoutOpenGL()
    {
        // Neither the report nor other processes are to find it.
        if (isWanted_) {
            qunsetenv(variable);
        }
    }
    WithoutOpenGL(const WithoutOpenGL&) = delete;
    WithoutOpenGL& operator=(const WithoutOpenGL&) = delete;

private:
    static constexpr const char* variable = "QT_XCB_GL_INTEGRATION";
    const bool isWanted_;
};

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
    {
        const WithoutOpenGL withoutOpenGL;
        window.winId(); // makes the window's counterpart on the screen
    }
    application.installEventFilter(new FileOpener(&window));
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
    QIcon icon;
    for (const int size : {16, 32, 48, 64, 128, 256}) {
        icon.addFile(QStringLiteral(":/icons/%1.png").arg(size));
    }
    QApplication::setWindowIcon(icon);
    norvex::Viewer::installTranslations(application, QLocale());
    const int status = run(application);
    if (!norvex::Viewer::waitForJobs(patienceMs)) {
        std::_Exit(status);
    }
    return status;
}
