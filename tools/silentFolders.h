#pragma once

#include <QString>

#include <functional>

namespace norvex::Tool {

/// Takes folders whose file systems do not answer out of the environment of this process, such as a home folder on a
/// server that is gone: Qt and the libraries of fonts, printers and OpenGL would wait there for ever. It takes 2 seconds
/// if there are such folders, and next to nothing if no file system is served. A message on standard error names them.
/// Call it once, before there is a thread, another process or an application object.
/// @param usesGui whether Qt is to have a platform, or is asked for printers
/// @param[out] errorMessage receives the reason when Qt needs such a folder
bool avoidSilentFolders(bool usesGui, QString& errorMessage);

/// Does work in the environment that the process was started with: what looks at its folders with a limit of its own.
void inTrueEnvironment(const std::function<void()>& work);

using SectionFunction = QString (*)();

/// What gives the section as if no folder were avoided.
SectionFunction sectionInTrueEnvironment(SectionFunction section);

} // namespace norvex::Tool
