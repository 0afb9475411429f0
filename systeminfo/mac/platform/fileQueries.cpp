#include "systeminfo/mac/fileQueries.h"

#include "systeminfo/mac/platform/failureInjection.h"
#include "systeminfo/mac/platform/machine.h"

namespace norvex::SystemInfo::MacSysInfo {

bool deviceFileExists(const QString& path)
{
    const bool exists = currentMachine()->deviceFileExists(path.toUtf8());
    return !callFails() && exists;
}

QStringList volumeEntries()
{
    QStringList paths;
    const QList<QByteArray> volumes = callFails() ? QList<QByteArray>() : currentMachine()->volumes();
    for (const QByteArray& volume : volumes) {
        paths.append(QString::fromUtf8(volume));
    }
    return paths;
}

} // namespace norvex::SystemInfo::MacSysInfo
