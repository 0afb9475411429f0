#pragma once

class QCoreApplication;
class QLocale;

namespace norvex::Viewer {

/// Installs the translations for the locale's language: the viewer's own, and Qt's if the system has them. Without any,
/// the texts are English. The translations live as long as the application.
void installTranslations(QCoreApplication& application, const QLocale& locale);

} // namespace norvex::Viewer
