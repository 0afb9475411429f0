#include "systeminfo/openGLVersions.h"

#include <QGLFormat>

namespace norvex::SystemInfo::Internal {

namespace {

struct VersionRow
{
    QGLFormat::OpenGLVersionFlag flag;
    const char* name;
    int major;
    int minor;
};

/// The first row whose flag is set counts: desktop versions before OpenGL ES, and a Common profile before a
/// Common Lite profile of any version. Only desktop versions have numbers.
const VersionRow versionRows[] = {
    {QGLFormat::OpenGL_Version_4_3, "OpenGL 4.3", 4, 3},
    {QGLFormat::OpenGL_Version_4_2, "OpenGL 4.2", 4, 2},
    {QGLFormat::OpenGL_Version_4_1, "OpenGL 4.1", 4, 1},
    {QGLFormat::OpenGL_Version_4_0, "OpenGL 4.0", 4, 0},
    {QGLFormat::OpenGL_Version_3_3, "OpenGL 3.3", 3, 3},
    {QGLFormat::OpenGL_Version_3_2, "OpenGL 3.2", 3, 2},
    {QGLFormat::OpenGL_Version_3_1, "OpenGL 3.1", 3, 1},
    {QGLFormat::OpenGL_Version_3_0, "OpenGL 3.0", 3, 0},
    {QGLFormat::OpenGL_Version_2_1, "OpenGL 2.1", 2, 1},
    {QGLFormat::OpenGL_Version_2_0, "OpenGL 2.0", 2, 0},
    {QGLFormat::OpenGL_Version_1_5, "OpenGL 1.5", 1, 5},
    {QGLFormat::OpenGL_Version_1_4, "OpenGL 1.4", 1, 4},
    {QGLFormat::OpenGL_Version_1_3, "OpenGL 1.3", 1, 3},
    {QGLFormat::OpenGL_Version_1_2, "OpenGL 1.2", 1, 2},
    {QGLFormat::OpenGL_Version_1_1, "OpenGL 1.1", 1, 1},
    {QGLFormat::OpenGL_ES_Version_2_0, "OpenGL ES 2.0", -1, -1},
    {QGLFormat::OpenGL_ES_Common_Version_1_1, "OpenGL ES Common 1.1", -1, -1},
    {QGLFormat::OpenGL_ES_Common_Version_1_0, "OpenGL ES Common 1.0", -1, -1},
    {QGLFormat::OpenGL_ES_CommonLite_Version_1_1, "OpenGL ES Common Lite 1.1", -1, -1},
    {QGLFormat::OpenGL_ES_CommonLite_Version_1_0, "OpenGL ES Common Lite 1.0", -1, -1},
};

} // namespace

COpenGLVersionInfo versionInfoFromFlags(int flags)
{
    COpenGLVersionInfo info;
    info.isNull = false;
    info.versionFlags = flags;
    info.versionName = QStringLiteral("not recognized");
    for (const VersionRow& row : versionRows) {
        if (flags & row.flag) {
            info.versionName = QLatin1String(row.name);
            info.majorVersion = row.major;
            info.minorVersion = row.minor;
            break;
        }
    }
    return info;
}

} // namespace norvex::SystemInfo::Internal
