#pragma once

#include "systeminfo/scanOpenGLInfo.h"

namespace norvex::SystemInfo::Internal {

/// The record for the given bits of QGLFormat::OpenGLVersionFlags; never null.
COpenGLVersionInfo versionInfoFromFlags(int flags);

} // namespace norvex::SystemInfo::Internal
