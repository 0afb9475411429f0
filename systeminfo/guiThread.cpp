#include "systeminfo/guiThread.h"

#include <QApplication>
#include <QThread>

namespace norvex::SystemInfo::Internal {

bool isOutsideGuiThread()
{
    const QCoreApplication* application = QCoreApplication::instance();
    return application && application->thread() != QThread::currentThread();
}

bool mayUseWidgets()
{
    return qobject_cast<QApplication*>(QCoreApplication::instance()) && !isOutsideGuiThread();
}

} // namespace norvex::SystemInfo::Internal
