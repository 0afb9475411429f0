#include "recordingSupport.h"
#include "reportGenerator.h"
#include "systeminfo/norvexReport.h"
#include "systeminfo/norvexSystemInfo.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using namespace norvex::SystemInfo;

namespace {

const QString separatorLine = separator();
const QString macBanner = "############ Macintosh specific section ###########\n";
const QString windowsBanner = "############ Windows specific section ###########\n";
const QString qtBanner = "###### System informations retrieved using Qt #######\n";
const QString environment = "System environemnt (QProcess::systemEnvironment()):\n";
const QString openGL = "#### QGLFormat #### \nhasOpenGL         0\n";

QString fileText(const QString& path)
{
    return QString::fromUtf8(contentsOf(path));
}

/// Reports of recorded machines, and those of the reader's tests.
QStringList reportFiles()
{
    QStringList files;
    for (const QString& folder : {recordingFolder().path(), QString(NORVEX_TEST_DATA "/reports")}) {
        for (const QFileInfo& file : QDir(folder).entryInfoList({"*.txt"}, QDir::Files, QDir::Name)) {
            files += file.filePath();
        }
    }
    return files;
}

/// A row of a table under a name of one line.
QTestData& row(QString name)
{
    return QTest::addRow("%s", qPrintable(name.replace('\n', ' ')));
}

QString joined(const QVector<CReportItem>& items)
{
    QString text;
    for (const CReportItem& item : items) {
        text += item.text();
    }
    return text;
}

/// What does not hold of a text as a report; empty when all does.
QString fault(const QString& text)
{
    const CReport report = CReport::fromText(text);
    if (report.text() != text || joined(report.content()) != text) {
        return "the text is another one";
    }
    for (const CReportSection& section : report.sections()) {
        if (!section.text().startsWith(section.heading()) ||
            !section.text().endsWith(joined(section.content()))) {
            return "a section has other lines";
        }
        for (const CReportBlock& block : section.blocks()) {
            if (joined(block.content()) != block.text()) {
                return "a block has other lines";
            }
        }
    }
    QString message = "none yet";
    const QByteArray json = report.toJson(&message).toJson(QJsonDocument::Compact);
    if (!message.isEmpty()) {
        return message;
    }
    const CReport again = CReport::fromJson(QJsonDocument::fromJson(json), &message);
    if (!message.isEmpty() || again.text() != text) {
        return "JSON gives another text: " + message;
    }
    return report.compare(again).isEmpty() ? QString() : "the report differs from itself";
}

/// "kind path" of each difference, with what else it says.
QString shown(const QVector<CReportDifference>& differences)
{
    const char* const kinds[] = {"+", "-", "*", ">"};
    QStringList lines;
    for (const CReportDifference& difference : differences) {
        QString line = QString(kinds[difference.kind()]) + difference.path();
        if (difference.kind() == CReportDifference::Changed) {
            line += " " + difference.oldValue() + "|" + difference.newValue();
        } else if (difference.kind() == CReportDifference::Moved &&
                   difference.oldPath() != difference.path()) {
            line += " from " + difference.oldPath();
        }
        lines += difference.isVolatile() ? line + " ~" : line;
    }
    return lines.join("; ");
}

} // namespace

class ReportDocumentTest : public QObject
{
    Q_OBJECT

private slots:
    void everySectionIsRecognised();
    void files_data();
    void files();
    void wholeReport_data();
    void wholeReport();
    void cleanup() { norvex::setMachine(nullptr); }
    void generated();
    void cuts();
    void longTexts_data();
    void longTexts();
    void sections_data();
    void sections();
    void values_data();
    void values();
    void numbers_data();
    void numbers();
    void json();
    void jsonText_data();
    void jsonText();
    void jsonFailures_data();
    void jsonFailures();
    void limits();
    void compare_data();
    void compare();
    void nullObjects();
};

/// The texts of the functions themselves, alone and one behind the other without separators.
void ReportDocumentTest::everySectionIsRecognised()
{
    norvex::setMachine(norvex::loadRecording(NORVEX_TEST_DATA "/recordings/report-complete.plist", nullptr));
    QString all;
    QStringList names;
    for (const SectionInfo& section : norvex::SystemInfo::sections()) {
        const QString text = section.text();
        QVERIFY2(!text.isEmpty(), section.name);
        const QVector<CReportSection> found = CReport::fromText(text).sections();
        QCOMPARE(found.size(), 1);
        QCOMPARE(found.first().name(), QString(section.name));
        QVERIFY(found.first().isKnown());
        QCOMPARE(found.first().half(), QString(section.half == ReportHalf::Qt ? "qt" : "macintosh"));
        QCOMPARE(found.first().text(), text);
        // A section without a heading may begin with any of its lines: the others may be missing.
        for (const CReportItem& entry : found.first().content()) {
            if (found.first().heading().isEmpty()) {
                QCOMPARE(CReport::fromText(entry.text()).sections().value(0).name(), QString(section.name));
            }
        }
        all += text;
        names += section.name;
    }
    QStringList found;
    for (const CReportSection& section : CReport::fromText(all).sections()) {
        found += section.name();
    }
    QCOMPARE(found, names);
}

void ReportDocumentTest::files_data()
{
    QTest::addColumn<QString>("text");
    for (const QString& file : reportFiles()) {
        QTest::addRow("%s", qPrintable(QFileInfo(file).fileName())) << fileText(file);
    }
}

void ReportDocumentTest::files()
{
    QFETCH(QString, text);
    QCOMPARE(fault(text), QString());
    QCOMPARE(fault(QString(text).replace("\n", "\r\n")), QString());
    // Every line of a recorded machine's report is in a known section.
    const CReport report = CReport::fromText(text);
    for (const CReportItem& item : report.content()) {
        if (!item.isNull() && item.type() == CReportItem::Section && !text.contains("Windows specific")) {
            QVERIFY2(item.toSection().isKnown(), qPrintable(item.path()));
        }
        QVERIFY(item.type() != CReportItem::Lines);
    }
}

void ReportDocumentTest::wholeReport_data()
{
    QTest::addColumn<QString>("recording");
    QTest::newRow("this machine") << "";
    QTest::newRow("a recorded one") << NORVEX_TEST_DATA "/recordings/report-complete.plist";
}

/// Each path leads to what has it.
void ReportDocumentTest::wholeReport()
{
    QFETCH(QString, recording);
    if (!recording.isEmpty()) {
        norvex::setMachine(norvex::loadRecording(recording, nullptr));
    }
    const QString text = allInfos(false);
    QCOMPARE(fault(text), QString());
    const CReport report = CReport::fromText(text);
    QVERIFY(recording.isEmpty() || report.sections().size() == norvex::SystemInfo::sections().size());
    for (const CReportSection& section : report.sections()) {
        QVERIFY(section.isKnown());
        QCOMPARE(report.item(section.path()).text(), section.text());
        for (const CReportItem& item : section.content()) {
            if (item.type() != CReportItem::Lines) {
                QCOMPARE(report.item(item.path()).text(), item.text());
            }
            for (const CReportItem& inner : item.toBlock().content()) {
                QVERIFY(inner.path().isEmpty() || report.item(inner.path()).text() == inner.text());
            }
        }
    }
}

void ReportDocumentTest::generated()
{
    const int count = qMax(2000, qEnvironmentVariableIntValue("NORVEX_REPORTS"));
    ReportGenerator generator;
    for (int i = 0; i < count; ++i) {
        const QString text = generator.next();
        const QString found = fault(text);
        QVERIFY2(found.isEmpty(), qPrintable(found + ":\n" + text));
    }
}

void ReportDocumentTest::cuts()
{
    const QString text = fileText(NORVEX_TEST_DATA "/reports/macintosh.txt");
    QVERIFY(text.size() > 4000);
    for (int length = 0; length <= text.size(); ++length) {
        const QString found = fault(text.left(length));
        QVERIFY2(found.isEmpty(), qPrintable(QString("%1: %2").arg(length).arg(found)));
    }
}

void ReportDocumentTest::longTexts_data()
{
    QTest::addColumn<QString>("text");
    // Texts that would take minutes if any of the time grew with the square of the length.
    const auto add = [](const char* name, const QString& start, const QString& text) {
        QTest::newRow(name) << start + text.repeated(4000000 / text.size());
    };
    add("line feeds", "", "\n");
    add("hyphens", environment, "-");
    add("separators", environment, separatorLine);
    add("openGL", environment, separatorLine + openGL);
    add("headings", "", "Volumes\nModel:\n");
    add("almost a separator", environment, separatorLine.left(71) + "\n" + separatorLine.trimmed() + "x\n");
    add("variables", environment, "  A=\n");
    add("one name", "Kernel information:\n", "a: 1\n");
    add("numbered names", "Kernel information:\n", "a: 1\na#2: 1\n");
    add("devices", "AHCI disk (from IOKit)\n", "#1\n");
    add("unclosed", "Attached USB devices (from IOKit):\n", "Device name: ''\n");
    add("usb", "Attached USB devices (from IOKit):\n",
        "Vendor ID: 0x1\nProduct ID: 0x1\nLocation ID: 0x1\n" + QString(40, '_') + "\n");
    add("addresses", "Network Interfaces Info\n", QString(55, '_') + "\na\nAddresses:\n1\n");
    add("one line", "Model: ", "x:");
    add("surrogates", "Model: ", QChar(0xd800));
}

void ReportDocumentTest::longTexts()
{
    QFETCH(QString, text);
    const CReport report = CReport::fromText(text);
    QCOMPARE(report.text(), text);
    QVERIFY(!report.sections().isEmpty() || text.startsWith('\n'));
    // JSON takes a million lines, and a while.
    text.truncate(qMin(text.size(), 400000));
    QVERIFY(fault(text).isEmpty());
}

void ReportDocumentTest::sections_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char* name, const QString& text, const QString& expected) {
        QTest::newRow(name) << text << expected;
    };
    row("nothing", "", "");
    row("banners alone", macBanner + qtBanner, "");
    row("two of a group", "MacOS version: \nKernel information:\n" + separatorLine,
        "macintosh osVersion, macintosh kernelInfo");
    row("the group's first is missing", separatorLine + "Byte order: 1\n" + separatorLine,
        "macintosh cpuInfo");
    row("a value like a heading", "FTDI driver\nVolumes\n" + separatorLine + "QLocale\n",
        "macintosh checkFtdiDriver, qt qtLocale");
    row("a value like a later heading", "Volumes\n/a\nFTDI driver\n" + separatorLine,
        "macintosh listFileSystemVolumesInfo");
    row("the same without a separator", "FTDI driver\nVolumes\n",
        "macintosh checkFtdiDriver, macintosh listFileSystemVolumesInfo");
    row("blanks at the ends lost", "#### QGLFormat ####\n" + separatorLine.trimmed() + "  \nQScreen \n",
        "qt openGL, qt qtScreens");
    row("unknown", macBanner + "New things:\na: 1\n" + separatorLine, "macintosh New things");
    row("unknown without a heading", windowsBanner + "Windows version: 10\nFree: 1\n",
        "windows Windows version");
    row("no Macintosh sections on Windows",
        windowsBanner + "Volumes\n" + separatorLine + qtBanner + "QLocale\n", "windows Volumes, qt qtLocale");
    row("before all banners", "Hello,\nsee below\n\n" + macBanner, " Hello,");
    row("environment to the last separator",
        environment + "  A=1\n" + separatorLine + "QLocale\n  B=2\n" + separatorLine + "End\n",
        "qt qtSystemEnvironment,  End");
    row("environment to OpenGL",
        environment + "  A=1\n" + separatorLine + openGL + "  B=2\n" + separatorLine + openGL + separatorLine,
        "qt qtSystemEnvironment, qt openGL");
    row("OpenGL in a variable",
        environment + "  A=1\n" + separatorLine + "#### QGLFormat #### \nsecret\n" + separatorLine,
        "qt qtSystemEnvironment");
    row("variables behind OpenGL",
        environment + "  A=1\n" + separatorLine + openGL + "  B=2\n" + separatorLine,
        "qt qtSystemEnvironment");
    row("a separator in an environment alone", environment + "  A=1\n" + separatorLine + "2\n  B=3\n",
        "qt qtSystemEnvironment");
    row("environment and OpenGL alone", environment + "  A=1\n" + openGL,
        "qt qtSystemEnvironment, qt openGL");
    row("cut behind OpenGL's heading", environment + "  A=1\n" + separatorLine + "#### QGLFormat #### \nhas",
        "qt qtSystemEnvironment, qt openGL");
}

void ReportDocumentTest::sections()
{
    QFETCH(QString, text);
    QStringList found;
    for (const CReportSection& section : CReport::fromText(text).sections()) {
        found += section.half() + " " + section.name();
    }
    QTEST(found.join(", "), "expected");
    QCOMPARE(fault(text), QString());
}

void ReportDocumentTest::values_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");
    const auto row = [](const QString& text, const QString& path, const QString& expected) {
        ::row(path) << text << path << expected;
    };
    const QString disks =
        "AHCI disk (from IOKit)\n#1\n  Model: a\n#2\n  Serial Number: S1  \n  BSD Name: disk0\n#3\n"
        "  Serial Number:   \n  BSD Name: disk1\n#4\n  Model: a\n#5\n  NCQ: Yes\n";
    row("CPU type: 7 = x86 \n", "cpuInfo/CPU type", "7 = x86");
    row("CPU family: 1\nCPU family: 6\n", "cpuInfo/CPU family#2", "6");
    row("CPU type: 7\n", "cpuInfo", "");
    row("CPU type: 7\n", "cpuInfo/CPU", "");
    row("Kernel information:\na/b[c]\\d: 1\n", "kernelInfo/a\\/b\\[c\\]\\\\d", "1");
    row("Kernel information:\na#2: 1\na: 2\na: 3\n", "kernelInfo/a#3", "3");
    row("FTDI driver\nA: 1\nFTDI driver\nA: 2\n", "checkFtdiDriver#2/A", "2");
    row(disks, "ioKitSataDiskDevices[a]/Model", "a");
    row(disks, "ioKitSataDiskDevices[S1]/BSD Name", "disk0");
    row(disks, "ioKitSataDiskDevices[disk1]/BSD Name", "disk1");
    row(disks, "ioKitSataDiskDevices[a#2]/Model", "a");
    row(disks, "ioKitSataDiskDevices[5]/NCQ", "Yes");
    row("Volumes\n/Volumes/a\n  Free: 1\n/Volumes/b]: c\n  Free: 2\n",
        "listFileSystemVolumesInfo[/Volumes/b\\]: c]/Free", "2");
    row("Volumes\n/a\n  Free: 1\n", "listFileSystemVolumesInfo[\\/a]/Free", "1");
    row("Ethernet interfaces (from IOKit)\n#1\n  Model: x\n  MAC address: 00:11\n",
        "ioKitEthernetDevices[00:11]/Model", "x");
    row("Graphics card info (from IOKit)\nCard #1\n   Model:      ???\n", "ioKitGraphicsCards[1]/Model",
        "???");
    row("Attached USB devices (from IOKit):\nDevice name: 'a'\nVendor ID: 0x05ac  = b\nProduct ID:  0x8290\n"
        "Location ID: 0x14300000\n",
        "ioKitUsbDevices[0x05ac:0x8290@0x14300000]/Device name", "a");
    row("RS232 Serial Devices Info (from IOKit)\nlost\n" + QString(40, '_') +
            "\nDevice Name: '/dev/a'\nchannel: ''0'\n",
        "ioKitGetRs232SerialDevices[/dev/a]/channel", "'0");
    row("QScreen\n#1\n  Name: a:b\n  Physical DPI x: 1  y: 2\n", "qtScreens[a:b]/Physical DPI", "x: 1  y: 2");
    row("QCoreApplication:\nLibrary Paths:        a\n                      b c\n  d: e\n",
        "qtCoreApplication/Library Paths", "a\nb c");
    row("QPrinterInfo\nAvailable printers:\n   a: b\n   c    [default printer]\n",
        "qtPrinterInfo/Available printers", "a: b\nc    [default printer]");
    row("QPrinterInfo\nAvailable printers:\n    <None>\n", "qtPrinterInfo/Available printers", "");
    row("Network Interfaces Info\n" + QString(55, '_') +
            "\nen0: 1\nAddresses: IP , netmask , broadcast\n::1 , ff:: , \n1\n",
        "network[en0: 1]/Addresses", "::1 , ff:: ,\n1");
    row("Qt Global\nPointer size QSysInfo::Wordsize   64bits\n", "qtGlobal/Pointer size QSysInfo::Wordsize",
        "64bits");
    row("QDesktopServices\nHome [displayName]         a\n", "qtDesktopServices/Home \\[displayName\\]", "a");
    row("#### QGLFormat #### \nglGetString(GL_VENDOR)   = a: b\n", "openGL/glGetString(GL_VENDOR)", "a: b");
    row(environment + "  A= a \nB=2\n\n  c d=3\n  E==\n", "qtSystemEnvironment/A", " a \nB=2\n\n  c d=3");
    row(environment + "  A=1\r\n  BASH_FUNC_f%%=() {\r\n}\r\n", "qtSystemEnvironment[BASH_FUNC_f%%]",
        "() {\r\n}");
    row(windowsBanner + "Processor information:\n  Number: 8\r\n12:30:00 no: label\n",
        "Processor information/Number", "8");
}

void ReportDocumentTest::values()
{
    QFETCH(QString, text);
    QFETCH(QString, path);
    QTEST(CReport::fromText(text).value(path), "expected");
    QCOMPARE(fault(text), QString());
}

void ReportDocumentTest::numbers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    const auto row = [](const QString& text, const QString& expected) { ::row(text) << text << expected; };
    const QString disk = "AHCI disk (from IOKit)\n#1\n  Size: ";
    row("L2 Cache size: 256.0 KByte", "262144 byte");
    row("Physical RAM size: 1.9 GByte", "2040109465 byte");
    row("Physical RAM size: 8388608.0 GByte", "9007199254740992 byte");
    row("Physical RAM size: 8388608.1 GByte", "");
    row("Physical RAM size: 99999999999999999999.9 GByte", "");
    row("Physical RAM size: 3 Byte", "3 byte");
    row("Physical RAM size: 3 Bytes", "");
    row("Physical RAM size: -3 Byte", "");
    row("Physical RAM size: about 3 Byte", "");
    row("Physical RAM size: 1.5 KB", "");
    row("MMU type: 3 Byte", "");
    row("Bus clock speed: 100.0 MHz", "100000000 hertz");
    row("Processor clock speed: 2.300 GHz", "2300000000 hertz");
    row(disk + "0.9 KB", "921 byte");
    row(disk + "1.5 MB", "1500000 byte");
    row(disk + "500.2 GB", "500200000000 byte");
    row("QScreen\n#1\n  RefreshRate: 59.94 Hz", "59 hertz");
    row("QScreen\n#1\n  PhysicalSize (width x height): 488mm x 274.5mm  19.2126inch x 1e-05inch",
        "488 millimetre, 274 millimetre, 19 inch, 0 inch");
    row("QScreen\n#1\n                diagonal: 1.2345e+06mm 22.0339inch", "1234500 millimetre, 22 inch");
    row("QScreen\n#1\n  diagonal: 1e+99mm 22.0339inch", "");
    row("Attached USB devices (from IOKit):\nSpeed:       0x0 = low (up to 1.5Mbit/s)",
        "1500000 bit a second");
    row("Attached USB devices (from IOKit):\nSpeed:       0x9 = unknown", "");
}

void ReportDocumentTest::numbers()
{
    QFETCH(QString, text);
    QStringList found;
    const CReportSection section = CReport::fromText(text).sections().value(0);
    for (const CReportItem& item : section.content() + section.blocks().value(0).content()) {
        const CReportEntry entry = item.toEntry();
        const QVector<qint64> numbers = entry.numbers();
        QCOMPARE(entry.units().size(), numbers.size());
        for (int i = 0; i < numbers.size(); ++i) {
            found += QString("%1 %2").arg(numbers.at(i)).arg(entry.units().at(i));
        }
    }
    QTEST(found.join(", "), "expected");
}

/// A document as a whole, member by member.
void ReportDocumentTest::json()
{
    const QString text = macBanner + "\n\nMacOS version: \r\nKernel information:\r\n" + separatorLine +
                         "L2 Cache size: 256.0 KByte\n" + separatorLine + "Volumes\n/a\n" + separatorLine +
                         "QScreen\n#1\n" + "  diagonal: 254mm 10inch\n" + "  x\n  y\n  Name: a";
    const QByteArray expected =
        R"({"content":[{"banner":"macintosh","text":"############ Macintosh specific section ###########"},)"
        R"({"line":"\n"},)"
        R"({"content":[{"end":"\r\n","label":"MacOS version","text":"MacOS version: ","value":""}],)"
        R"("half":"macintosh","section":"osVersion"},)"
        R"({"content":[],"end":"\r\n","half":"macintosh","heading":"Kernel information:","section":"kernelInfo"},)"
        R"({"separator":"------------------------------------------------------------------------"},)"
        R"({"content":[{"label":"L2 Cache size","number":262144,"text":"L2 Cache size: 256.0 KByte","unit":"byte",)"
        R"("value":"256.0 KByte"}],"half":"macintosh","section":"cpuInfo"},)"
        R"({"separator":"------------------------------------------------------------------------"},)"
        R"({"content":[{"block":"/a","content":[{"line":"/a"}]}],"half":"macintosh","heading":"Volumes",)"
        R"("section":"listFileSystemVolumesInfo"},)"
        R"({"separator":"------------------------------------------------------------------------"},)"
        R"({"content":[{"block":"a","content":[{"line":"#1"},{"label":"diagonal","number":[254,10],)"
        R"("text":"  diagonal: 254mm 10inch","unit":["millimetre","inch"],"value":"254mm 10inch"},)"
        R"({"line":"  x\n  y"},{"end":"","label":"Name","text":"  Name: a","value":"a"}]}],)"
        R"("half":"qt","heading":"QScreen","section":"qtScreens"}],"format":1})";
    QCOMPARE(CReport::fromText(text).toJson().toJson(QJsonDocument::Compact), expected);
}

void ReportDocumentTest::jsonText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("expected");
    const QChar high(0xd83d);
    const QChar low(0xde00);
    QTest::newRow("zero") << QString("a") + QChar(0) + "b" << QByteArray(R"("heading":"a\u0000b")");
    QTest::newRow("pair") << QString("a") + high + low << QByteArray("\"heading\":\"a\xf0\x9f\x98\x80\"");
    QTest::newRow("lone") << QString("a") + low + high << QByteArray("\"utf16\":\"0061de00d83d\"");
    QTest::newRow("replacement") << QString(QChar(QChar::ReplacementCharacter))
                                 << QByteArray("\"heading\":\"\xef\xbf\xbd\"");
    QTest::newRow("label") << "Model: \nModel" + QString(high) + ": x"
                           << QByteArray("\"label\":\"Model\xef\xbf\xbd\"");
    QTest::newRow("in CR LF") << QString(high) + "\r\n" << QByteArray("\"end\":\"\\r\\n\"");
    QString all;
    for (uint character = 0; character < 0xd800; ++character) {
        all += QChar(character);
    }
    for (uint character = 0xe000; character < 0x10000; ++character) {
        all += QChar(character);
    }
    QTest::newRow("all but surrogates") << all << QByteArray("\\\"");
}

void ReportDocumentTest::jsonText()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, expected);
    const QByteArray json = CReport::fromText(text).toJson().toJson(QJsonDocument::Compact);
    QVERIFY2(json.contains(expected), json.left(300).constData());
    QCOMPARE(fault(text), QString());
}

void ReportDocumentTest::jsonFailures_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("expected");
    const auto row = [](const QByteArray& json, const QString& expected) {
        ::row(json) << json << "This is no report: " + expected + ".";
    };
    const auto content = [](const QByteArray& items) { return R"({"format":1,"content":[)" + items + "]}"; };
    row("", "document is no object");
    row("[]", "document is no object");
    row("{}", "document has another format than 1");
    row(R"({"format":2,"content":[]})", "document has another format than 1");
    row(R"({"format":"1","content":[]})", "document has another format than 1");
    row(R"({"format":1})", "content is no list");
    row(content("1"), "content[0] is no object");
    row(content(R"({"line":"a"},{})"), "content[1] is no banner, section, separator or line");
    row(content(R"({"line":1})"), "content[0].line is no text");
    row(content(R"({"banner":"qt"})"), "content[0].text is no text");
    row(content(R"({"section":"a"})"), "content[0].content is no list");
    row(content(R"({"section":"a","content":[{"separator":"-"}]})"),
        "content[0].content[0] is no entry, line, or block of a section");
    row(content(R"({"section":"a","content":[{"block":"a","content":[{"block":"b","content":[]}]}]})"),
        "content[0].content[0].content[0] is no entry, line, or block of a section");
    row(content(R"({"line":"a","end":"x"})"), "content[0].end is no line end");
    row(content(R"({"line":"a","end":1})"), "content[0].end is no line end");
    row(content(R"({"line":"a","utf16":"0062"})"), "content[0].utf16 does not spell the text");
    row(content(R"({"line":"a","utf16":"006"})"), "content[0].utf16 does not spell the text");
}

void ReportDocumentTest::jsonFailures()
{
    QFETCH(QByteArray, json);
    QString message;
    QVERIFY(CReport::fromJson(QJsonDocument::fromJson(json), &message).isNull());
    QTEST(message, "expected");
}

void ReportDocumentTest::limits()
{
    constexpr int mostCharacters = 64 * 1024 * 1024;
    constexpr int mostLines = 1000000;
    const QString line(1024, 'x');
    QString message;

    QString text = QString(mostCharacters, QChar('x'));
    QVERIFY(!CReport::fromText(text).toJson(&message).isNull());
    QCOMPARE(message, QString());
    text += 'x';
    QVERIFY(CReport::fromText(text).toJson(&message).isNull());
    QCOMPARE(message, QString("The report has more than 67108864 characters."));

    text = QString(mostLines + 1, QChar('\n'));
    QVERIFY(CReport::fromText(text).toJson(&message).isNull());
    QCOMPARE(message, QString("The report has more than 1000000 lines."));
    text.chop(1);
    QVERIFY(!CReport::fromText(text).toJson(&message).isNull());

    const QJsonObject item{{"line", line.repeated(mostCharacters / 1024)}, {"end", ""}};
    QVERIFY(
        !CReport::fromJson(QJsonDocument(QJsonObject{{"format", 1}, {"content", QJsonArray{item}}}), &message)
             .isNull());
    const QJsonObject further{{"line", ""}};
    QVERIFY(CReport::fromJson(
                QJsonDocument(QJsonObject{{"format", 1}, {"content", QJsonArray{item, further}}}), &message)
                .isNull());
    QCOMPARE(message, QString("The report has more than 67108864 characters."));
}

void ReportDocumentTest::compare_data()
{
    QTest::addColumn<QString>("older");
    QTest::addColumn<QString>("newer");
    QTest::addColumn<QString>("expected");
    const auto row = [](const QString& older, const QString& newer, const QString& expected) {
        ::row(expected) << older << newer << expected;
    };
    const auto usb = [](const QString& location, const QString& name) {
        return "Device name: '" + name +
               "'\nVendor ID: 0x05ac \nProduct ID:  0x8290\nLocation ID: " + location + "\n" +
               QString(40, '_') + "\n";
    };
    const QString usbHeading = "Attached USB devices (from IOKit):\n";
    const QString en0 = QString(55, '_') + "\nen0\nStatus: Up\n";
    const QString en1 = QString(55, '_') + "\nen1\nStatus: Up\n";
    row("Model: a\n", "Model: a  \r\n", "");
    row("Model: a\n", macBanner + "Model: a\n" + separatorLine, "");
    row("Model: a\n", "Model: b\n", "*macModel/Model a|b");
    row("Model: a\n", "", "-macModel");
    row("", "Model: a\nQLocale\n", "+macModel; +qtLocale");
    row("MMU type: 1\nModel: a\n", "Model: a\nMMU type: 1\n", ">macModel");
    row("Kernel information:\nBoottime: 1\n", "Kernel information:\nBoottime: 2\n",
        "*kernelInfo/Boottime 1|2 ~");
    row("QCoreApplication:\nApplication PID: 1\n", "QCoreApplication:\n",
        "-qtCoreApplication/Application PID ~");
    row("Local Date and Time: 1\nActiveBias: 0\n", "Local Date and Time: 2\nActiveBias: 60\n",
        "*qtDateTime/Local Date and Time 1|2 ~; *qtDateTime/ActiveBias 0|60");
    row("Volumes\n/a\n  Free: 1\n  Size: 1\n/b\n", "Volumes\n/a\n  Free: 2\n  Size: 2\n/c\n",
        "-listFileSystemVolumesInfo[/b]; *listFileSystemVolumesInfo[/a]/Free 1|2 ~; "
        "*listFileSystemVolumesInfo[/a]/Size 1|2; +listFileSystemVolumesInfo[/c]");
    row("CPU family: 1\nCPU family: 6\n", "CPU family: 1\nCPU family: 7\n", "*cpuInfo/CPU family#2 6|7");
    row(environment + "  A=1\n  B=2\n  C=3\n", environment + "  C=3\n  A=1\n  B=4\n",
        ">qtSystemEnvironment/C ~; *qtSystemEnvironment/B 2|4");
    row(environment + "  A=1\n2\n", environment + "  A=1\n3\n", "*qtSystemEnvironment/A 1\n2|1\n3");
    row("FTDI driver\nNo driver installed.\n", "FTDI driver\nCFBundleVersion: 1\n",
        "+checkFtdiDriver/CFBundleVersion; *checkFtdiDriver No driver installed.|");
    row("QPrinterInfo\nAvailable printers:\n   a\n", "QPrinterInfo\nAvailable printers:\n   a\n   b\n",
        "*qtPrinterInfo/Available printers a|a\nb");
    row("AHCI disk (from IOKit)\n#1\n  Model: a\n",
        "AHCI disk (from IOKit)\n#1\n  Model: b\n#2\n  Model: a\n", "+ioKitSataDiskDevices[b]");
    row("Network Interfaces Info\n" + en0 + en1, "Network Interfaces Info\n" + en1 + en0, ">network[en1]");
    row(usbHeading + usb("0x1", "a"), usbHeading + usb("0x2", "b"),
        ">ioKitUsbDevices[0x05ac:0x8290@0x2] from ioKitUsbDevices[0x05ac:0x8290@0x1]; "
        "*ioKitUsbDevices[0x05ac:0x8290@0x2]/Device name a|b");
    row(usbHeading + usb("0x1", "a") + usb("0x2", "a"), usbHeading + usb("0x2", "a") + usb("0x3", "a"),
        ">ioKitUsbDevices[0x05ac:0x8290@0x3] from ioKitUsbDevices[0x05ac:0x8290@0x1]");
    row(usbHeading + usb("0x1", "a") + usb("0x2", "a"), usbHeading + usb("0x3", "a"),
        "-ioKitUsbDevices[0x05ac:0x8290@0x2]; >ioKitUsbDevices[0x05ac:0x8290@0x3] from "
        "ioKitUsbDevices[0x05ac:0x8290@0x1]");
}

void ReportDocumentTest::compare()
{
    QFETCH(QString, older);
    QFETCH(QString, newer);
    QTEST(shown(CReport::fromText(older).compare(CReport::fromText(newer))), "expected");
}

void ReportDocumentTest::nullObjects()
{
    QVERIFY(CReport().isNull() && !CReport::fromText("").isNull());
    QCOMPARE(CReport().text() + CReportItem().text() + CReportSection().name() + CReportBlock().name(),
             QString());
    QCOMPARE(CReportEntry().value() + CReportEntry().label() + CReportSection().heading(), QString());
    QVERIFY(CReport().content().isEmpty() && CReportSection().content().isEmpty() &&
            CReportEntry().values().isEmpty());
    QVERIFY(CReport().item("a").isNull() && CReport().section("a").isNull());
    QVERIFY(CReport().compare(CReport()).isEmpty());
    QCOMPARE(shown(CReport().compare(CReport::fromText("Model: a"))), QString("+macModel"));
    QCOMPARE(CReport().toJson().toJson(QJsonDocument::Compact), QByteArray(R"({"content":[],"format":1})"));
    // Items outlive their report.
    const CReportSection section = CReport::fromText("Model: a").section("macModel");
    QCOMPARE(section.entry("Model").value(), QString("a"));
}

QTEST_MAIN(ReportDocumentTest)
#include "reportDocumentTest.moc"
