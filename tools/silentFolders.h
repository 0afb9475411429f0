#pragma once

#include <QString>

namespace norvex::Tool {

/// Takes folders whose file systems do not answer out of the environment of this process, such as a home folder on a
/// server that is gone: Qt and the libraries of fonts, printers and OpenGL would wait there for ever. It takes 2 seconds
/// if there are such folders, and next to nothing if no file system is served. A message on standard error names them.
/// Call it once, before there is a thread, another process or an application object.
/// @param usesGui whether Qt is to have a platform, or is asked for printers
/// @param[out] errorMessage receives the reason when Qt needs such a folder
bool avoidSilentFolders(bool usesGui, QString& errorMessage);

/// While there is one, the environment is that which the process was started with: for what shows it, or looks at its
/// folders with a limit of its own.
class TrueEnvironment
{
public:
    TrueEnvironment();
    ~TrueEnvironment();
    Q_DISABLE_COPY(TrueEnvironment)

private:
    char** before_ = nullptr;
};

using SectionFunction = QString (*)();

/// What gives the section as if no folder were avoided.
SectionFunction inTrueEnvironment(SectionFunction section);

} // namespace norvex::Tool
