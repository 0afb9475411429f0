// An application that runs once: on macOS a second start brings the first instance to the front and ends. On Linux one
// application cannot activate another: the call gives false there, and every start opens its own window.

#include <machelpers/norvexMacHelpers.h>

#include <QApplication>
#include <QLabel>

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    if (checkIfApplicationIsAlreadyRunningThenActivate()) {
        macLog("Another instance is running; this one ends.");
        return 0;
    }
    disableAppNap(
        "The window goes on working in the background."); // until the application ends; does nothing on Linux
    QLabel window(QStringLiteral("An application that runs once"));
    window.show();
    if (application.arguments().contains(QStringLiteral("--quit"))) {
        QMetaObject::invokeMethod(&application, "quit", Qt::QueuedConnection);
    }
    const int status = application.exec();
    enableAppNap();
    return status;
}
