// The comparison of macLiveTest, on a recorded machine.

#include "tests/macTools.h"

#include <QFile>
#include <QtTest>

namespace {

QByteArray data(const char* name)
{
    QFile file(QStringLiteral(NORVEX_TEST_DATA "/") + QLatin1String(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The line with another character in place of the first one of its value.
QString spoilt(QString line)
{
    int index = line.indexOf(':') + 1;
    while (QString(" 0x'").contains(line.at(index)) && index < line.size() - 1) {
        ++index;
    }
    line[index] = line[index] == QLatin1Char('7') ? '8' : '7';
    return line;
}

} // namespace

class MacToolsTest : public QObject
{
    Q_OBJECT

private:
    const QString report_ = QString::fromUtf8(data("recordings/report-complete.txt"));
    const macTools::Outputs outputs_ = macTools::readTranscript(data("macTools/report-complete.txt"));

private slots:
    void agrees()
    {
        const macTools::Comparison result = macTools::compare(report_, outputs_);
        QCOMPARE(result.differences, QStringList());
        QCOMPARE(result.compared.size(), 103);
        QStringList labels;
        for (const QString& line : result.notCompared) {
            labels << line.section(QLatin1Char(':'), 0, 0).trimmed();
        }
        const QStringList expected = {"Kernel information",
                                      "Mac System Architecture",
                                      "Architecture of executed binary",
                                      "Low memory area size",
                                      "Memory Parity",
                                      "MMU type",
                                      "/Volumes/Macintosh HD",
                                      "Block size",
                                      "Blocks free",
                                      "Blocks avail",
                                      "File nodes total",
                                      "File nodes free",
                                      "Size",
                                      "Free",
                                      "Avail",
                                      "USB Vendor ID",
                                      "USB Product ID",
                                      "FTDI driver",
                                      "CFBundleVersion",
                                      "CFBundleName",
                                      "Bonjour version",
                                      "Default e-mail app"};
        QCOMPARE(labels, expected);
    }

    void eachLineCounts()
    {
        for (const QString& line : macTools::compare(report_, outputs_).compared) {
            for (const QString& other : {spoilt(line) + "\n", QString()}) {
                const int index = report_.indexOf("\n" + line + "\n") + 1;
                const QString changed = QString(report_).replace(index, line.size() + 1, other);
                QVERIFY2(!macTools::compare(changed, outputs_).differences.isEmpty(),
                         qPrintable(line + " -> " + other));
            }
        }
    }

    void eachToolCounts()
    {
        for (const QString& command : macTools::commands(report_)) {
            QVERIFY2(outputs_.contains(command), qPrintable(command));
            macTools::Outputs others = outputs_;
            others[command].replace("fd:fe:ff", "fd:fe:fe");
            if (!command.startsWith("networksetup")) {
                others[command].clear();
            }
            const bool isSame = others[command] == outputs_[command]; // nothing of this class
            QVERIFY2(macTools::compare(report_, others).differences.isEmpty() == isSame, qPrintable(command));
        }
    }

    void devices()
    {
        // Cards in another order are the same; one that only the report has, or only ioreg, is not.
        const QString cards = report_.section("Graphics card info (from IOKit)\n", 1).section("---", 0, 0);
        const QString list = "ioreg -a -l -r -d 1 -c IOPCIDevice";
        const QString second = cards.mid(cards.indexOf("Card #2"));
        const auto differences = [&](const QString& other) {
            return macTools::compare(QString(report_).replace(cards, other), outputs_).differences.size();
        };
        QCOMPARE(differences(second + cards.left(cards.size() - second.size())), 0);
        QCOMPARE(differences(cards + second), 1);
        QCOMPARE(differences(second), 2);
    }

    void volumes()
    {
        const QString other =
            QString(report_)
                .replace("case preserving", "case sensitive")
                .replace("disk1s1\n  Type:             apfs", "disk1s1\n  Type:             hfs");
        macTools::Outputs outputs = outputs_;
        QByteArray& disk = outputs["diskutil info -plist /"];
        disk.replace("<string>apfs<", "<string>hfs<")
            .replace("<string>APFS<", "<string>Case-sensitive Journaled HFS+<");
        QCOMPARE(macTools::compare(other, outputs).differences, QStringList());
        // diskutil knows nothing of a volume of the network.
        const QString remote = QString(report_).replace("/dev/disk1s1", "//server/share");
        disk.clear();
        QCOMPARE(macTools::compare(remote, outputs).differences, QStringList());
    }

    void transcript() { QCOMPARE(macTools::readTranscript(macTools::writeTranscript(outputs_)), outputs_); }
};

QTEST_APPLESS_MAIN(MacToolsTest)

#include "macToolsTest.moc"
