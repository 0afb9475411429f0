/// Makes the pictures of the viewer that the documents show: docs/makeScreenshots calls it.

#include "viewer/comparisonPage.h"
#include "viewer/mainWindow.h"
#include "viewer/outline.h"
#include "viewer/overviewPage.h"
#include "viewer/translations.h"

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QLocale>
#include <QSettings>
#include <QStyleFactory>
#include <QTabWidget>
#include <QTemporaryDir>

#include <functional>

using namespace norvex::Viewer;

namespace {

const int mostMs = 20000;
const int settleMs = 300;

QPalette darkPalette()
{
    const QColor window(45, 45, 48);
    const QColor text(230, 230, 230);
    QPalette palette(window);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::Base, QColor(30, 30, 32));
    palette.setColor(QPalette::AlternateBase, window);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                                           QPalette::ToolTipText, QPalette::BrightText}) {
        palette.setColor(role, text);
    }
    palette.setColor(QPalette::ToolTipBase, QColor(64, 64, 68));
    palette.setColor(QPalette::Highlight, QColor(61, 132, 204));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

void wait(const std::function<bool()>& isDone)
{
    QElapsedTimer since;
    since.start();
    while (!isDone() && since.elapsed() < mostMs) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    }
    since.restart();
    while (since.elapsed() < settleMs) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, settleMs);
    }
}

bool take(const QString& page, const QStringList& reports, const QString& picture)
{
    MainWindow window;
    window.resize(1080, page == QLatin1String("overview") ? 1090 : 760);
    window.show();
    for (const QString& report : reports) {
        window.openFile(report);
    }
    ReportTab* const tab = window.currentTab();
    wait([tab] { return tab->shown().outline != nullptr; });
    if (page == QLatin1String("overview")) {
        tab->showPage(ReportTab::OverviewPageNumber);
        wait([] { return true; });
    } else if (page == QLatin1String("comparison")) {
        window.compareWith(qobject_cast<ReportTab*>(window.tabs()->widget(0)));
        wait([tab] { return tab->comparison()->nextAction()->isEnabled(); });
        for (int i = 0; i < 2; ++i) {
            tab->comparison()->nextAction()->trigger();
        }
    }
    return window.grab().save(picture);
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc < 6) {
        qCritical("usage: screenshots text|overview|comparison light|dark LANGUAGE PICTURE REPORT...");
        return 2;
    }
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    // Nobody's settings stand in a picture.
    QTemporaryDir settings;
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
    QApplication::setOrganizationName(QStringLiteral("norvex"));
    QApplication::setApplicationName(QStringLiteral("screenshots"));
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QFont font = QApplication::font();
    font.setPointSizeF(9);
    QApplication::setFont(font);
    const QStringList arguments = QApplication::arguments();
    if (arguments.at(2) == QLatin1String("dark")) {
        QApplication::setPalette(darkPalette());
    }
    installTranslations(application, QLocale(arguments.at(3)));
    return take(arguments.at(1), arguments.mid(5), arguments.at(4)) ? 0 : 1;
}
