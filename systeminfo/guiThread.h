#pragma once

namespace norvex::SystemInfo::Internal {

/// True on a thread other than the application object's; false without an application object.
bool isOutsideGuiThread();

/// True when a QApplication exists and this is its thread. Qt ends the process when a widget is made elsewhere.
bool mayUseWidgets();

} // namespace norvex::SystemInfo::Internal
