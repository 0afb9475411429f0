#pragma once

class QCoreApplication;
class QLocale;

namespace norvex::Viewer {

/// Lets the application speak the locale's language, as far as it is translated, with Qt's own texts where the system
/// has them. The translations live as long as the application.
void installTranslations(QCoreApplication& application, const QLocale& locale);

} // namespace norvex::Viewer
