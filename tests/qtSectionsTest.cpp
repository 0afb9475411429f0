#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/norvexNetworkIfInfo.h"
#include "systeminfo/norvexSystemInfo.h"
#include "systeminfo/qtSectionParts.h"
#include "systeminfo/scanOpenGLInfo.h"

#include <QApplication>
#include <QDateTime>
#include <QScreen>
#include <QtTest>

#include <ctime>

using namespace norvex::SystemInfo;
using namespace norvex::SystemInfo::Internal;

namespace {

const char centralEurope[] = "CET-1CEST,M3.5.0,M10.5.0/3";

}

class QtSectionsTest : public QObject
{
    Q_OBJECT

private slots:
    void dateAndBias_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<QString>("utc");
        QTest::addColumn<QString>("localAndBias");
        const auto row = [](const char* name, const char* zone, const char* utc, const char* localAndBias) {
            QTest::newRow(name) << QByteArray(zone) << utc << localAndBias;
        };
        row("UTC", "UTC0", "05.02.2026 13:03:09", "05.02.2026 13:03:09, 0");
        row("+05:45 past midnight", "NPT-5:45", "31.12.2026 23:30:00", "01.01.2027 05:15:00, -345");
        row("-03:30", "NST3:30", "01.01.2026 02:00:05", "31.12.2025 22:30:05, 210");
        row("winter", centralEurope, "05.02.2026 13:03:09", "05.02.2026 14:03:09, -60");
        row("summer", centralEurope, "15.07.2026 12:00:00", "15.07.2026 14:00:00, -120");
        row("02:30 in summer time", centralEurope, "25.10.2026 00:30:00", "25.10.2026 02:30:00, -120");
        row("02:30 again in winter time", centralEurope, "25.10.2026 01:30:00", "25.10.2026 02:30:00, -60");
        row("towards zero", "XYZ-0:01:59", "01.01.2026 12:00:00", "01.01.2026 12:01:59, -1");
    }

    void dateAndBias()
    {
        QFETCH(QByteArray, zone);
        QFETCH(QString, utc);
        QFETCH(QString, localAndBias);
        QDateTime moment = QLocale::c().toDateTime(utc, "dd.MM.yyyy hh:mm:ss");
        moment.setTimeSpec(Qt::UTC);
        qputenv("TZ", zone);
        tzset();
        const QString lines = dateTimeLines(QDateTime::fromMSecsSinceEpoch(moment.toMSecsSinceEpoch()));
        qunsetenv("TZ");
        tzset();
        QCOMPARE(lines, QString("Local Date and Time: %1\nUTC   Date and Time: %2\nActiveBias: %3 min\n")
                            .arg(localAndBias.section(", ", 0, 0), utc, localAndBias.section(", ", 1)));
    }

    void libraryPaths()
    {
        QCOMPARE(libraryPathLines({}), QString("Library Paths:        \n"));
        QCOMPARE(libraryPathLines({"/a b", "/%1", "/c"}), QString("Library Paths:        /a b\n"
                                                                  "                      /%1\n"
                                                                  "                      /c\n"));
    }

    void measurementSystems()
    {
        QCOMPARE(measurementSystemName(QLocale("de_DE").measurementSystem()), QString("MetricSystem"));
        QCOMPARE(measurementSystemName(QLocale("en_US").measurementSystem()), QString("ImperialSystem"));
        QCOMPARE(measurementSystemName(QLocale("en_GB").measurementSystem()), QString("unknown"));
    }

    void screenNumbers()
    {
        const ScreenFacts screen{"100%1 Monitor",
                                 109.00732,
                                 1e6,
                                 72,
                                 1e-5,
                                 1.5,
                                 60.000001,
                                 QSizeF(597, 336),
                                 QSize(2560, 1440),
                                 24,
                                 Qt::InvertedLandscapeOrientation,
                                 Qt::PrimaryOrientation,
                                 Qt::LandscapeOrientation};
        QCOMPARE(screenLines(3, screen),
                 QString("#3\n  Name: 100%1 Monitor\n  Physical DPI x: 109.007  y: 1e+06\n"
                         "  Logical  DPI x: 72  y: 1e-05\n  devicePixelRatio: 1.5\n  RefreshRate: 60 Hz\n"
                         "  PhysicalSize (width x height): 597mm x 336mm  23.5039inch x 13.2283inch\n"
                         "                diagonal: 685.058mm 26.9708inch\n"
                         "  Size (width x height): 2560 x 1440\n  Color depth: 24\n"
                         "  Orientation: 8\n  Native Orientation: 0\n  Primary Orientation: 2\n"));
        QVERIFY(screenLines(1, ScreenFacts())
                    .contains("): 0mm x 0mm  0inch x 0inch\n                diagonal: 0mm 0inch\n"));
    }

    void desktops()
    {
        const QList<DesktopScreen> screens = {{QRect(0, 23, 800, 877), QRect(0, 0, 800, 900)},
                                              {QRect(800, 0, 100000, 20), QRect(800, 0, 100000, 1080)}};
        const DesktopFacts desktop{1, screens, screens.at(0), true, QRect(0, 0, 3360, 1080)};
        QCOMPARE(
            desktopLines(desktop),
            QString(
                "Number of screens:  2\nPrimary screen:     #1\n"
                "Screen #0: available Geometry width:   800, height:   877   screen Geometry width:   800, "
                "height:   900\n"
                "Screen #1: available Geometry width: 100000, height:    20   screen Geometry width: 100000, "
                "height:  1080\n"
                "Screen -1: available Geometry width:   800, height:   877   screen Geometry width:   800, "
                "height:   900\n"
                "isVirtualDesktop:   1\nVirtual Desktop Geometry: width:  3360, height  1080\n"));
    }

    /// Runs on platforms with no screen, with one, and with two that are one desktop.
    void screensOfThisPlatform()
    {
        const QList<QScreen*> screens = QGuiApplication::screens();
        QString expected = "QScreen\n";
        QString desktop =
            QString("QDesktopWidget\nNumber of screens:  %1\nPrimary screen:     #0\n").arg(screens.size());
        const auto line = [&](const QString& number, const QScreen* screen) {
            const QSize available = screen ? screen->availableSize() : QSize(0, 0);
            const QSize whole = screen ? screen->size() : QSize(0, 0);
            return QString("Screen %1: available Geometry width: %2, height: %3   screen Geometry width: %4, "
                           "height: %5\n")
                .arg(number)
                .arg(available.width(), 5)
                .arg(available.height(), 5)
                .arg(whole.width(), 5)
                .arg(whole.height(), 5);
        };
        for (int i = 0; i < screens.size(); ++i) {
            expected += screenLines(i + 1, screenFacts(*screens.at(i)));
            desktop += line(QString("#%1").arg(i), screens.at(i));
        }
        desktop += line("-1", screens.value(0));
        desktop += QString("isVirtualDesktop:   %1\n").arg(int(screens.size() > 1));
        QCOMPARE(qtScreens(), expected);
        QCOMPARE(qtDesktop().section("Virtual Desktop", 0, 0), desktop);
    }

    void printers()
    {
        QCOMPARE(printerSection({}), QString("QPrinterInfo\nAvailable printers:\n    <None>\n"));
        QCOMPARE(
            printerSection({{"Office_Laser", false}, {"Colour %1", true}}),
            QString(
                "QPrinterInfo\nAvailable printers:\n   Office_Laser\n   Colour %1    [default printer]\n"));
    }

    void networkInterfaces()
    {
        const QString underscores = QString(55, '_') + "\n";
        QCOMPARE(NetworkInfo::separatorNetIf(), underscores);
        QCOMPARE(interfaceBlock({"p2p0", "", {}, {}}),
                 underscores + "p2p0\nHardware address: \nStatus: Down\nAddresses: IP , netmask , broadcast\n"
                               "<no address>\n");

        QNetworkAddressEntry four;
        four.setIp(QHostAddress("192.0.2.10"));
        four.setNetmask(QHostAddress("255.255.255.0"));
        four.setBroadcast(QHostAddress("192.0.2.255"));
        QNetworkAddressEntry six;
        six.setIp(QHostAddress("fe80::1"));
        six.setPrefixLength(64);
        const QNetworkInterface::InterfaceFlags up(QNetworkInterface::IsUp);
        QCOMPARE(
            interfaceBlock({"en%1", "00:11:22:33:44:55", up | QNetworkInterface::IsLoopBack, {four, six}}),
            underscores + "en%1\nLoopback interface\nHardware address: 00:11:22:33:44:55\nStatus: Up\n"
                          "Addresses: IP , netmask , broadcast\n192.0.2.10 , 255.255.255.0 , 192.0.2.255\n"
                          "fe80::1 , ffff:ffff:ffff:ffff:: , \n");
    }

    void labelledSections()
    {
        QCoreApplication::setOrganizationName("Example Organisation");
        QVERIFY(qtCoreApplication().contains(
            QString("\nApplication PID:      %1\nOrganization Domain:  \nOrganization Name:    Example "
                    "Organisation\nLibrary Paths:        ")
                .arg(QCoreApplication::applicationPid())));
        qputenv("NORVEX_TEST_VARIABLE", "50% of %1  = two ");
        QVERIFY(qtSystemEnvironment().contains("\n  NORVEX_TEST_VARIABLE=50% of %1  = two \n"));
        QCOMPARE(qtDesktopServices().count('\n'), 16);
        QVERIFY(qtDesktopServices().contains("\nHome:                      " + QDir::homePath() +
                                             "\nHome [displayName]         "));
    }

    void reportFrame()
    {
        const QString hyphens = QString(72, '-') + "\n";
        const QString banner = "###### System informations retrieved using Qt #######\n";
        const QString report = allInfos(true);
        const int bannerAt = report.indexOf(hyphens + banner);
        QVERIFY(report.startsWith("############ Macintosh specific section ###########\n"));
        QVERIFY(bannerAt > 0);

        const QString qtPart = report.mid(bannerAt + hyphens.size() + banner.size());
        QString expected = hyphens;
        for (const auto& section :
             {qtGlobal(), qtCoreApplication(), qtLocale(), qtScreens(), qtDesktop(), qtDesktopServices(),
              qtPrinterInfo(), qtHostInfo(), NetworkInfo::allInfos(), qtSystemEnvironment()}) {
            expected += section + hyphens;
        }
        QCOMPARE(qtPart.left(qtPart.indexOf(hyphens)).count('\n'), 3);
        QCOMPARE(qtPart.mid(qtPart.indexOf(hyphens)), expected);

        QString openGL;
        CScanOpenGLInfo().getInfo(openGL);
        QVERIFY(allInfos(false).endsWith(expected + openGL + hyphens));
    }

    void versions()
    {
        int major = 0;
        int minor = 0;
        int patch = 0;
        libVersion(patch, minor, major);
        QCOMPARE(QString("%1.%2.%3").arg(major).arg(minor).arg(patch), QString(NORVEX_VERSION));
        QCOMPARE(libVersionString(), QString(NORVEX_VERSION));
        QCOMPARE(platformName(), MacSysInfo::platformName());
    }
};

QTEST_MAIN(QtSectionsTest)
#include "qtSectionsTest.moc"
