#include <umockdev.h>

#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/mac/platform/live/deviceRegistry.h"
#include "systeminfo/mac/platform/live/udevDevices.h"
#include "systeminfo/mac/platform/machine.h"

#include <QtTest>

#include <dlfcn.h>
#include <memory>
#include <sys/utsname.h>
#include <unistd.h>

using namespace norvex::SystemInfo;
using norvex::hostRegistry;
using norvex::hostSuperclassOf;

namespace {

/// Answers every query with the whole registry, as a recording of the host does.
class WholeRegistryMachine : public norvex::Machine
{
public:
    std::optional<QByteArray> sysctl(const QByteArray&) const override { return std::nullopt; }
    std::optional<std::int32_t> gestalt(std::uint32_t) const override { return std::nullopt; }
    norvex::RegistryPtr registry(const QByteArray&) const override { return hostRegistry({}); }
    QByteArray superclassOf(const QByteArray& name) const override { return hostSuperclassOf(name); }
    QList<QByteArray> volumes() const override { return {}; }
    std::optional<norvex::MacStatfs> statfs(const QByteArray&) const override { return std::nullopt; }
    norvex::PathconfAnswer caseSensitive(const QByteArray&) const override { return {}; }
    norvex::PathconfAnswer casePreserving(const QByteArray&) const override { return {}; }
    bool deviceFileExists(const QByteArray& path) const override { return QFile::exists(path); }
    bool fileExists(const QByteArray&) const override { return false; }
    std::optional<QByteArray> propertyListString(const QByteArray&, const QByteArray&) const override
    {
        return std::nullopt;
    }
    norvex::DaemonAnswer daemonVersion() const override { return {}; }
    std::optional<QByteArray> urlHandler(const QByteArray&) const override { return std::nullopt; }
};

struct Section
{
    const char* name;
    QString (*text)();
};

/// The sections in the order of the expected texts.
const Section sections[] = {
    {"disks", MacSysInfo::ioKitSataDiskDevices},
    {"optical drives", MacSysInfo::ioKitSerialAtapiDevices},
    {"NVMe", MacSysInfo::ioKitNVMExpressDevices},
    {"network", MacSysInfo::ioKitEthernetDevices},
    {"platform", MacSysInfo::ioKitPlatformInfos},
    {"graphics", MacSysInfo::ioKitGraphicsCards},
    {"USB", MacSysInfo::ioKitUsbDevices},
    {"serial", [] { return MacSysInfo::ioKitGetRs232SerialDevices(true); }},
    {"modems too", [] { return MacSysInfo::ioKitGetRs232SerialDevices(false); }},
};

QStringList expectedSections(const QString& testbed)
{
    QFile file(QStringLiteral(NORVEX_TEST_DATA "/%1.txt").arg(testbed));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).split(MacSysInfo::separator())
                                          : QStringList();
}

/// The identifiers of all entries of a class.
QList<std::uint64_t> identifiersOf(const norvex::Registry& registry, const char* className)
{
    QList<std::uint64_t> identifiers;
    for (std::uint32_t i = 1; i < registry.size(); ++i) {
        if (registry.conformsTo(i, className)) {
            identifiers += registry.entry(i).id;
        }
    }
    return identifiers;
}

} // namespace

class LiveDevicesTest : public QObject
{
    Q_OBJECT

private slots:
    void sectionsOfHardware_data();
    void sectionsOfHardware();
    void queryScansItsOwnDevices();
    void rootTellsKernelBuild();
    void modelFromHardwareDatabase();
    void unpluggedAndUnknown();
    void cleanup();

private:
    void newTestbed();
    void load(const QString& testbed);

    std::unique_ptr<UMockdevTestbed, void (*)(gpointer)> testbed_{nullptr, g_object_unref};
    QString loaded_;
};

void LiveDevicesTest::newTestbed()
{
    loaded_.clear();
    testbed_.reset(); // there can only be one
    testbed_.reset(umockdev_testbed_new());
}

void LiveDevicesTest::load(const QString& testbed)
{
    if (testbed == loaded_) { // making one takes its time
        return;
    }
    newTestbed();
    loaded_ = testbed;
    GError* error = nullptr;
    const QByteArray file = QStringLiteral(NORVEX_TEST_DATA "/%1.umockdev").arg(testbed).toUtf8();
    umockdev_testbed_add_from_file(testbed_.get(), file.constData(), &error);
    QVERIFY2(error == nullptr, error != nullptr ? error->message : "");
}

void LiveDevicesTest::cleanup()
{
    norvex::setMachine(nullptr);
    QVERIFY(norvex::liveCounts().isZero());
}

void LiveDevicesTest::sectionsOfHardware_data()
{
    QTest::addColumn<QString>("testbed");
    QTest::addColumn<int>("section");
    for (const char* testbed : {"testbedDesktop", "testbedOddities"}) {
        for (int i = 0; i < int(std::size(sections)); ++i) {
            QTest::addRow("%s, %s", testbed, sections[i].name) << testbed << i;
        }
    }
}

void LiveDevicesTest::sectionsOfHardware()
{
    QFETCH(QString, testbed);
    QFETCH(int, section);
    load(testbed);
    const QString expected = expectedSections(testbed).value(section);
    QCOMPARE(sections[section].text(), expected);

    norvex::setMachine(std::make_shared<WholeRegistryMachine>());
    QCOMPARE(sections[section].text(), expected);
}

void LiveDevicesTest::queryScansItsOwnDevices()
{
    load("testbedDesktop");
    const auto whole = hostRegistry({});
    for (const char* name :
         {"IOUSBDevice", "IOEthernetInterface", "IOPCIDevice", "IOSerialBSDClient", "IOMedia"}) {
        const auto registry = hostRegistry(name);
        QVERIFY2(!identifiersOf(*registry, name).isEmpty(), name);
        QCOMPARE(identifiersOf(*registry, name), identifiersOf(*whole, name));
        QVERIFY2(registry->size() < whole->size() / 2, name);
    }
    QCOMPARE(hostRegistry("IOService")->size(), whole->size());
    QCOMPARE(whole->entry(0).end, whole->size());
}

void LiveDevicesTest::rootTellsKernelBuild()
{
    utsname system = {};
    QCOMPARE(uname(&system), 0);
    QCOMPARE(MacSysInfo::ioKitRootInfos(),
             QStringLiteral("Root info (from IOKit)\nOS Build Version: '%1'\n").arg(system.version));
}

void LiveDevicesTest::modelFromHardwareDatabase()
{
    const norvex::UdevOwner<udev_hwdb> database(udev_hwdb_new(nullptr));
    if (!database) {
        QSKIP("udev's hardware database is not installed");
    }
    newTestbed();
    const char card[] = "P: /devices/pci0000:00/0000:00:02.0\nE: SUBSYSTEM=pci\nA: class=0x030000\n"
                        "A: modalias=pci:v00008086d00000116sv0000103Csd0000161Cbc03sc00i00\n";
    QVERIFY(umockdev_testbed_add_from_string(testbed_.get(), card, nullptr));
    QVERIFY(MacSysInfo::ioKitGraphicsCards().contains(
        QLatin1String("Card #1\n   Model:      2nd Generation Core Processor Family Integrated Graphics")));
}

void LiveDevicesTest::unpluggedAndUnknown()
{
    newTestbed();
    QCOMPARE(MacSysInfo::ioKitSataDiskDevices(), QStringLiteral("AHCI disk (from IOKit)\n"));
    QCOMPARE(MacSysInfo::ioKitUsbDevices(), QStringLiteral("Attached USB devices (from IOKit):\n"));
    QCOMPARE(hostRegistry("IOFireWireDevice")->size(), 1u);
    QCOMPARE(hostSuperclassOf("IO80211Interface"), QByteArray("IOEthernetInterface"));
    QVERIFY(hostSuperclassOf("IOFireWireDevice").isEmpty());
}

/// Starts itself again with the testbed's library preloaded, behind the address sanitizer's, which has to be the first.
int main(int argc, char** argv)
{
    if (!qgetenv("LD_PRELOAD").contains("umockdev")) {
        QByteArray libraries = "libumockdev-preload.so.0";
        Dl_info sanitizer = {};
        void* start = dlsym(RTLD_DEFAULT, "__asan_init");
        if (start != nullptr && dladdr(start, &sanitizer) != 0) {
            libraries = sanitizer.dli_fname + (' ' + libraries);
        }
        qputenv("LD_PRELOAD", libraries);
        execv("/proc/self/exe", argv);
        qFatal("cannot start again with a testbed");
    }
    const QCoreApplication application(argc, argv);
    LiveDevicesTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "liveDevicesTest.moc"
