// Recordings made of recorded machines and of this host, as they are and anonymous.

#include "tests/recordingSupport.h"

#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/mac/platform/failureInjection.h"
#include "systeminfo/privacy/replacements.h"
#include "tools/anonymise/anonymiser.h"
#include "tools/record/recorder.h"
#include "tools/record/recordingWriter.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryDir>

using namespace norvex;
using Tool::RecordedValue;

namespace {

QByteArray recorded(bool isAnonymous = false, const QString& hostName = {})
{
    RecordedValue recording = Tool::recordMachine();
    if (isAnonymous) {
        Tool::anonymise(recording, hostName);
    }
    return Tool::recordingText(recording);
}

bool useRecording(QByteArray document)
{
    QBuffer buffer(&document);
    buffer.open(QIODevice::ReadOnly);
    PropertyListFailure failure;
    setMachine(readRecording(buffer, failure));
    return QTest::qVerify(failure.reason.isEmpty(), "recording accepted", qPrintable(failure.reason),
                          __FILE__, __LINE__);
}

QString section()
{
    const LoggedMessages silent;
    return SystemInfo::MacSysInfo::allInfos();
}

// The content of a recording whose registry is a root with these properties and children.
QByteArray registryOf(const QByteArray& properties, const QByteArray& children = {})
{
    return "<key>registry</key><dict><key>properties</key><dict>" + properties +
           "</dict><key>children</key><array>" + children + "</array></dict>";
}

// Everything that a recording holds, data in the clear.
QByteArray inTheClear(const QByteArray& recording)
{
    static const QRegularExpression data(QStringLiteral("<data>([^<]*)</data>"));
    QByteArray clear = recording;
    for (auto found = data.globalMatch(QString::fromUtf8(recording)); found.hasNext();) {
        clear += '\n' + QByteArray::fromBase64(found.next().captured(1).toLatin1());
    }
    return clear;
}

QStringList textsIn(const QByteArray& recording)
{
    static const QRegularExpression text(QStringLiteral("<string>([^<]+)</string>"));
    QStringList texts;
    for (auto found = text.globalMatch(QString::fromUtf8(recording)); found.hasNext();) {
        texts += found.next().captured(1);
    }
    return texts;
}

QByteArray dataElement(const QByteArray& bytes)
{
    return "<data>" + bytes.toBase64() + "</data>";
}

QByteArray utf16(const char* ascii)
{
    QByteArray units;
    for (; *ascii != '\0'; ++ascii) {
        units += QByteArray(ascii, 1) + '\0';
    }
    return units;
}

void differenceRow(const char* name, const QByteArray& content, const char* expected, const char* unexpected)
{
    QTest::newRow(name) << content << QString::fromUtf8(expected) << QString::fromUtf8(unexpected);
}

void addFaultRows()
{
    differenceRow("fault of a number",
                  registryOf("<key>a</key><true/>",
                             "<dict><key>properties</key><dict><key>n</key>"
                             "<integer>1</integer></dict><key>faults</key><dict><key>CFNumberGetValue</"
                             "key><array><string>n</string></array></dict></dict>"),
                  "<name|>a<", ">n<|faults");
    differenceRow(
        "fault of the properties",
        registryOf("<key>a</key><true/>",
                   "<dict><key>name</key><string>hidden</string>"
                   "<key>properties</key><dict><key>n</key><true/></dict><key>faults</key><dict>"
                   "<key>IORegistryEntryCreateCFProperties</key><integer>5</integer></dict></dict>"),
        ">hidden<", ">n<|faults");
    differenceRow("unconverted string",
                  registryOf("<key>a</key><true/>",
                             "<dict><key>properties</key><dict><key>s</key>"
                             "<string>ü</string></dict><key>faults</key><dict><key>CFStringGetCString</"
                             "key><array><string>s</string></array></dict></dict>"),
                  ">s</key>\\s*<string></string>", "ü");
    differenceRow("string by its pointer",
                  registryOf("<key>a</key><true/>",
                             "<dict><key>properties</key><dict><key>s</key>"
                             "<string>ascii</string></dict><key>faults</key><dict><key>CFStringGetCString</"
                             "key><array><string>s</string></array></dict></dict>"),
                  "<string>ascii</string>", "faults");
}

QByteArray passesFor(const char* className)
{
    return QByteArray("<key>properties</key><dict><key>IOClassNameOverride</key><string>") + className +
           "</string></dict>";
}

void addClassRows()
{
    differenceRow(
        "inherited by one of two",
        registryOf("", "<dict><key>classes</key><array><string>A</string><string>IOUSBDevice</string>"
                       "<string>B</string></array></dict><dict><key>classes</key><array><string>A</string></"
                       "array></dict>"),
        "A</string>\\s*<string>IOUSBDevice</string>\\s*<string>B<.*<array>\\s*<string>A</string>\\s*</array>",
        "IOUSBDevice.*IOUSBDevice");
    differenceRow(
        "passes for another class",
        registryOf(
            "",
            "<dict><key>classes</key><array><string>A</string></array></dict>"
            "<dict><key>classes</key><array><string>A</string><string>IOPCIDevice</string></array></dict>"),
        "<string>A</string>.*<string>A</string>\\s*<string>IOPCIDevice</string>", "faults");
    differenceRow(
        "passes for a class that is listed",
        registryOf("", "<dict><key>classes</key><array><string>A</string><string>IOService</string></array>" +
                           passesFor("IOUSBDevice") +
                           "</dict><dict><key>classes</key><array><string>B</string><string>IOUSBDevice"
                           "</string><string>C</string><string>IOService</string></array>" +
                           passesFor("IOUSBDevice") + "</dict>"),
        "<array>\\s*<string>IOService</string>\\s*</array>.*<array>\\s*<string>IOUSBDevice</string>\\s*"
        "<string>C</string>\\s*<string>IOService</string>\\s*</array>",
        "<string>[AB]<");
    differenceRow("passes for a class that it conforms to",
                  registryOf("", "<dict><key>classes</key><array><string>A</string></array>" +
                                     passesFor("AppleUSBEthernet") + "</dict>"),
                  "<string>AppleUSBEthernet</string>", "classes");
    differenceRow("not listed",
                  registryOf("", "<dict><key>classes</key><array><string>A</string><string>IOUSBDevice"
                                 "</string></array></dict>") +
                      "<key>faults</key><dict><key>IOServiceMatching</key><array><string>IOUSBDevice</string>"
                      "</array></dict>",
                  "<string>A</string>", "IOUSBDevice");
    differenceRow(
        "classes in a circle",
        registryOf("", "<dict><key>classes</key><array><string>A</string><string>B</string></array></dict>"
                       "<dict><key>classes</key><array><string>B</string><string>A</string></array></dict>"),
        "A</string>\\s*<string>B</string>\\s*</array>.*B</string>\\s*<string>A</string>\\s*</array>",
        "faults");
}

using Bytes = QList<QByteArray>;

void identityRow(const char* name, const QByteArray& content, const Bytes& originals, const Bytes& kept = {})
{
    QTest::newRow(name) << content << originals << kept;
}

void addSerialRows()
{
    const QByteArray serial = "<key>USB Serial Number</key><string>A50285BI</string>";
    identityRow(
        "serial number",
        registryOf(
            serial +
            "<key>IOCalloutDevice</key><string>/dev/cu.usbserial-A50285BI</string><key>a</key>"
            "<string>xa50285bix</string><key>b</key><dict><key>A50285BI</key><true/></dict><key>c</key>" +
            dataElement(QByteArray("\0A50285BI\0", 10)) + "<key>d</key>" + dataElement(utf16("A50285BI"))) +
            "<key>files</key><array><string>/dev/cu.usbserial-A50285BI</string></array>",
        {"a50285bi", utf16("A50285BI")}, {"/dev/cu.usbserial-", "<key>files</key>"});
    identityRow(
        "serial number as data",
        registryOf("<key>serial-number</key>" + dataElement(QByteArray("D13B\0\0C02F5KLAD13B\0", 19))),
        {"c02f5klad13b", "d13b"});
    identityRow("binary serial number",
                registryOf("<key>board-serial</key>" + dataElement("\x01\xfe\x02\xfd\x03\xfc") +
                           "<key>x</key>" + dataElement("--\x01\xfe\x02\xfd\x03\xfc") +
                           "<key>y</key><string>01FE02FD03FC</string>"),
                {"\x01\xfe\x02\xfd\x03\xfc", "01fe02fd03fc"});
    identityRow("serial numbers as integers",
                registryOf("<key>DisplaySerialNumber</key><integer size=\"32\">-1840700270</integer>"
                           "<key>t</key><string>2454267026</string><key>unique-chip-id</key><integer "
                           "size=\"64\">5123456789012345</integer>"),
                {"-1840700270", "2454267026", "5123456789012345"});
    identityRow("serial number in a serial number",
                registryOf("<key>A Serial</key><string>AB12CD34</string><key>B Serial</key>"
                           "<string>AB12CD3456EF</string>"),
                {"ab12cd34", "56ef"});
    identityRow(
        "short serial number",
        registryOf("<key>Serial Number</key><string>B7</string><key>Revision</key><string>B7.</string>"),
        {"<string>b7<"}, {"<string>B7.<"});
    identityRow("masked", registryOf("<key>IOPlatformSerialNumber</key><string>4**********D</string>"),
                {"4**********d"}, {"**********"});
}

void addAddressRows()
{
    const QByteArray address = QByteArray::fromHex("3c15c2d60a3f");
    identityRow("address",
                registryOf("<key>IOMACAddress</key>" + dataElement(address) +
                           "<key>a</key><string>is 3c:15:c2:d6:0a:3f, "
                           "3C-15-C2-D6-0A-3F, 3C15C2D60A3F, 3c:15:c2:d6:a:3f or "
                           "fe80::3e15:c2ff:fed6:a3f</string><key>b</key>" +
                           dataElement("\x3f\x0a\xd6\xc2\x15\x3c") + "<key>groups</key>" +
                           dataElement("\x33\x33\xff\xd6\x0a\x3f") + "<key>local</key>" +
                           dataElement(QByteArray::fromHex("3e15c2d60a3f01000000")) +
                           "<key>GUID</key><integer size=\"64\">"
                           "0x3c15c2fffed60a3f</integer><key>BD_ADDR</key><integer>0x3c15c2d60a3f</integer>"),
                {address.mid(3), "\x3f\x0a\xd6", "d6:0a:3f", "d6-0a-3f", "d60a3f", "d6:a:3f",
                 "fed6:", "4329581021534489151", "66064160787007"},
                {"is 3c:15:c2:", "3C-15-C2-", "3C15C2", "c2ff:fe", address.left(3)});
    identityRow(
        "addresses under other keys",
        registryOf("<key>Peer</key><string>usb-04-0c-ce-e7-71-01</string><key>SerialNumber</key>"
                   "<string>040CCEE77101</string><key>Paired</key><dict><key>0:1c:b3:a:ff:7</key><true/>"
                   "<key>0:1c:b3:10:11:12</key><true/><key>0:1c:b3:2a:2b:2c</key><true/><key>0:1c:b3:3:4:5</"
                   "key><true/></dict>"),
        {"e7-71-01", "e77101", "a:ff:7", "10:11:12", "2a:2b:2c", "3:4:5"},
        {"usb-04-0c-ce-", "040CCE", "0:1c:b3:"});
    identityRow(
        "list of addresses",
        registryOf("<key>BD_ADDR</key>" + dataElement("\x01\x02\x03\x04\x05\x06\x11\x12\x13\x14\x15\x16")),
        {"\x04\x05\x06", "\x14\x15\x16"});
    identityRow("extended address",
                registryOf("<key>EUI64</key>" + dataElement(QByteArray::fromHex("0025385b71b0c3d4"))),
                {QByteArray::fromHex("5b71b0c3d4")}, {QByteArray::fromHex("002538")});
    const QByteArray uuid = "AA670AF0-B600-4528-9435-0B0E3F068DE4";
    identityRow(
        "UUID",
        registryOf(
            "<key>x</key><string>/dev/" + uuid + "</string><key>y</key><string>" + uuid.toLower() +
            "</string><key>z</key><string>AA670AF0B600452894350B0E3F068DE4</string><key>system-id</key>" +
            dataElement(QByteArray::fromHex("aa670af0b600452894350b0e3f068de4")) + "<key>boot</key>" +
            dataElement("\x04" + QByteArray::fromHex("f00a67aa00b6284594350b0e3f068de4")) +
            "<key>Content</key><string>48465300-0000-11AA-AA11-00306543ECAC</string>"),
        {uuid.toLower(), "aa670af0", QByteArray::fromHex("aa670af0"), QByteArray::fromHex("f00a67aa")},
        {"48465300-0000-11AA-AA11-00306543ECAC"});
}

void addNameRows()
{
    identityRow(
        "networks",
        registryOf(
            "<key>IO80211SSID</key><string>Zum Löwen</string><key>SSIDs</key><array><string>Kai</string>"
            "</array><key>a</key><string>zum Löwen 5G, kai!</string><key>b</key><dict><key>Zum "
            "Löwen</key><true/></dict>"
            "<key>IO80211BSSID</key>" +
            dataElement("\x90\xf6\x52\xbd\x91\x8d") + "<key>current-network</key>" +
            dataElement("Zum Löwen\0pw")),
        {"zum", "wen", "kai", "\xbd\x91\x8d"}, {" 5G, "});
    identityRow("class in the name of a network",
                registryOf("<key>IO80211SSID</key><string>IOUSBDevice</string>",
                           "<dict><key>classes</key><array><string>IOUSBDevice</string></array></dict>"),
                {"</key>\n    <string>IOUSBDevice<"}, {"<array>\n      <string>IOUSBDevice<"});
    identityRow(
        "users",
        registryOf(
            "<key>kCGSSessionUserNameKey</key><string>jane</string><key>kCGSessionLongUserNameKey</key>"
            "<string>Jane "
            "Doe</string><key>p</key><string>/Users/jd/x</string><key>Transport</key><string>Bluetooth</"
            "string>"
            "<key>Product</key><string>Doe’s Mouse</string><key>q</key><string>Jane's /jd/</string>"),
        {"jane", "doe", "/jd"}, {"/Users/", "Bluetooth", "</key>\n    <string>/Users"});
    identityRow("host", registryOf("<key>k</key><string>root@janes-imac: 1</string>"), {"janes"}, {"root@"});
    const auto volume = [](const QByteArray& path, const QByteArray& source) {
        return "<dict><key>path</key><string>" + path +
               "</string><key>statfs</key><dict><key>f_mntfromname</key><string>" + source +
               "</string><key>f_mntonname</key><string>" + path + "</string></dict></dict>";
    };
    identityRow(
        "volumes",
        "<key>volumes</key><array>" + volume("/Volumes/Geheim", "//WORK;jane:pw1@nas._smb._tcp.local/Stuff") +
            volume("/Volumes/Macintosh HD", "/dev/disk1s1") +
            volume("/media/bob/Stick", "kim@10.0.0.7:/export") + "</array>" +
            registryOf("<key>u</key><string>jane on nas and bob</string>",
                       "<dict><key>name</key><string>Kasse</string><key>classes</key><array><string>IOMedia</"
                       "string></array></dict>"
                       "<dict><key>name</key><string>APPLE SSD "
                       "Media</string><key>classes</key><array><string>IOMedia</string></array></dict>"),
        {"geheim", "jane", "pw1", "nas", "stuff", "bob", "stick", "kim@", "10.0.0.7", "kasse"},
        {"/Volumes/Macintosh HD", "/dev/disk1s1", "/export", "._smb._tcp.local", "APPLE SSD Media"});
    QByteArray display(128, '\0');
    display.replace(12, 4, "\x12\x34\x56\x78")
        .replace(72, 18, QByteArray("\0\0\0\xff\0F1G2H3J4K\n  ", 17) + ' ');
    identityRow("display",
                registryOf("<key>IODisplayEDID</key>" + dataElement(display) +
                           "<key>DisplaySerialString</key><string>F1G2H3J4K</string>"),
                {"f1g2h3j4k", "\x12\x34\x56\x78"});
    identityRow(
        "property lists and services",
        "<key>services</key><dict><key>urlHandlers</key><dict><key>mailto</key><string>/Users/jane/M.app"
        "</string></dict></dict>",
        {"jane"}, {"/M.app"});
}

} // namespace

class RecorderTest : public QObject
{
    Q_OBJECT

private slots:
    void everyKind();
    void recordings_data();
    void recordings();
    void differs_data();
    void differs();
    void deepest();
    void failingCalls();
    void texts_data();
    void texts();
    void liveMachine();
    void replacements_data();
    void replacements();
    void nestedReplacements();
    void proportional();
    void nothingLeft_data();
    void nothingLeft();
    void kept_data();
    void kept();
    void consistent();
    void sameShape();
    void commands_data();
    void commands();
    void cleanup() { setMachine(nullptr); }
};

void RecorderTest::everyKind()
{
    const QByteArray recording = contentsOf(QStringLiteral(NORVEX_TEST_DATA "/recorder/everyKind.plist"));
    QVERIFY(useRecording(recording));
    sameLines(recorded(), recording);
    QVERIFY(liveCounts().isZero());
}

void RecorderTest::recordings_data()
{
    QTest::addColumn<QString>("fileName");
    const QDir folder = recordingFolder();
    QVERIFY(folder.count() > 0);
    for (const QString& name : folder.entryList()) {
        QTest::newRow(qPrintable(name)) << folder.filePath(name);
    }
}

// Injected failures are not recorded. All else is, and what was recorded is recorded again unchanged.
void RecorderTest::recordings()
{
    QFETCH(QString, fileName);
    const QByteArray original = contentsOf(fileName);
    QVERIFY(useRecording(original));
    const QString expected = section();
    const QByteArray recording = recorded();
    QVERIFY(useRecording(recording));
    if (!original.contains("<key>faults</key>")) {
        sameLines(section(), expected);
    }
    sameLines(recorded(), recording);
}

void RecorderTest::differs_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("expected"); // a regular expression that what is recorded matches
    QTest::addColumn<QString>("unexpected");
    differenceRow("nothing", "", "<integer size=\"32\">1</integer>\\s*<key>services</key>",
                  "sysctl|gestalt|registry|files");
    differenceRow("unsized integer", registryOf("<key>a</key><integer>0x80000000</integer>"),
                  "size=\"64\">2147483648<", "size=\"8");
    differenceRow("sorted keys", registryOf("<key>b</key><true/><key>a</key><true/>"), ">a<[^b]*>b<",
                  "faults");
    differenceRow("cut name",
                  registryOf("", "<dict><key>name</key><string>" + QByteArray(125, 'n') +
                                     "\xf0\x9f\x96\xa5</string></dict>"),
                  "n{125}\\x{1f000}<", "�");
    differenceRow(
        "property list without the keys",
        "<key>propertyLists</key><dict><key>/System/Library/Extensions/FTDIUSBSerialDriver"
        ".kext/Contents/Info.plist</key><dict><key>CFBundleVersion</key><integer>1</integer></dict></dict>",
        "<key>/System/.*Info.plist</key>\\s*<dict/>", "CFBundle");
    differenceRow("no reason",
                  "<key>volumes</key><array><dict><key>path</key><string>/Volumes/a</string></dict></array>",
                  ">errno</key>\\s*<integer size=\"32\">22<", "statfs");
    addFaultRows();
    addClassRows();
}

void RecorderTest::differs()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, expected);
    QFETCH(QString, unexpected);
    QVERIFY(useMachine(content));
    const QString once = QString::fromUtf8(recorded());
    const auto isIn = [&once](const QString& pattern) {
        return QRegularExpression(pattern, QRegularExpression::DotMatchesEverythingOption)
            .match(once)
            .hasMatch();
    };
    QVERIFY2(isIn(expected), qPrintable(once));
    QVERIFY2(!isIn(unexpected), qPrintable(once));
    QVERIFY(useRecording(once.toUtf8()));
    sameLines(recorded(), once);
}

// The deepest nesting that a recording can have, of entries and of values.
void RecorderTest::deepest()
{
    constexpr int levels = 512;
    const QByteArray values =
        QByteArray("<array>").repeated(levels - 1) + QByteArray("</array>").repeated(levels - 1);
    QByteArray entries = "<dict><key>properties</key><dict><key>v</key>" + values + "</dict></dict>";
    for (int i = 1; i < levels; ++i) {
        entries = "<dict><key>children</key><array>" + entries + "</array></dict>";
    }
    QVERIFY(useMachine("<key>registry</key>" + entries));
    const QByteArray recording = recorded(true);
    QCOMPARE(recording.count("<key>children</key>"), levels - 1);
    QCOMPARE(recording.count("<array"), 2 * (levels - 1));
    QVERIFY(useRecording(recording));
}

// Whatever fails, nothing is leaked, and what is written can be read.
void RecorderTest::failingCalls()
{
    QVERIFY(useRecording(contentsOf(QStringLiteral(NORVEX_TEST_DATA "/recorder/everyKind.plist"))));
    const auto machine = currentMachine();
    failCall(0);
    const QByteArray whole = recorded();
    const std::int64_t calls = countedCalls();
    QVERIFY(calls > 400);
    int changed = 0;
    for (std::int64_t call = 1; call <= calls; ++call) {
        setMachine(machine);
        failCall(call);
        const QByteArray recording = recorded();
        failCall(0);
        QVERIFY2(liveCounts().isZero(), qPrintable(QString::number(call)));
        changed += recording == whole ? 0 : 1;
        QVERIFY(useRecording(recording));
    }
    QVERIFY(changed > 200);
}

void RecorderTest::texts_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("ASCII stays ASCII") << QByteArray("a\x01z\x1f\x7f") << QByteArray("a?z?\x7f");
    QTest::newRow("white space") << QByteArray("\t\n\r ") << QByteArray("\t\n\r ");
    QTest::newRow("no characters") << QByteArray("a\xef\xbf\xbe\xef\xbf\xbf")
                                   << QByteArray("a\xef\xbf\xbd\xef\xbf\xbd");
    QTest::newRow("damaged") << QByteArray("\xc3(") << QByteArray("\xef\xbf\xbd(");
    QTest::newRow("others") << QByteArray("\xef\xbb\xbf\xf0\x9f\x96\xa5é")
                            << QByteArray("\xef\xbb\xbf\xf0\x9f\x96\xa5é");
}

void RecorderTest::texts()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, expected);
    QCOMPARE(Tool::xmlText(text), expected);
}

void RecorderTest::liveMachine()
{
    static const QRegularExpression changing(
        QStringLiteral("^  (Blocks free|Blocks avail|File nodes free|Free|Avail): .*$"),
        QRegularExpression::MultilineOption);
    const QString live = section().remove(changing);
    const QByteArray recording = recorded();
    QVERIFY(useRecording(recording));
    sameLines(section().remove(changing), live);
    sameLines(recorded(), recording);
}

void RecorderTest::replacements_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char* text, const char* expected) {
        QTest::newRow(text) << QByteArray(text) << QByteArray(expected);
    };
    row("xabcx", "xuvwx");
    row("ABC aBc", "UVW uVw");
    row("abcd abc-abcde", "WXYZ uvw-WXYZe");
    row("DEAD dead", "BEEF beef");
    row("one zone ones-one", "ten zone ones-ten");
    row("dir/x dir mydir/dir", "rid/x dir mydir/rid");
    row("Exact exact", "Other exact");
    row("ababc", "abuvw");
}

void RecorderTest::replacements()
{
    using R = Privacy::Replacements;
    R all;
    all.add("abc", "uvw", R::Where::Anywhere, R::Letters::EachAsFound);
    all.add("abc", "no!", R::Where::Anywhere, R::Letters::EachAsFound);
    all.add("abcd", "WXYZ", R::Where::Anywhere, R::Letters::Exact);
    all.add("dead", "beef", R::Where::Anywhere, R::Letters::AllAsFound);
    all.add("one", "ten", R::Where::Word, R::Letters::EachAsFound);
    all.add("dir", "rid", R::Where::Component, R::Letters::EachAsFound);
    all.add("Exact", "Other", R::Where::Anywhere, R::Letters::Exact);
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, expected);
    QCOMPARE(all.replaced(text), expected);
}

// Of sequences that begin one another, short and long, against a search for one after the other.
void RecorderTest::nestedReplacements()
{
    using R = Privacy::Replacements;
    QRandomGenerator random(7);
    const auto word = [&random](int size) {
        QByteArray bytes;
        while (bytes.size() < size) {
            bytes += random.bounded(100) == 0 ? "b" : (random.bounded(4) == 0 ? "A" : "a");
        }
        return bytes;
    };
    const QByteArray base = word(1000);
    for (int round = 0; round < 20; ++round) {
        R all;
        QMap<QByteArray, QByteArray> known;
        for (int i = 0; i < 30; ++i) {
            const QByteArray piece =
                base.mid(random.bounded(3), 1 + random.bounded(i % 2 == 0 ? 5 : 400)) + word(i % 3);
            const QByteArray replacement = '<' + QByteArray::number(i) + '>';
            all.add(piece, replacement, R::Where::Anywhere, R::Letters::Exact);
            known.insert(piece, known.value(piece, replacement));
        }
        const QByteArray text = word(20) + base + base.mid(1, 300) + word(20);
        QByteArray expected;
        for (int i = 0; i < text.size();) {
            QByteArray found;
            for (const QByteArray& piece : known.keys()) {
                found = piece.size() > found.size() && text.mid(i, piece.size()) == piece ? piece : found;
            }
            expected += found.isEmpty() ? text.mid(i, 1) : known.value(found);
            i += std::max(1, found.size());
        }
        QCOMPARE(all.replaced(text), expected);
    }
}

// What takes a minute when the time grows with the square takes a second.
void RecorderTest::proportional()
{
    constexpr qint64 limit = 20000;
    QElapsedTimer timer;
    timer.start();
    QByteArray classes;
    for (int i = 0; i < 200000; ++i) {
        classes += "<string>C" + QByteArray::number(i) + "</string>";
    }
    QVERIFY(useMachine("<key>registry</key><dict><key>classes</key><array>" + classes + "</array></dict>"));
    QCOMPARE(recorded().count("<string>C"), 200000);
    QVERIFY2(timer.elapsed() < limit, "classes");

    timer.start();
    const QByteArray serial = QByteArray("AB1").repeated(100000);
    QVERIFY(useMachine(registryOf("<key>Serial Number</key><string>" + serial +
                                  "</string><key>near</key><string>" + serial.chopped(1) + "!</string>")));
    QCOMPARE(recorded(true).count(serial.left(30)), 100000 - 1 - 9); // in the second text alone
    QVERIFY2(timer.elapsed() < limit, "repeated text");
}

void RecorderTest::nothingLeft_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QList<QByteArray>>("originals");
    QTest::addColumn<QList<QByteArray>>("kept");
    addSerialRows();
    addAddressRows();
    addNameRows();
}

void RecorderTest::nothingLeft()
{
    QFETCH(QByteArray, content);
    QFETCH(QList<QByteArray>, originals);
    QFETCH(QList<QByteArray>, kept);
    QVERIFY(useMachine(content));
    const QByteArray before = inTheClear(recorded());
    const QByteArray recording = recorded(true, QStringLiteral("janes-imac.local"));
    const QByteArray after = inTheClear(recording);
    for (const QByteArray& original : originals) {
        QVERIFY2(before.toLower().contains(original.toLower()), original.toPercentEncoding().constData());
        QVERIFY2(!after.toLower().contains(original.toLower()),
                 (original.toPercentEncoding() + " in " + after).constData());
    }
    for (const QByteArray& part : kept) {
        QVERIFY2(after.contains(part), (part.toPercentEncoding() + " not in " + after).constData());
    }
    QVERIFY(useRecording(recording));
    QCOMPARE(recorded(), recording);
}

void RecorderTest::kept_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::newRow("no serial numbers")
        << QByteArray("<key>Serial Number</key><string>0000</string><key>iSerialNumber</key>"
                      "<integer>3</integer><key>SerialNumberIndex</key><string>A1B2C3D4</string><key>Serial</"
                      "key><integer>7</integer>");
    QTest::newRow("no addresses") << "<key>IOMACAddress</key>" + dataElement(QByteArray(6, '\0')) +
                                         "<key>USB Address</key>"
                                         "<integer>9</integer><key>t</key><string>Sat Sep 19 15:53:46 "
                                         "1-2-3-4-5-6</string><key>e</key>" +
                                         dataElement(QByteArray(6, '\xff'));
    QTest::newRow("no names") << QByteArray(
        "<key>Class ID</key><string>Hub</string><key>Product</key><string>Hub</string>"
        "<key>p</key><string>/Users/Shared/x</string>");
    QTest::newRow("other kinds") << QByteArray(
        "<key>IOPlatformUUID</key><true/><key>IO80211SSID</key><real>1.5</real>"
        "<key>Serial Number</key><data></data>");
}

void RecorderTest::kept()
{
    QFETCH(QByteArray, properties);
    QVERIFY(useMachine(registryOf(properties)));
    QCOMPARE(recorded(true), recorded());
}

void RecorderTest::consistent()
{
    const QByteArray serials =
        "<key>A Serial</key><string>C02AAAA1</string><key>B Serial</key><string>C02AAAA2</string>";
    QVERIFY(useMachine(registryOf(
        serials + "<key>a</key><string>-c02aaaa1-C02AAAA1-</string><key>b</key><string>c02aaaa2</string>")));
    const QStringList found = textsIn(recorded(true));
    QCOMPARE(found.size(), 4);
    QVERIFY2(QRegularExpression(QStringLiteral("^[A-F]\\d\\d[A-F]{4}\\d$")).match(found[0]).hasMatch(),
             qPrintable(found[0]));
    QVERIFY(found[0] != found[1]);
    QCOMPARE(found[2], '-' + found[0].toLower() + '-' + found[0] + '-');
    QCOMPARE(found[3], found[1].toLower());
    QCOMPARE(recorded(true), recorded(true));

    QByteArray many;
    for (int i = 10; i < 40; ++i) {
        many += "<string>A" + QByteArray::number(i) + "</string>";
    }
    QVERIFY(useMachine(registryOf("<key>Serial</key><array>" + many + "</array>")));
    const QStringList replaced = textsIn(recorded(true));
    QCOMPARE(QSet<QString>(replaced.begin(), replaced.end()).size(), 30);
    QVERIFY(!replaced.contains(QStringLiteral("A10")));
}

// The same lines with other values.
void RecorderTest::sameShape()
{
    static const QRegularExpression value(QStringLiteral("[:'].*$|^/Volumes/.*$"),
                                          QRegularExpression::MultilineOption);
    QVERIFY(useRecording(contentsOf(QStringLiteral(NORVEX_TEST_DATA "/recorder/everyKind.plist"))));
    const QString original = section();
    QVERIFY(useRecording(recorded(true)));
    const QString anonymous = section();
    QVERIFY(!anonymous.contains(QLatin1String("S1K5NYAF")));
    QVERIFY(anonymous != original);
    const auto labels = [](QString text) {
        QStringList lines = text.remove(value).split(QLatin1Char('\n'));
        lines.sort(); // volumes are listed by name
        return lines;
    };
    QCOMPARE(labels(anonymous), labels(original));
    for (const char* line :
         {"Device Name: '/dev/cu.usbserial-A1'\nchannel: 'A'", "  MAC address:      3c:15:c2:"}) {
        QVERIFY2(anonymous.contains(QLatin1String(line)), line);
    }
}

void RecorderTest::commands_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("message");
    const auto row = [](const char* arguments, int status, const char* message) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments).split(' ') << status
                                 << QString::fromLatin1(message);
    };
    row("--record out --machine everyKind", 0, "");
    row("--record out --machine everyKind --anonymous", 0, "");
    row("--record absent/out --machine everyKind", 1, "norvex-systeminfo: cannot write 'absent/out': ");
    row("--record out --machine absent", 1, "norvex-systeminfo: absent: ");
    row("--anonymous", 2, "--anonymous goes with --record only");
    row("--record out --record out", 2, "more than one file for --record");
    row("--record out --output x", 2, "--record and --output exclude each other");
    row("--record out --identify", 2, "exclude each other");
    row("--record out --section macModel", 2, "--record holds the Macintosh section only");
    row("--record out --no-opengl", 2, "--record holds the Macintosh section only");
}

void RecorderTest::commands()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, status);
    QFETCH(QString, message);
    const QString everyKind = QStringLiteral(NORVEX_TEST_DATA "/recorder/everyKind.plist");
    const QTemporaryDir folder;
    QFile old(folder.filePath(QStringLiteral("out")));
    QVERIFY(old.open(QIODevice::WriteOnly) && old.write("old") == 3);
    old.close();
    QVERIFY(QFile::copy(everyKind, folder.filePath(QStringLiteral("everyKind"))));
    QProcess tool;
    tool.setWorkingDirectory(folder.path());
    tool.start(QStringLiteral(NORVEX_TOOL), arguments);
    QVERIFY(tool.waitForFinished());
    QCOMPARE(tool.exitCode(), status);
    QCOMPARE(tool.readAllStandardOutput(), QByteArray());
    const QString messages = QString::fromLocal8Bit(tool.readAllStandardError());
    QVERIFY2(message.isEmpty() ? messages.isEmpty() : messages.contains(message), qPrintable(messages));
    const QByteArray written = contentsOf(old.fileName());
    QCOMPARE(written == contentsOf(everyKind),
             status == 0 && !arguments.contains(QStringLiteral("--anonymous")));
    QCOMPARE(written == "old", status != 0);
}

QTEST_GUILESS_MAIN(RecorderTest)
#include "recorderTest.moc"
