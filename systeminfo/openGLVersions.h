#pragma once

#include "systeminfo/scanOpenGLInfo.h"

namespace norvex::SystemInfo::Internal {

/// The record for bits of QGLFormat::OpenGLVersionFlags; never null.
COpenGLVersionInfo versionInfoFromFlags(int flags);

} // namespace norvex::SystemInfo::Internal
