#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

namespace norvex::Tool {

/// On which of Qt's platforms the application object is to be made. Where Qt's own choice would end the
/// process or wait for ever, as without a display, it is another one.
struct GuiPlatform
{
    QByteArray name;            ///< for the argument -platform; empty: Qt's own choice
    QString notice;             ///< why the user's wish was not followed, if so
    std::shared_ptr<void> held; ///< to be kept until the application object exists
};

/// Finds out what can be used here, in a few seconds at most. To be called before there is any thread or
/// application object.
/// @param withOpenGL whether OpenGL will be used
GuiPlatform chooseGuiPlatform(bool withOpenGL);

} // namespace norvex::Tool
