#pragma once

namespace norvex::SystemInfo::Internal {

/// True when the caller is on a thread other than the application object's; false without an application
/// object.
bool isBesideApplicationThread();

/// True when widgets may be used here: a QApplication exists and this is its thread. Qt ends the process for
/// a widget that is made under any other circumstances.
bool mayUseWidgets();

} // namespace norvex::SystemInfo::Internal
