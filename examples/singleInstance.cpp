// An application of which only one instance is to run: a second start brings the first to the front and ends.

#include <machelpers/norvexMacHelpers.h>

#include <QApplication>
#include <QLabel>

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    if (checkIfApplicationIsAlreadyRunningThenActivate()) {
        macLog("Another instance is at work; this one ends.");
        return 0;
    }
    disableAppNap("The window shows a clock."); // until the application ends
    QLabel window(QStringLiteral("The only instance"));
    window.show();
    if (application.arguments().contains(QStringLiteral("--quit"))) {
        QMetaObject::invokeMethod(&application, "quit", Qt::QueuedConnection);
    }
    const int status = application.exec();
    enableAppNap();
    return status;
}
