#include "viewer/translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace norvex::Viewer {

void installTranslations(QCoreApplication& application, const QLocale& locale)
{
    const struct
    {
        const char* name;
        QString folder;
    } sources[] = {
        {"qtbase", QLibraryInfo::location(QLibraryInfo::TranslationsPath)},
        {"viewer", QStringLiteral(":/translations")},
    };
    for (const auto& source : sources) {
        auto* const translator = new QTranslator(&application);
        if (translator->load(locale, QLatin1String(source.name), QStringLiteral("_"), source.folder)) {
            QCoreApplication::installTranslator(translator);
        }
    }
}

} // namespace norvex::Viewer
