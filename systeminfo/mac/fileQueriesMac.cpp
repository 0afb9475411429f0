#include "systeminfo/mac/fileQueries.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace norvex::SystemInfo::MacSysInfo {

bool deviceFileExists(const QString& path)
{
    return QFile::exists(path);
}

QStringList volumeEntries()
{
    QStringList paths;
    const QDir volumes(QStringLiteral("/Volumes"));
    const QFileInfoList entries =
        volumes.entryInfoList(QDir::Dirs | QDir::Files | QDir::Drives | QDir::NoDotAndDotDot, QDir::NoSort);
    for (const QFileInfo& entry : entries) {
        paths.append(entry.absoluteFilePath());
    }
    return paths;
}

} // namespace norvex::SystemInfo::MacSysInfo
