#include "systeminfo/openGLVersions.h"
#include "systeminfo/scanOpenGLInfo.h"

#include <QApplication>
#include <QGLWidget>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QtTest>

#include <functional>
#include <future>
#include <new>

using namespace norvex::SystemInfo;

namespace {

const QString withoutOpenGL = "#### QGLFormat #### \nhasOpenGL         0\nhasOpenGLOverlays 0\n"
                              "openGLVersionFlags 0x0 not recognized\n";

QString section()
{
    QString text = "what it held before";
    CScanOpenGLInfo(nullptr).getInfo(text);
    return text;
}

struct Answers
{
    QString section = ::section();
    COpenGLVersionInfo cached = CScanOpenGLInfo::GetOpenGLVersionCached();
    bool isCacheEmpty = CScanOpenGLInfo::versionInfoCache.isNull;
};

void verifyNothingAsked(const Answers& answers)
{
    QCOMPARE(answers.section, withoutOpenGL);
    QVERIFY(!answers.cached.isNull && answers.cached.versionFlags == 0);
    QVERIFY(answers.isCacheEmpty);
}

const QString driverHeading = "#### Direct OpenGL calls (using QGLWidget with default QGLFormat) ####\n";

/// A surface that can throw std::bad_alloc when it becomes current again.
struct OwnSurface : QOffscreenSurface
{
    SurfaceType surfaceType() const override
    {
        if (isWithoutMemory) {
            throw std::bad_alloc();
        }
        return QOffscreenSurface::surfaceType();
    }
    bool isWithoutMemory = false;
};

/// A context of this test's own, current as long as it lives.
struct OwnContext
{
    OwnContext()
    {
        surface.create();
        isCurrent = context.create() && context.makeCurrent(&surface);
    }
    QString string(GLenum name)
    {
        return QString::fromLatin1(reinterpret_cast<const char*>(context.functions()->glGetString(name)));
    }
    OwnSurface surface;
    QOpenGLContext context;
    bool isCurrent = false;
};

/// Counts the surfaces that windows and contexts get.
class SurfaceCounter : public QObject
{
public:
    SurfaceCounter() { qApp->installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::PlatformSurface ? 1 : 0;
        return false;
    }
    int count = 0;
};

int surfacesOf(const std::function<void()>& call)
{
    const SurfaceCounter counter;
    call();
    return counter.count;
}

} // namespace

/// Runs with an X server or on a Mac, where it must find OpenGL, and on platforms without a display, where no context
/// can be made whatever Qt says.
class OpenGLTest : public QObject
{
    Q_OBJECT

public:
    explicit OpenGLTest(const Answers& before) : beforeApplication_(before) {}

private slots:
    void withoutApplication() { verifyNothingAsked(beforeApplication_); }

    void besideGuiThread()
    {
        verifyNothingAsked(std::async(std::launch::async, [] { return Answers(); }).get());
    }

    void versionTable_data()
    {
        QTest::addColumn<int>("flags");
        QTest::addColumn<QString>("answer");
        const auto row = [](int flags, const char* answer) { QTest::newRow(answer) << flags << answer; };
        row(0, "not recognized, -1, -1");
        row(0x100000, "not recognized, -1, -1");
        row(0xff07f, "OpenGL 4.3, 4, 3");
        row(0x8040, "OpenGL 3.3, 3, 3");
        row(0x1fff, "OpenGL 3.0, 3, 0");
        row(0x7f, "OpenGL 2.1, 2, 1");
        row(0x801, "OpenGL 1.1, 1, 1");
        row(0xf80, "OpenGL ES 2.0, -1, -1");
        row(0x300, "OpenGL ES Common 1.1, -1, -1");
        row(0x480, "OpenGL ES Common 1.0, -1, -1");
        row(0x500, "OpenGL ES Common Lite 1.1, -1, -1");
        row(0x100, "OpenGL ES Common Lite 1.0, -1, -1");
    }

    void versionTable()
    {
        QFETCH(int, flags);
        const COpenGLVersionInfo info = Internal::versionInfoFromFlags(flags);
        QVERIFY(!info.isNull && info.versionFlags == flags);
        const QString numbers = QString(", %1, %2").arg(info.majorVersion).arg(info.minorVersion);
        QTEST(info.versionName + numbers, "answer");
    }

    void sectionOfThisMachine()
    {
        QSignalSpy lastWindowClosed(qApp, &QGuiApplication::lastWindowClosed);
        const QString text = section();
        QVERIFY(!CScanOpenGLInfo::versionInfoCache.isNull);
        QVERIFY(!QOpenGLContext::currentContext());
        const bool hasOpenGL = QGLFormat::hasOpenGL();
        if (!expectsOpenGL_) {
            const QString values = driverHeading +
                                   "glGetString(GL_VERSION)  = \nglGetString(GL_VENDOR)   = \n"
                                   "glGetString(GL_RENDERER) = \nglGetString(GL_EXTENSIONS) = \n";
            QCOMPARE(text, hasOpenGL ? QString(withoutOpenGL).replace("GL         0", "GL         1") + values
                                     : withoutOpenGL);
            return;
        }
        QVERIFY(hasOpenGL);
        const COpenGLVersionInfo version = CScanOpenGLInfo::GetOpenGLVersion();
        QVERIFY(version.majorVersion >= 1);
        OwnContext own;
        const QString expected =
            QString("#### QGLFormat #### \nhasOpenGL         1\nhasOpenGLOverlays 0\n"
                    "openGLVersionFlags 0x%1 %2\n" +
                    driverHeading +
                    "glGetString(GL_VERSION)  = %3\nglGetString(GL_VENDOR)   = %4\n"
                    "glGetString(GL_RENDERER) = %5\nglGetString(GL_EXTENSIONS) = %6\n")
                .arg(QString::number(version.versionFlags, 16), version.versionName, own.string(GL_VERSION),
                     own.string(GL_VENDOR), own.string(GL_RENDERER), own.string(GL_EXTENSIONS));
        QCOMPARE(text, expected);
        QVERIFY(QApplication::topLevelWidgets().isEmpty());
        QCoreApplication::processEvents();
        QCOMPARE(lastWindowClosed.count(), 0);
    }

    void callersContextStays()
    {
        OwnContext own;
        QCOMPARE(own.isCurrent, expectsOpenGL_);
        QOpenGLContext* const current = QOpenGLContext::currentContext();
        QCOMPARE(section().contains("hasOpenGL         1\n"), QGLFormat::hasOpenGL());
        QCOMPARE(QOpenGLContext::currentContext(), current);
        QVERIFY(!current || current->surface() == &own.surface);
        own.surface.isWithoutMemory = true;
        section();
        QVERIFY(!QOpenGLContext::currentContext());
    }

    void noContextButTheWidgets()
    {
        section(); // looks for the versions
        const int widgets = surfacesOf([] { QGLWidget().makeCurrent(); });
        QVERIFY(widgets > 0 || !expectsOpenGL_);
        QCOMPARE(surfacesOf([] { section(); }), QGLFormat::hasOpenGL() ? widgets : 0);
    }

    void defaultFormatThatCannotBeMade()
    {
        const COpenGLVersionInfo version = CScanOpenGLInfo::GetOpenGLVersion();
        const QString text = section();
        const QSurfaceFormat previous = QSurfaceFormat::defaultFormat();
        QSurfaceFormat format;
        format.setRenderableType(QSurfaceFormat::OpenVG);
        QSurfaceFormat::setDefaultFormat(format);
        const bool canBeMade = QOpenGLContext().create();
        const int flags = CScanOpenGLInfo::GetOpenGLVersion().versionFlags;
        const QString textWithFormat = section();
        QSurfaceFormat::setDefaultFormat(previous);
        QVERIFY(!canBeMade);
        QCOMPARE(flags, version.versionFlags);
        QCOMPARE(textWithFormat, text);
    }

    void cacheIsKept()
    {
        const int flags = CScanOpenGLInfo::GetOpenGLVersion().versionFlags;
        QCOMPARE(CScanOpenGLInfo::GetOpenGLVersionCached().versionFlags, flags);
        CScanOpenGLInfo::versionInfoCache.versionFlags = 0xabc;
        CScanOpenGLInfo::versionInfoCache.versionName = "as the cache says";
        QVERIFY(section().contains("openGLVersionFlags 0xabc as the cache says\n"));
        QCOMPARE(CScanOpenGLInfo::GetOpenGLVersion().versionFlags, flags);
        QCOMPARE(CScanOpenGLInfo::GetOpenGLVersionCached().versionFlags, 0xabc);
    }

private:
    const Answers beforeApplication_;
    const bool expectsOpenGL_ =
        qEnvironmentVariableIsSet("DISPLAY") || QGuiApplication::platformName() == "cocoa";
};

int main(int argc, char** argv)
{
    const Answers beforeApplication;
    QApplication application(argc, argv);
    OpenGLTest test(beforeApplication);
    return QTest::qExec(&test, argc, argv);
}

#include "openGLTest.moc"
