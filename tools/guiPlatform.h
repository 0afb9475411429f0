#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

namespace norvex::Tool {

/// The platform of Qt for the application object. It differs from Qt's own choice if that would end the process or wait
/// for ever, as it can without a display.
struct GuiPlatform
{
    QByteArray name;            ///< for the argument -platform; empty: Qt's own choice
    QString notice;             ///< why the platform is not the one that the user asks for; empty if it is
    std::shared_ptr<void> held; ///< keep it until the application object exists
};

/// Finds a platform that works here, in a few seconds at most. Call it before there is a thread or an application
/// object.
/// @param withOpenGL whether the tool uses OpenGL
GuiPlatform chooseGuiPlatform(bool withOpenGL);

} // namespace norvex::Tool
