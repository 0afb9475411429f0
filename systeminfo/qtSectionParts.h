#pragma once

/// @file
/// The parts of the Qt sections that turn values into lines. They are pure functions, so that tests can try values that
/// this machine does not have.

#include <QLocale>
#include <QNetworkInterface>
#include <QRect>
#include <QSizeF>
#include <QString>
#include <QStringList>

QT_FORWARD_DECLARE_CLASS(QDateTime)
QT_FORWARD_DECLARE_CLASS(QScreen)

namespace norvex::SystemInfo::Internal {

/// The three lines of the date section for a moment in local time.
QString dateTimeLines(const QDateTime& localTime);

/// The library paths in a column behind their label; the label alone for an empty list.
QString libraryPathLines(const QStringList& paths);

/// A measurement system as the locale section names it; "unknown" for all but two.
QString measurementSystemName(QLocale::MeasurementSystem system);

/// What a report shows of a screen.
struct ScreenFacts
{
    QString name;
    qreal physicalDpiX = 0;
    qreal physicalDpiY = 0;
    qreal logicalDpiX = 0;
    qreal logicalDpiY = 0;
    qreal pixelRatio = 1;
    qreal refreshRate = 0;
    QSizeF millimetres{0, 0};
    QSize pixels{0, 0};
    int depth = 0;
    Qt::ScreenOrientation orientation = Qt::PrimaryOrientation;
    Qt::ScreenOrientation nativeOrientation = Qt::PrimaryOrientation;
    Qt::ScreenOrientation primaryOrientation = Qt::PrimaryOrientation;
};

/// What Qt says of a screen.
ScreenFacts screenFacts(const QScreen& screen);

/// The lines of one screen; number counts from 1.
QString screenLines(int number, const ScreenFacts& screen);

/// One screen as QDesktopWidget sees it, in pixels.
struct DesktopScreen
{
    QRect available;
    QRect whole;
};

/// What a report shows of the desktop. The default values are those of a desktop without a screen.
struct DesktopFacts
{
    int primaryScreen = 0;
    QList<DesktopScreen> screens;
    DesktopScreen defaultScreen;
    bool isVirtual = false;
    QRect virtualGeometry;
};

/// The desktop section behind its heading.
QString desktopLines(const DesktopFacts& desktop);

struct Printer
{
    QString name;
    bool isDefault;
};

/// The section on printers.
QString printerSection(const QList<Printer>& printers);

/// What a report shows of a network interface.
struct InterfaceFacts
{
    QString name;
    QString hardwareAddress;
    QNetworkInterface::InterfaceFlags flags;
    QList<QNetworkAddressEntry> addresses;
};

/// The lines of one interface, from the separator above them on.
QString interfaceBlock(const InterfaceFacts& iface);

} // namespace norvex::SystemInfo::Internal
