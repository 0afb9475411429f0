#pragma once

#include "systeminfo/norvexSystemInfo.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QVector>

#include <memory>

namespace norvex::Tool {

/// The application object that sections need, with the arguments that it refers to. It does not see the program's own
/// arguments: Qt would take its options out of them.
class Application
{
public:
    /// Takes a few seconds at most if a section needs a display. Call it before there is a thread.
    Application(const QVector<SystemInfo::SectionInfo>& sections, char* programName);
    Q_DISABLE_COPY(Application)

private:
    int count_ = 1;
    char platformOption_[10] = "-platform";
    QByteArray platformName_;
    char* arguments_[4];
    std::unique_ptr<QCoreApplication> application_;
};

} // namespace norvex::Tool
