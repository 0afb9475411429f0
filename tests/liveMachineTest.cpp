#include "systeminfo/mac/platform/live/kernel.h"
#include "systeminfo/mac/platform/live/servedMounts.h"
#include "systeminfo/mac/platform/live/sysctl.h"
#include "systeminfo/mac/platform/live/volumes.h"
#include "systeminfo/mac/platform/machine.h"

#include <QtTest>
#include <cerrno>
#include <cstring>
#include <sys/time.h>

using namespace norvex;

namespace {

/// One row for each section of a data file, with its lines.
void addSections(const char* fileName)
{
    QTest::addColumn<QList<QByteArray>>("lines");
    QFile file(QStringLiteral(NORVEX_TEST_DATA "/linuxHosts/%1").arg(QLatin1String(fileName)));
    QVERIFY(file.open(QIODevice::ReadOnly));
    for (const QByteArray& section : file.readAll().split('[').mid(1)) {
        const QList<QByteArray> lines = section.split('\n');
        QTest::newRow(lines.first().chopped(1).constData()) << lines.mid(1);
    }
}

std::uint32_t selector(const QByteArray& code)
{
    std::uint32_t value = 0;
    for (const char character : code) {
        value = value << 8 | std::uint8_t(character);
    }
    return value;
}

/// An answer as the data files write it: a text, an integer or the seconds of a time, "-" for none.
QByteArray shown(const QByteArray& name, const std::optional<QByteArray>& answer)
{
    static const QList<QByteArray> texts = {"hw.model",
                                            "hw.machine",
                                            "kern.version",
                                            "kern.osversion",
                                            "machdep.cpu.vendor",
                                            "machdep.cpu.brand_string",
                                            "machdep.cpu.features"};
    if (!answer) {
        return "-";
    }
    if (texts.contains(name)) {
        return answer->endsWith('\0') ? answer->chopped(1) : "no zero byte";
    }
    const bool isTime = name == "kern.boottime" && answer->size() == int(sizeof(timeval));
    qint64 number = 0;
    std::memcpy(&number, answer->constData(), isTime ? sizeof number : std::size_t(answer->size()));
    return QByteArray::number(number);
}

QByteArray liveAnswer(const QByteArray& name)
{
    const auto gestalt = name.size() == 4 ? liveMachine()->gestalt(selector(name)) : std::nullopt;
    return gestalt ? QByteArray::number(*gestalt) : shown(name, liveMachine()->sysctl(name));
}

/// The CPUID of a processor that a data file describes.
Cpuid cpuidOf(const QMap<QByteArray, QByteArray>& facts)
{
    if (facts.isEmpty()) {
        return {};
    }
    return [facts](std::uint32_t leaf) {
        const auto word = [&facts](const char* text, int place) {
            const QByteArray bytes = facts.value(text).leftJustified(48, '\0').mid(place, 4);
            std::uint32_t value = 0;
            std::memcpy(&value, bytes.constData(), sizeof value);
            return value;
        };
        const auto value = [&](const char* name) {
            return facts.value((leaf == 1 ? "1." : "0x16.") + QByteArray(name)).toUInt(nullptr, 0);
        };
        const bool isBrand = leaf >= 0x80000002u && leaf <= 0x80000004u;
        const int part = isBrand ? int(leaf - 0x80000002u) * 16 : 0;
        if (leaf == 0) {
            return CpuidRegisters{0x16, word("vendor", 0), word("vendor", 8), word("vendor", 4)};
        }
        if (leaf == 0x80000000u) {
            return CpuidRegisters{facts.contains("brand") ? 0x80000008u : leaf, 0, 0, 0};
        }
        if (isBrand) {
            return CpuidRegisters{word("brand", part), word("brand", part + 4), word("brand", part + 8),
                                  word("brand", part + 12)};
        }
        return CpuidRegisters{value("eax"), value("ebx"), value("ecx"), value("edx")};
    };
}

QByteArray output(const char* command)
{
    QProcess process;
    process.start(QStringLiteral("sh"), {QStringLiteral("-c"), QString::fromUtf8(command)});
    return process.waitForFinished() && process.exitCode() == 0 ? process.readAllStandardOutput().trimmed()
                                                                : QByteArray();
}

QByteArray fileText(const char* path)
{
    return KernelFiles().contents(path).value_or(QByteArray());
}

} // namespace

class LiveMachineTest : public QObject
{
    Q_OBJECT

private slots:
    void hosts_data() { addSections("hosts.txt"); }
    void hosts();
    void mounts_data() { addSections("mounts.txt"); }
    void mounts();
    void releases_data();
    void releases();
    void agreesWithKernel();
    void agreesWithTools();
    void loopMounted_data();
    void loopMounted();
    void missingPath();
};

void LiveMachineTest::hosts()
{
    QFETCH(QList<QByteArray>, lines);
    const QTemporaryDir root;
    QMap<QByteArray, QByteArray> cpuid;
    int asked = 0;
    for (const QByteArray& line : lines) {
        const int equals = line.indexOf(" = ");
        const QByteArray key = line.mid(0, equals);
        QByteArray value = line.mid(equals + 3);
        value.replace("\\n", "\n").replace("\\t", "\t").replace("\\0", QByteArray(1, '\0'));
        if (key.startsWith('/')) {
            QFile file(root.path() + QString::fromUtf8(key));
            QVERIFY(QDir().mkpath(QFileInfo(file).path()) && file.open(QIODevice::WriteOnly));
            file.write(value);
        } else if (key.startsWith("? ")) {
            const KernelFiles files(root.path().toUtf8());
            const QByteArray name = key.mid(2);
            const auto gestalt = kernelGestalt(selector(name), files);
            const auto sysctl = hostSysctl(name, cpuidOf(cpuid), files);
            QCOMPARE(name + " = " + (gestalt ? QByteArray::number(*gestalt) : shown(name, sysctl)),
                     name + " = " + value);
            ++asked;
        } else if (!key.isEmpty()) {
            cpuid.insert(key, value);
        }
    }
    QVERIFY(asked > 0);
}

void LiveMachineTest::mounts()
{
    QFETCH(QList<QByteArray>, lines);
    const QByteArray text = lines.join('\n');
    bool isSparing = true;
    const auto isFolder = [&isSparing](const QByteArray& path) {
        isSparing = isSparing && !path.endsWith("unasked");
        return path != "/etc/hosts";
    };
    const QByteArray volumes = volumesAmong(parseMounts(text), isFolder).join('|');
    QVERIFY2(lines.contains("? " + volumes) && isSparing, volumes.constData());
    const QTemporaryDir root;
    for (const QByteArray& line : lines) {
        if (line.startsWith("^ ")) {
            const QList<QByteArray> parts = line.split(' ');
            QVERIFY(QDir(root.path()).mkpath(QFileInfo(QString::fromUtf8(parts[1])).path().mid(1)));
            QFile file(root.path() + QString::fromUtf8(parts[1]));
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(parts[2] + '\n') > 0);
        }
    }
    const QByteArray served =
        ServedMounts(text, KernelFiles(QFile::encodeName(root.path()))).points().join('|');
    QVERIFY2(served.isEmpty() ? !text.contains("~ ") : lines.contains("~ " + served), served.constData());
}

void LiveMachineTest::releases_data()
{
    QTest::addColumn<QVector<int>>("numbers");
    QTest::newRow("6.1.0-13-amd64") << QVector<int>{6, 1, 0};
    QTest::newRow("4.14.336") << QVector<int>{4, 14, 336};
    QTest::newRow("6.8-rc1") << QVector<int>{6, 8, 0};
    QTest::newRow("5.") << QVector<int>{5, 0, 0};
    QTest::newRow("2.6.32.71") << QVector<int>{2, 6, 32};
    QTest::newRow("6.99999999999.1") << QVector<int>{};
    QTest::newRow("custom-6.1") << QVector<int>{};
}

void LiveMachineTest::releases()
{
    const auto numbers = kernelRelease(QTest::currentDataTag());
    QTEST(numbers ? QVector<int>(numbers->begin(), numbers->end()) : QVector<int>(), "numbers");
}

void LiveMachineTest::agreesWithKernel()
{
#if defined(__x86_64__)
    const auto listed = [text = fileText("/proc/cpuinfo")](const char* key) {
        return valueOfKey(text, key, ':').value_or("missing");
    };
    QCOMPARE(liveAnswer("machdep.cpu.vendor"), listed("vendor_id"));
    QCOMPARE(liveAnswer("machdep.cpu.family"), listed("cpu family"));
    QCOMPARE(liveAnswer("machdep.cpu.model"), listed("model"));
    QCOMPARE(liveAnswer("machdep.cpu.stepping"), listed("stepping"));
    QCOMPARE(liveAnswer("sysa"), QByteArray("10"));
    QCOMPARE(liveAnswer("machdep.cpu.features").contains(" SSE4.2 "), listed("flags").contains(" sse4_2 "));
#endif
    const QByteArray memory = valueOfKey(fileText("/proc/meminfo"), "MemTotal", ':').value_or("0 kB");
    const qint64 kilobytes = memory.split(' ').first().toLongLong();
    QCOMPARE(liveAnswer("ramm"), QByteArray::number(kilobytes / 1024));
    const qint64 largest = Q_INT64_C(0x7fffffff);
    const QByteArray exactSize = QByteArray::number(kilobytes * 1024);
    QCOMPARE(liveAnswer("ram "), QByteArray::number(qMin(kilobytes * 1024, largest)));
    QCOMPARE(liveAnswer("lram"), kilobytes * 1024 <= largest ? exactSize : QByteArray("-"));
    QCOMPARE(liveAnswer("kern.version"), fileText("/proc/version").trimmed());
    // Linux has no equivalent of the first two.
    for (const char* name : {"lmem", "mmu ", "no.such.name", ""}) {
        QCOMPARE(liveAnswer(name), QByteArray("-"));
    }
}

void LiveMachineTest::agreesWithTools()
{
    QCOMPARE(liveAnswer("hw.machine"), output("uname -m"));
    QCOMPARE(liveAnswer("kern.osversion"), output("uname -v"));
    QVERIFY(output("uname -r").startsWith(liveAnswer("sys1") + '.' + liveAnswer("sys2")));
    QCOMPARE(liveAnswer("pgsz"), output("getconf PAGESIZE"));
    QCOMPARE(liveAnswer("hw.ncpu"), output("getconf _NPROCESSORS_CONF"));
    QCOMPARE(liveAnswer("hw.physicalcpu_max"),
             output("lscpu --parse=CORE,SOCKET | grep -v '#' | sort -u | wc -l"));

    if (!fileText("/proc/self/mountinfo").contains(" / r")) { // as in a chroot
        QSKIP("the root folder is no mount point here");
    }
    const QList<QByteArray> volumes = liveMachine()->volumes();
    QVERIFY(volumes.contains("/"));
    for (const QByteArray& volume : volumes) {
        const auto record = liveMachine()->statfs(volume);
        QVERIFY2(record && record->f_mntonname == volume, volume.constData());
        const QByteArray line = output("df -B1 --output=source,fstype,size '" + volume + "' | tail -1");
        QCOMPARE(line.simplified(), record->f_mntfromname + QByteArray(" ") + record->f_fstypename + ' ' +
                                        QByteArray::number(quint64(record->f_blocks * record->f_bsize)));
    }
    // A path on a file system that is no volume gets an answer, too.
    const auto processes = liveMachine()->statfs("/proc/self/status");
    QCOMPARE(QByteArray(processes->f_mntonname), QByteArray("/proc"));
    QVERIFY(processes->f_files == UINT64_MAX && processes->f_ffree == UINT64_MAX); // it counts none
}

void LiveMachineTest::loopMounted_data()
{
    QTest::addColumn<bool>("countsNodes");
    QTest::addColumn<bool>("isCaseSensitive");
    QTest::newRow("vfat") << false << false;
    QTest::newRow("ext4") << true << true;
}

void LiveMachineTest::loopMounted()
{
    const QTemporaryDir folder;
    const QByteArray point = QFileInfo(folder.path()).canonicalFilePath().toUtf8() + "/Größe 1";
    const QByteArray image = "'" + folder.path().toUtf8() + "/image'";
    const QByteArray type = QTest::currentDataTag();
    if (output("mkdir '" + point + "' && truncate -s 40M " + image + " && mkfs." + type + " " + image +
               " 2>&1 && mount -o loop " + image + " '" + point + "' && echo mounted") == QByteArray()) {
        QSKIP("the file system cannot be mounted here");
    }
    const auto volumes = liveMachine()->volumes();
    const auto record = liveMachine()->statfs(point);
    const auto sensitive = liveMachine()->caseSensitive(point);
    const auto preserving = liveMachine()->casePreserving(point);
    output("umount '" + point + "'");

    QVERIFY(volumes.contains(point) && record);
    QCOMPARE(QByteArray(record->f_mntonname), point);
    QCOMPARE(QByteArray(record->f_fstypename), type);
    QVERIFY(QByteArray(record->f_mntfromname).startsWith("/dev/loop"));
    QTEST(record->f_files != UINT64_MAX && record->f_ffree != UINT64_MAX, "countsNodes");
    QTEST(sensitive.result == 1, "isCaseSensitive");
    QCOMPARE(preserving.result, 1L);
    QVERIFY(!liveMachine()->volumes().contains(point));
}

void LiveMachineTest::missingPath()
{
    const QByteArray missing = "/no/such/path";
    QVERIFY(!liveMachine()->statfs(missing));
    QCOMPARE(liveMachine()->caseSensitive(missing).result, -1L);
    QCOMPARE(liveMachine()->caseSensitive(missing).error, ENOENT);
    QVERIFY(!liveMachine()->deviceFileExists(missing));
    QVERIFY(liveMachine()->deviceFileExists("/dev/null"));
}

QTEST_GUILESS_MAIN(LiveMachineTest)
#include "liveMachineTest.moc"
