#pragma once

/// @file
/// What OpenGL offers on this machine, and the report's section on it.

#include "norvexExport.h"

#include <QObject>
#include <QString>

namespace norvex {
namespace SystemInfo {

/// The OpenGL versions that Qt's default context supports.
struct COpenGLVersionInfo
{
    /// true while the record holds no probe result.
    bool isNull = true;

    /// The bits of QGLFormat::OpenGLVersionFlags; 0 when no version is known or no context can be made.
    int versionFlags = 0;

    /// Major number of the highest desktop version in the flags; -1 when they hold none.
    int majorVersion = -1;

    /// Minor number of that version; -1 when the flags hold none.
    int minorVersion = -1;

    /// Display name of the highest version, "OpenGL 2.1" for example; an OpenGL ES variant where the flags
    /// hold no desktop version; "not recognized" where they hold neither. Empty while isNull.
    QString versionName;
};

/// Finds out what OpenGL offers.
///
/// Call all functions on the application's GUI thread while the QApplication exists. Without a QApplication, on
/// another thread, or without a screen they answer as a machine without OpenGL, because Qt would end the process. None
/// of them fails. They throw nothing of their own; std::bad_alloc, and whatever else Qt throws, passes through. A
/// context that is current before a call is current again after it, unless memory has run out.
class NORVEX_SYSTEMINFO_EXPORT CScanOpenGLInfo : public QObject
{
    Q_OBJECT

public:
    /// An object without any state of its own.
    /// @param parent the object that owns it; null for none
    explicit CScanOpenGLInfo(QObject* parent = nullptr);
    ~CScanOpenGLInfo() override;

    /// Asks Qt now which versions its default context supports, or the current context if there is one
    /// (QGLFormat::openGLVersionFlags()). Without a current one each call makes a context and destroys it, which takes
    /// milliseconds, and the process's first one much longer. Neither reads nor fills the cache.
    ///
    /// @return a record that is not null; flags 0 and "not recognized" without OpenGL or when no context can be made
    static COpenGLVersionInfo GetOpenGLVersion();

    /// The versions as the first call in this process found them. That call asks like GetOpenGLVersion() and fills
    /// versionInfoCache; later calls return a copy of it.
    ///
    /// Without a QApplication the call returns what the cache holds, or the record of a machine without OpenGL while
    /// the cache is empty. On another thread it does not touch the cache and returns the record of a machine without
    /// OpenGL. Neither fills the cache, so a later call on the GUI thread still asks. That no context can be made is a
    /// result, and the cache keeps it.
    ///
    /// @return a record that is not null
    static COpenGLVersionInfo GetOpenGLVersionCached();

    /// Writes the report's OpenGL section: whether Qt has OpenGL and overlays (QGLFormat::hasOpenGL(),
    /// QGLFormat::hasOpenGLOverlays()), the versions of GetOpenGLVersionCached(), and the driver's version, vendor,
    /// renderer and extensions from glGetString in the context of a hidden QGLWidget that lives only during the call.
    /// Apart from the versions of the first call, that is the only context that it makes.
    ///
    /// @param[out] info receives the section and loses what it held. Without OpenGL the section ends after the
    ///        versions. A string that the driver does not give is empty; where Qt has OpenGL but no context can be
    ///        made, all four are.
    void getInfo(QString& info);

    /// The result of the first probe in this process; null until then. Read it on the GUI thread only, and let
    /// GetOpenGLVersionCached() write it.
    static COpenGLVersionInfo versionInfoCache;
};

} // namespace SystemInfo
} // namespace norvex
