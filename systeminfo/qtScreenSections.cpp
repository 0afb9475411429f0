#include "systeminfo/deprecatedCalls.h"
#include "systeminfo/guiThread.h"
#include "systeminfo/norvexSystemInfo.h"
#include "systeminfo/qtSectionParts.h"
#include "systeminfo/sectionText.h"

#include <QApplication>
#include <QDesktopWidget>
#include <QScreen>

#include <cmath>

namespace norvex::SystemInfo {

using Internal::SectionText;

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

// Qt recommends QScreen by now, but this section shows what QDesktopWidget says.
NORVEX_DEPRECATED_CALLS_BEGIN

Internal::DesktopFacts desktopFacts()
{
    Internal::DesktopFacts facts;
    // Without a screen, Qt 5.15 ends the process when it makes the desktop widget.
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
    const auto text = [](int value) { return QString::number(value); };
    return SectionText(sNewLine)
        .line("#", text(number))
        .line("  Name: ", screen.name)
        .line(QStringLiteral("  Physical DPI x: %1  y: %2").arg(screen.physicalDpiX).arg(screen.physicalDpiY))
        .line(QStringLiteral("  Logical  DPI x: %1  y: %2").arg(screen.logicalDpiX).arg(screen.logicalDpiY))
        .line(QStringLiteral("  devicePixelRatio: %1").arg(screen.pixelRatio))
        .line(QStringLiteral("  RefreshRate: %1 Hz").arg(screen.refreshRate))
        .line(physicalSizeLine(screen.millimetres))
        .line(diagonalLine(screen.millimetres))
        .line("  Size (width x height): ",
              text(screen.pixels.width()) + QLatin1String(" x ") + text(screen.pixels.height()))
        .line("  Color depth: ", text(screen.depth))
        .line("  Orientation: ", text(screen.orientation))
        .line("  Native Orientation: ", text(screen.nativeOrientation))
        .line("  Primary Orientation: ", text(screen.primaryOrientation))
        .text();
}

QString desktopLines(const DesktopFacts& desktop)
{
    SectionText lines(sNewLine);
    lines.line("Number of screens:  ", QString::number(desktop.screens.size()))
        .line("Primary screen:     #", QString::number(desktop.primaryScreen));
    for (int i = 0; i < desktop.screens.size(); ++i) {
        lines.line(QStringLiteral("Screen #%1:").arg(i) + geometryText(desktop.screens.at(i)));
    }
    lines.line("Screen -1:", geometryText(desktop.defaultScreen))
        .line("isVirtualDesktop:   ", QString::number(static_cast<int>(desktop.isVirtual)));
    if (desktop.isVirtual) {
        lines.line(sizeText(QStringLiteral("Virtual Desktop Geometry: width: %1, height %2"),
                            desktop.virtualGeometry));
    }
    return lines.text();
}

} // namespace Internal

QString qtScreens()
{
    SectionText section(sNewLine);
    section.line("QScreen");
    int number = 0;
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (const QScreen* screen : screens) {
        section.lines(Internal::screenLines(++number, Internal::screenFacts(*screen)));
    }
    return section.text();
}

QString qtDesktop()
{
    SectionText section(sNewLine);
    section.line("QDesktopWidget");
    if (Internal::mayUseWidgets()) {
        section.lines(Internal::desktopLines(desktopFacts()));
    } else {
        qWarning("qtDesktop: there is no QApplication on this thread, so no desktop to describe");
    }
    return section.text();
}

} // namespace norvex::SystemInfo
