#include "systeminfo/scanOpenGLInfo.h"

#include "systeminfo/guiThread.h"
#include "systeminfo/openGLVersions.h"

#include <QGLFormat>
#include <QGLWidget>
#include <QGuiApplication>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>

namespace norvex::SystemInfo {

namespace {

// Gives the thread back the context that it had, or none.
class CurrentContextKeeper
{
public:
    CurrentContextKeeper()
        : context_(QOpenGLContext::currentContext()), surface_(context_ ? context_->surface() : nullptr)
    {}

    ~CurrentContextKeeper()
    {
        QOpenGLContext* left = QOpenGLContext::currentContext();
        if (context_) {
            context_->makeCurrent(surface_);
        } else if (left) {
            left->doneCurrent();
        }
    }

    Q_DISABLE_COPY(CurrentContextKeeper)

private:
    QOpenGLContext* const context_;
    QSurface* const surface_;
};

// QGLFormat::hasOpenGL() tells about the platform plug-in; only making a context shows whether the machine has one. The
// offscreen plug-in without an X server has OpenGL but no context, and Qt then reads the version through a null pointer.
bool canMakeContext()
{
    if (QOpenGLContext::currentContext()) {
        return true;
    }
    QOpenGLContext context;
    if (!context.create()) {
        return false;
    }
    QOffscreenSurface surface;
    surface.setFormat(context.format());
    surface.create();
    const bool isCurrent = context.makeCurrent(&surface);
    context.doneCurrent();
    return isCurrent;
}

bool hasUsableOpenGL()
{
    // Without a screen, Qt ends the process instead of making a surface.
    return Internal::mayUseWidgets() && !QGuiApplication::screens().isEmpty() && QGLFormat::hasOpenGL() &&
           canMakeContext();
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

// Asks the driver only in the widget's own context: another context answers about something else, and without one macOS
// ends the process.
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
    return Internal::versionInfoFromFlags(
        hasUsableOpenGL() ? static_cast<int>(QGLFormat::openGLVersionFlags()) : 0);
}

COpenGLVersionInfo CScanOpenGLInfo::GetOpenGLVersionCached()
{
    if (Internal::isBesideApplicationThread()) {
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
    const bool hasOpenGL = hasUsableOpenGL();
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
