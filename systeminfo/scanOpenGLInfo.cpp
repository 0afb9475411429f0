#include "systeminfo/scanOpenGLInfo.h"

#include "systeminfo/guiThread.h"
#include "systeminfo/openGLVersions.h"

#include <QGLFormat>
#include <QGLWidget>
#include <QGuiApplication>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QSurfaceFormat>

#include <exception>

namespace norvex::SystemInfo {

namespace {

/// Gives the thread back the context that it had, or none.
class CurrentContextKeeper
{
public:
    CurrentContextKeeper()
        : context_(QOpenGLContext::currentContext()), surface_(context_ ? context_->surface() : nullptr)
    {}

    ~CurrentContextKeeper()
    {
        // What leaves a destructor ends the process. Without memory the caller's context does not become current.
        try {
            restore();
        } catch (const std::exception&) {
            return;
        }
    }

    Q_DISABLE_COPY(CurrentContextKeeper)

private:
    void restore()
    {
        QOpenGLContext* left = QOpenGLContext::currentContext();
        if (context_) {
            context_->makeCurrent(surface_);
        } else if (left) {
            left->doneCurrent();
        }
    }

    QOpenGLContext* const context_;
    QSurface* const surface_;
};

/// Whether Qt answers about OpenGL, and makes a QGLWidget, without ending the process.
bool mayUseOpenGL()
{
    return Internal::mayUseWidgets() && !QGuiApplication::screens().isEmpty();
}

/// The format of the context in which Qt looks for the versions when none is current: the newest version that it knows,
/// and where Qt uses OpenGL ES the application's default.
QSurfaceFormat newestFormat()
{
    if (QOpenGLContext::openGLModuleType() != QOpenGLContext::LibGL) {
        return QSurfaceFormat::defaultFormat();
    }
    QSurfaceFormat format;
#ifdef Q_OS_MAC
    format.setVersion(3, 2);
    format.setProfile(QSurfaceFormat::CoreProfile);
#else
    format.setVersion(4, 3);
#endif
    return format;
}

/// The versions in a context like the one that Qt would make. Qt reads the version through a null pointer where that
/// context cannot be made, as on the offscreen platform without an X server, which has OpenGL but no context.
int newestVersionFlags()
{
    QOpenGLContext context;
    context.setFormat(newestFormat());
    if (!context.create()) {
        return 0;
    }
    QOffscreenSurface surface;
    surface.setFormat(context.format());
    surface.create();
    const CurrentContextKeeper keeper;
    return context.makeCurrent(&surface) ? static_cast<int>(QGLFormat::openGLVersionFlags()) : 0;
}

int versionFlags()
{
    if (!mayUseOpenGL() || !QGLFormat::hasOpenGL()) {
        return 0;
    }
    return QOpenGLContext::currentContext() ? static_cast<int>(QGLFormat::openGLVersionFlags())
                                            : newestVersionFlags();
}

struct DriverRow
{
    GLenum name;
    const char* line;
};

const DriverRow driverRows[] = {
    {GL_VERSION, "glGetString(GL_VERSION)  = %1\n"},
    {GL_VENDOR, "glGetString(GL_VENDOR)   = %1\n"},
    {GL_RENDERER, "glGetString(GL_RENDERER) = %1\n"},
    {GL_EXTENSIONS, "glGetString(GL_EXTENSIONS) = %1\n"},
};

/// Asks the driver only in the widget's own context: another context answers about something else, and without one
/// macOS ends the process. Where no context can be made, nobody answers.
QString driverLines()
{
    const CurrentContextKeeper keeper;
    QGLWidget widget(nullptr, nullptr, Qt::WindowFlags());
    widget.makeCurrent();
    QOpenGLContext* context = QOpenGLContext::currentContext();
    const bool isOwn = context && context == widget.context()->contextHandle();

    QString lines =
        QStringLiteral("#### Direct OpenGL calls (using QGLWidget with default QGLFormat) ####\n");
    for (const DriverRow& row : driverRows) {
        const GLubyte* value = isOwn ? context->functions()->glGetString(row.name) : nullptr;
        lines += QString::fromLatin1(row.line).arg(QString::fromLatin1(reinterpret_cast<const char*>(value)));
    }
    return lines;
}

} // namespace

COpenGLVersionInfo CScanOpenGLInfo::versionInfoCache;

CScanOpenGLInfo::CScanOpenGLInfo(QObject* parent) : QObject(parent) {}

CScanOpenGLInfo::~CScanOpenGLInfo() = default;

COpenGLVersionInfo CScanOpenGLInfo::GetOpenGLVersion()
{
    return Internal::versionInfoFromFlags(versionFlags());
}

COpenGLVersionInfo CScanOpenGLInfo::GetOpenGLVersionCached()
{
    if (Internal::isOutsideGuiThread()) {
        return GetOpenGLVersion();
    }
    if (!versionInfoCache.isNull) {
        return versionInfoCache;
    }
    COpenGLVersionInfo info = GetOpenGLVersion();
    if (Internal::mayUseWidgets()) {
        versionInfoCache = info;
    }
    return info;
}

void CScanOpenGLInfo::getInfo(QString& info)
{
    const bool hasOpenGL = mayUseOpenGL() && QGLFormat::hasOpenGL();
    const bool hasOverlays = Internal::mayUseWidgets() && QGLFormat::hasOpenGLOverlays();
    const COpenGLVersionInfo version = GetOpenGLVersionCached();

    info = QStringLiteral("#### QGLFormat #### \n");
    info += QStringLiteral("hasOpenGL         %1\n").arg(static_cast<int>(hasOpenGL));
    info += QStringLiteral("hasOpenGLOverlays %1\n").arg(static_cast<int>(hasOverlays));
    info += QStringLiteral("openGLVersionFlags 0x%1 %2\n")
                .arg(static_cast<qlonglong>(version.versionFlags), 0, 16)
                .arg(version.versionName);
    if (hasOpenGL) {
        info += driverLines();
    }
}

} // namespace norvex::SystemInfo

#include "moc_scanOpenGLInfo.cpp" // NOLINT(bugprone-suspicious-include)
