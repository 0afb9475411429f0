#include "systeminfo/deprecatedCalls.h"
#include "systeminfo/guiThread.h"
#include "systeminfo/norvexSystemInfo.h"
#include "systeminfo/qtSectionParts.h"

#include <QApplication>
#include <QDesktopWidget>
#include <QScreen>

#include <cmath>

namespace norvex::SystemInfo {

namespace {

constexpr double millimetresPerInch = 25.4;

QString physicalSizeLine(const QSizeF& millimetres)
{
    return QStringLiteral("  PhysicalSize (width x height): %1mm x %2mm  %3inch x %4inch")
        .arg(millimetres.width())
        .arg(millimetres.height())
        .arg(millimetres.width() / millimetresPerInch)
        .arg(millimetres.height() / millimetresPerInch);
}

QString diagonalLine(const QSizeF& millimetres)
{
    const double diagonal =
        std::sqrt(millimetres.width() * millimetres.width() + millimetres.height() * millimetres.height());
    return QStringLiteral("                diagonal: %1mm %2inch")
        .arg(diagonal)
        .arg(diagonal / millimetresPerInch);
}

QString sizeText(const QString& text, const QRect& geometry)
{
    return text.arg(geometry.width(), 5).arg(geometry.height(), 5);
}

QString geometryText(const Internal::DesktopScreen& screen)
{
    return sizeText(QStringLiteral(" available Geometry width: %1, height: %2"), screen.available) +
           sizeText(QStringLiteral("   screen Geometry width: %1, height: %2"), screen.whole);
}

// Qt prefers QScreen to QDesktopWidget by now; this section is about what QDesktopWidget says.
NORVEX_DEPRECATED_CALLS_BEGIN

Internal::DesktopFacts desktopFacts()
{
    Internal::DesktopFacts facts;
    // Qt 5.15 ends the process when it is to make the desktop widget without a screen to put it on.
    if (QGuiApplication::screens().isEmpty()) {
        return facts;
    }
    QDesktopWidget* desktop = QApplication::desktop();
    const auto screen = [desktop](int i) {
        return Internal::DesktopScreen{desktop->availableGeometry(i), desktop->screenGeometry(i)};
    };
    facts.primaryScreen = desktop->primaryScreen();
    for (int i = 0; i < desktop->numScreens(); ++i) {
        facts.screens.append(screen(i));
    }
    facts.defaultScreen = screen(-1);
    facts.isVirtual = desktop->isVirtualDesktop();
    if (facts.isVirtual) {
        facts.virtualGeometry = desktop->screen(-1)->frameGeometry();
    }
    return facts;
}

NORVEX_DEPRECATED_CALLS_END

} // namespace

namespace Internal {

ScreenFacts screenFacts(const QScreen& screen)
{
    return {screen.name(),
            screen.physicalDotsPerInchX(),
            screen.physicalDotsPerInchY(),
            screen.logicalDotsPerInchX(),
            screen.logicalDotsPerInchY(),
            screen.devicePixelRatio(),
            screen.refreshRate(),
            screen.physicalSize(),
            screen.size(),
            screen.depth(),
            screen.orientation(),
            screen.nativeOrientation(),
            screen.primaryOrientation()};
}

QString screenLines(int number, const ScreenFacts& screen)
{
    const QString lines[] = {
        QStringLiteral("#%1").arg(number),
        QStringLiteral("  Name: %1").arg(screen.name),
        QStringLiteral("  Physical DPI x: %1  y: %2").arg(screen.physicalDpiX).arg(screen.physicalDpiY),
        QStringLiteral("  Logical  DPI x: %1  y: %2").arg(screen.logicalDpiX).arg(screen.logicalDpiY),
        QStringLiteral("  devicePixelRatio: %1").arg(screen.pixelRatio),
        QStringLiteral("  RefreshRate: %1 Hz").arg(screen.refreshRate),
        physicalSizeLine(screen.millimetres),
        diagonalLine(screen.millimetres),
        QStringLiteral("  Size (width x height): %1 x %2")
            .arg(screen.pixels.width())
            .arg(screen.pixels.height()),
        QStringLiteral("  Color depth: %1").arg(screen.depth),
        QStringLiteral("  Orientation: %1").arg(static_cast<int>(screen.orientation)),
        QStringLiteral("  Native Orientation: %1").arg(static_cast<int>(screen.nativeOrientation)),
        QStringLiteral("  Primary Orientation: %1").arg(static_cast<int>(screen.primaryOrientation)),
    };
    QString block;
    for (const QString& line : lines) {
        block += line + sNewLine;
    }
    return block;
}

QString desktopLines(const DesktopFacts& desktop)
{
    QString lines = QStringLiteral("Number of screens:  %1").arg(desktop.screens.size()) + sNewLine +
                    QStringLiteral("Primary screen:     #%1").arg(desktop.primaryScreen) + sNewLine;
    for (int i = 0; i < desktop.screens.size(); ++i) {
        lines += QStringLiteral("Screen #%1:").arg(i) + geometryText(desktop.screens.at(i)) + sNewLine;
    }
    lines += QLatin1String("Screen -1:") + geometryText(desktop.defaultScreen) + sNewLine;
    lines += QStringLiteral("isVirtualDesktop:   %1").arg(static_cast<int>(desktop.isVirtual)) + sNewLine;
    if (desktop.isVirtual) {
        lines += sizeText(QStringLiteral("Virtual Desktop Geometry: width: %1, height %2"),
                          desktop.virtualGeometry) +
                 sNewLine;
    }
    return lines;
}

} // namespace Internal

QString qtScreens()
{
    QString section = QLatin1String("QScreen") + sNewLine;
    int number = 0;
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (const QScreen* screen : screens) {
        section += Internal::screenLines(++number, Internal::screenFacts(*screen));
    }
    return section;
}

QString qtDesktop()
{
    QString heading = QLatin1String("QDesktopWidget") + sNewLine;
    if (!Internal::mayUseWidgets()) {
        qWarning("qtDesktop: there is no QApplication on this thread, so no desktop to describe");
        return heading;
    }
    return heading + Internal::desktopLines(desktopFacts());
}

} // namespace norvex::SystemInfo
