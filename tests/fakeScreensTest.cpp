// The sections on screens, of screens that differ in every value. Runs on a platform without a screen.

#include "recordingSupport.h"
#include "systeminfo/deprecatedCalls.h"

#include <QApplication>
#include <QDesktopWidget>
#include <QScreen>
#include <QtTest>

#include <qpa/qplatformscreen.h>
#include <qpa/qwindowsysteminterface.h>

using namespace norvex::SystemInfo;

namespace {

/// A screen to the right of all that were made before.
class FakeScreen : public QPlatformScreen
{
public:
    FakeScreen(const QRect& geometry, const QSizeF& millimetres, int scale)
        : geometry_(geometry), millimetres_(millimetres), scale_(scale)
    {
        all() += this;
        QWindowSystemInterface::handleScreenAdded(this);
    }

    QRect geometry() const override { return geometry_; }
    QRect availableGeometry() const override { return geometry_.adjusted(0, 10 * scale_, -scale_, 0); }
    int depth() const override { return 8 * scale_; }
    QImage::Format format() const override { return QImage::Format_RGB32; }
    QSizeF physicalSize() const override { return millimetres_; }
    QDpi logicalDpi() const override { return {70.0 + scale_, 90.0 + scale_}; }
    qreal devicePixelRatio() const override { return 0.5 + scale_; }
    qreal refreshRate() const override { return 59.94 + scale_; }
    Qt::ScreenOrientation nativeOrientation() const override
    {
        return scale_ == 1 ? Qt::PortraitOrientation : Qt::LandscapeOrientation;
    }
    Qt::ScreenOrientation orientation() const override
    {
        return scale_ == 1 ? Qt::InvertedLandscapeOrientation : Qt::InvertedPortraitOrientation;
    }
    QString name() const override { return QString("100%%1 Screen %1").arg(scale_); }
    QString model() const override { return "Model"; }
    QList<QPlatformScreen*> virtualSiblings() const override { return all(); }

    static QList<QPlatformScreen*>& all()
    {
        static QList<QPlatformScreen*> screens;
        return screens;
    }

private:
    const QRect geometry_;
    const QSizeF millimetres_;
    const int scale_;
};

NORVEX_DEPRECATED_CALLS_BEGIN

/// The widget for the whole desktop, which a platform with a desktop of several screens makes larger than one of them.
QWidget* wholeDesktop()
{
    return QApplication::desktop()->screen(-1);
}

NORVEX_DEPRECATED_CALLS_END

} // namespace

class FakeScreensTest : public QObject
{
    Q_OBJECT

private slots:
    void sections()
    {
        QVERIFY(QGuiApplication::screens().isEmpty());
        const QStringList expected =
            QString::fromUtf8(contentsOf(NORVEX_TEST_DATA "/screens.txt")).split("= screens added\n");
        sameLines(qtScreens() + qtDesktop(), expected.value(0));
        auto* const first = new FakeScreen(QRect(0, 0, 1600, 900), QSizeF(400, 200), 1);
        auto* const second = new FakeScreen(QRect(1600, 0, 768, 100000), QSizeF(0, 1e6), 2);
        wholeDesktop()->resize(2368, 1100);
        sameLines(qtScreens() + qtDesktop(), expected.value(1));
        QWindowSystemInterface::handleScreenRemoved(second);
        QWindowSystemInterface::handleScreenRemoved(first);
    }
};

QTEST_MAIN(FakeScreensTest)
#include "fakeScreensTest.moc"
