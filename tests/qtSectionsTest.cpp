#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/norvexNetworkIfInfo.h"
#include "systeminfo/norvexSystemInfo.h"
#include "systeminfo/qtSectionParts.h"
#include "systeminfo/scanOpenGLInfo.h"

#include <QApplication>
#include <QDateTime>
#include <QHostInfo>
#include <QtTest>

#include <ctime>
#include <unistd.h>

using namespace norvex::SystemInfo;
using namespace norvex::SystemInfo::Internal;

namespace {

const char centralEurope[] = "CET-1CEST,M3.5.0,M10.5.0/3";

/// Gives variables of the environment other values while it lives.
class Variables
{
public:
    explicit Variables(const QMap<QByteArray, QByteArray>& values) { exchange(values); }
    Variables(const Variables&) = delete;
    Variables& operator=(const Variables&) = delete;
    ~Variables() { exchange(QMap<QByteArray, QByteArray>(previous_)); }

private:
    void exchange(const QMap<QByteArray, QByteArray>& values)
    {
        for (auto each = values.begin(); each != values.end(); ++each) {
            previous_[each.key()] = qgetenv(each.key());
            each.value().isNull() ? qunsetenv(each.key()) : qputenv(each.key(), each.value());
        }
    }

    QMap<QByteArray, QByteArray> previous_;
};

QString interfaceBlocks()
{
    QString blocks;
    for (const QNetworkInterface& iface : QNetworkInterface::allInterfaces()) {
        blocks += interfaceBlock(
            {iface.humanReadableName(), iface.hardwareAddress(), iface.flags(), iface.addressEntries()});
    }
    blocks.chop(1);
    return blocks;
}

/// The lines of the frozen text, with this machine's values in place of "{name}".
QStringList frozenLines()
{
    const QString folder = QCoreApplication::applicationDirPath();
    const QMap<QString, QString> values = {
        {"built", QT_VERSION_STR},
        {"runs", qVersion()},
        {"order", Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? "Little Endian" : "Big Endian"},
        {"bits", QString::number(8 * sizeof(void*))},
        {"bytes", QString::number(sizeof(void*))},
        {"folder", folder},
        {"process", QString::number(getpid())},
        {"host", QSysInfo::machineHostName()},
        {"domain", QHostInfo::localDomainName()},
        {"interfaces", interfaceBlocks()},
    };
    QFile file(NORVEX_TEST_DATA "/qtPart.txt");
    QString text = file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString("<missing>");
    for (auto each = values.begin(); each != values.end(); ++each) {
        text.replace('{' + each.key() + '}', each.value());
    }
    return text.split('\n');
}

} // namespace

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

    /// The whole Qt part of a report, as its readers have always known it.
    void qtPart()
    {
#ifndef Q_OS_LINUX
        QTest::qSkip("the folders are those of Linux", __FILE__, __LINE__);
        return;
#endif
        QCoreApplication::setApplicationName("a name");
        QCoreApplication::setApplicationVersion("a version");
        QCoreApplication::setOrganizationName("an organisation");
        QCoreApplication::setOrganizationDomain("a domain");
        QLocale::setDefault(QLocale("fr_CA"));
        const QStringList libraryPaths = QCoreApplication::libraryPaths();
        QCoreApplication::setLibraryPaths({"/nonexistent/a", "/nonexistent/b"});
        const Variables variables({{"HOME", "/nonexistent/home"},
                                   {"TMPDIR", "/usr"},
                                   {"XDG_CONFIG_HOME", "/nonexistent/configuration"},
                                   {"XDG_DATA_HOME", "/nonexistent/data"},
                                   {"NORVEX_TEST_VARIABLE", "50% of %1  = two "}});
        const QString report = allInfos(true);
        QCoreApplication::setLibraryPaths(libraryPaths);
        QVERIFY(report.startsWith("############ Macintosh specific section ###########\n"));
        const QStringList lines = report.mid(report.indexOf("###### System informations")).split('\n');
        int next = 0;
        bool skips = false;
        for (const QString& line : frozenLines()) {
            if (line == "...") { // any lines
                skips = true;
                continue;
            }
            next = skips ? lines.indexOf(line, next) : next;
            QVERIFY2(next >= 0, qPrintable(line));
            QCOMPARE(lines.value(next++), line);
            skips = false;
        }
        QCOMPARE(next, lines.size());

        QString openGL;
        CScanOpenGLInfo().getInfo(openGL);
        QVERIFY(allInfos(false).endsWith('\n' + openGL + separator()));
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

int main(int argc, char** argv)
{
    qputenv("LC_ALL", "de_CH.UTF-8"); // Qt reads it once
    QApplication application(argc, argv);
    QtSectionsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "qtSectionsTest.moc"
