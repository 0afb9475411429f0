// A platform theme that ends the process when it is loaded, as one can that finds no display.

#include <QObject>

#include <cstdlib>

class NeedsDisplayTheme : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QPA.QPlatformThemeFactoryInterface.5.1" FILE
                          "needsDisplayTheme.json")

public:
    NeedsDisplayTheme() { std::_Exit(1); }
};

#include "needsDisplayTheme.moc"
