#include "tools/application.h"

#include "tools/guiPlatform.h"
#include "tools/output.h"

#include <QApplication>

#include <algorithm>

namespace norvex::Tool {

using SystemInfo::SectionApplication;
using SystemInfo::SectionInfo;

namespace {

SectionApplication neededApplication(const QVector<SectionInfo>& sections)
{
    SectionApplication needed = SectionApplication::None;
    for (const SectionInfo& section : sections) {
        needed = std::max(needed, section.application);
    }
    return needed;
}

bool useOpenGL(const QVector<SectionInfo>& sections)
{
    const QString topic = QStringLiteral("opengl");
    return std::any_of(sections.begin(), sections.end(),
                       [&topic](const SectionInfo& section) { return section.topics.contains(topic); });
}

} // namespace

Application::Application(const QVector<SectionInfo>& sections, char* programName)
    : arguments_{programName, nullptr, nullptr, nullptr}
{
    QCoreApplication::setApplicationName(QStringLiteral("norvex-systeminfo"));
    QCoreApplication::setApplicationVersion(SystemInfo::libVersionString());
    const SectionApplication needed = neededApplication(sections);
    if (needed == SectionApplication::None) {
        application_ = std::make_unique<QCoreApplication>(count_, arguments_);
        return;
    }
    GuiPlatform platform = chooseGuiPlatform(useOpenGL(sections));
    if (!platform.notice.isEmpty()) {
        printMessage(platform.notice);
    }
    platformName_ = platform.name;
    if (!platformName_.isEmpty()) {
        arguments_[count_++] = platformOption_;
        arguments_[count_++] = platformName_.data();
    }
    if (needed == SectionApplication::Gui) {
        application_ = std::make_unique<QGuiApplication>(count_, arguments_);
    } else {
        application_ = std::make_unique<QApplication>(count_, arguments_);
    }
}

} // namespace norvex::Tool
