#include "recordingSupport.h"
#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/mac/platform/ioKit.h"
#include "systeminfo/mac/platform/libSystem.h"

#include <QTextCodec>
#include <QtTest>
#include <climits>
#include <cstring>
#include <ctime>

using namespace norvex;
using namespace norvex::SystemInfo::MacSysInfo;

namespace {

/// A registry whose root has one property, "v".
QByteArray propertyOfRoot(const QByteArray& element)
{
    return "<key>registry</key><dict><key>properties</key><dict><key>v</key>" + element + "</dict></dict>";
}

/// A reference that a call of the layer has handed out, released at the end.
struct Held
{
    explicit Held(CFTypeRef reference) : object(reference) {}
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    ~Held()
    {
        if (object != nullptr) {
            CFRelease(object);
        }
    }

    const CFTypeRef object;
};

CFTypeRef createPropertyOfRoot(const char* name)
{
    const Held key(CFStringCreateWithCString(kCFAllocatorDefault, name, kCFStringEncodingUTF8));
    const io_registry_entry_t root = IORegistryGetRootEntry(kIOMasterPortDefault);
    const CFTypeRef value =
        IORegistryEntryCreateCFProperty(root, static_cast<CFStringRef>(key.object), kCFAllocatorDefault, 0);
    releaseObject(root);
    return value;
}

/// The documents of a data file by their names. Those that "-- " begins are the inside of a recording's dictionary.
QMap<QByteArray, QByteArray> documentsIn(const char* fileName)
{
    QMap<QByteArray, QByteArray> documents;
    QByteArray name;
    for (const QByteArray& line : contentsOf(NORVEX_TEST_DATA "/" + QString(fileName)).split('\n')) {
        if (line.startsWith("== ") || line.startsWith("-- ")) {
            name = line;
        } else if (!name.isEmpty()) {
            documents[name] += (documents.contains(name) ? "\n" : "") + line;
        }
    }
    for (auto each = documents.begin(); each != documents.end(); ++each) {
        if (each.key().startsWith('-')) {
            *each = "<plist><dict><key>recording</key><integer>1</integer>\n" + *each + "</dict></plist>";
        }
    }
    return documents;
}

} // namespace

class PlatformTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void refusals_data();
    void refusals();
    void unreadableFiles();
    void acceptedOddities();
    void nesting();
    void longestSysctlText();
    void largeDictionaries();
    void millionChildren();
    void integers();
    void data();
    void sysctlBuffers();
    void bootTime();
    void handles();
    void liveCountsOfObjects();
    void iteratorOutlivesMachine();
    void usbRecord();
    void videoMemoryNumbers();
    void videoMemoryData();
    void texts();
    void propertyListKeyPaths();
    void osVersionNames();
    void bonjour();
    void fileSystems();
};

void PlatformTest::init()
{
    setMachine(loadRecording(NORVEX_TEST_DATA "/platformMachine.plist", nullptr));
}

void PlatformTest::cleanup()
{
    setMachine(nullptr);
    QVERIFY(liveCounts().isZero());
}

void PlatformTest::refusals_data()
{
    QTest::addColumn<QByteArray>("document");
    const auto documents = documentsIn("refusedRecordings.txt");
    for (const QByteArray& name : documents.keys()) {
        QTest::newRow(name.constData()) << documents[name];
    }
    const QByteArray recording = "<plist><dict>\n<key>recording</key><integer>1</integer></dict></plist>";
    QTest::newRow("no UTF-8") << QByteArray("<plist><dict>\n<key>\xff|</key><true/></dict></plist>");
    QTest::newRow("surrogate") << QByteArray("<plist><dict>\n<key>\xed\xa0\x80|</key><true/></dict></plist>");
    QTest::newRow("zero") << QByteArray("<plist><dict>\n<key>a", 19) + '\0' + "|</key><true/></dict></plist>";
    QTest::newRow("cut off in a character") << recording + "\n\xc3|";
    // At the end of the first piece in which the file is read.
    QTest::newRow("no UTF-8 later") << recording + "<!--\n" + QByteArray(65530, ' ') + "\xe2\x82|-->";
    QTest::newRow("no XML, then no UTF-8") << QByteArray("<plist>\n<dict <|</plist>\n\xff");
    QTest::newRow("other encoding") << "<?xml version='1.0' encoding='US-ASCII'?>\n" +
                                           QByteArray(recording).insert(14, "\xc3|");
    QTest::newRow("long value") << "<plist><dict><key>recording</key>\n<integer|>" + QByteArray(1000, 'x') +
                                       "</integer></dict></plist>";
    QByteArray attributes;
    for (int i = 0; i <= 64; ++i) {
        attributes += " a" + QByteArray::number(i) + "=''";
    }
    QTest::newRow("attributes") << "<plist><dict>\n<key" + attributes +
                                       "|>recording</key><integer>1</integer></dict></plist>";
}

/// The document, without its bar, is refused, and the message names the line where the bar stood.
void PlatformTest::refusals()
{
    QFETCH(QByteArray, document);
    const int bar = document.indexOf('|');
    const int line = document.left(bar).count('\n') + 1;
    document.remove(bar, 1);
    QTemporaryFile file;
    QVERIFY(file.open() && file.write(document) == document.size() && file.flush());
    QString message;
    QVERIFY(loadRecording(file.fileName(), &message) == nullptr);
    const QString place = QString("%1:%2: ").arg(file.fileName()).arg(line);
    QVERIFY2(message.startsWith(place) && message.size() > place.size(), qPrintable(message));
    QVERIFY(message.size() <= place.size() + 120);
    QVERIFY(loadRecording(file.fileName(), nullptr) == nullptr);
}

void PlatformTest::unreadableFiles()
{
    for (const QString& name : {QDir::tempPath() + "/no such recording", QDir::tempPath()}) {
        QString message;
        QVERIFY(loadRecording(name, &message) == nullptr);
        QVERIFY2(message.startsWith(name + ": ") && message.size() > name.size() + 2, qPrintable(message));
    }
}

/// Each document is accepted with and without a byte-order mark, in several encodings and with both kinds of line ends.
void PlatformTest::acceptedOddities()
{
    auto documents = documentsIn("acceptedRecordings.txt");
    QCOMPARE(documents.size(), 8);
    documents["much text that looks like attributes"] =
        "<!-- " + QByteArray("'\xe2\x82\xac").repeated(1 << 15) +
        "--><plist a='>' b='\"'><dict><key>recording</key><integer>1</integer>"
        "<key>sysctl</key><dict><key>hw.model</key><string>M</string><key>kern.version</key><string>" +
        QByteArray(" a=''").repeated(30000) + "<![CDATA[" + QByteArray(" a=''").repeated(30000) +
        "]]></string></dict></dict></plist>";
    for (const QByteArray& name : documents.keys()) {
        for (const char* mark : {"", "\xef\xbb\xbf"}) {
            for (const char* lineEnd : {"\n", "\r\n"}) {
                const QByteArray text = mark + QByteArray(documents[name]).replace("\n", lineEnd);
                for (const char* encoding : {"UTF-8", "UTF-16LE", "UTF-16BE"}) {
                    const std::unique_ptr<QTextEncoder> encoder(
                        QTextCodec::codecForName(encoding)->makeEncoder(QTextCodec::IgnoreHeader));
                    QByteArray document =
                        encoder->fromUnicode(QTextCodec::codecForName("UTF-8")->toUnicode("x" + text).mid(1));
                    QBuffer buffer(&document);
                    buffer.open(QIODevice::ReadOnly);
                    PropertyListFailure failure;
                    setMachine(readRecording(buffer, failure));
                    QVERIFY2(failure.reason.isEmpty(), qPrintable(name + ": " + failure.reason));
                    QCOMPARE(macModel(), QString("Model: M\n"));
                }
            }
        }
    }
}

void PlatformTest::longestSysctlText()
{
    for (const int length : {511, 512}) {
        const QByteArray model(length, 'M');
        QVERIFY(
            useMachine("<key>sysctl</key><dict><key>hw.model</key><string>" + model + "</string></dict>"));
        QCOMPARE(macModel(), length == 511 ? "Model: " + model + "\n" : QString());
    }
}

void PlatformTest::nesting()
{
    const QByteArray open = "<dict><key>children</key>\n<array>";
    const QByteArray deepest = "<dict><key>classes</key><array><string>IOUSBDevice</string></array></dict>";
    const QByteArray brackets[][2] = {{"<array>", "</array>"}, {"<dict><key>v</key>", "</dict>"}};
    for (const int depth : {512, 513, 200000}) {
        PropertyListFailure failure;
        for (const auto& each : brackets) { // around the innermost value, in the properties' own dictionary
            const auto machine = machineOf(
                propertyOfRoot(each[0].repeated(depth - 1) + "<true/>" + each[1].repeated(depth - 1)),
                failure);
            QCOMPARE(machine != nullptr, depth == 512);
        }
        setMachine(machineOf("<key>registry</key>" + open.repeated(depth - 1) + deepest +
                                 QByteArray("</array></dict>").repeated(depth - 1),
                             failure));
        QCOMPARE(failure.reason.isEmpty(), depth == 512);
        QCOMPARE(failure.line, depth == 512 ? 0ULL : 513ULL);
        QVERIFY(depth > 512 || ioKitUsbDevices().contains("Device name: ''"));
    }
}

/// The sizes lie around that from which on keys are looked up in an index. Of two values of a key the later one counts.
void PlatformTest::largeDictionaries()
{
    for (const int size : {2, 63, 64, 65, 200}) {
        QByteArray items;
        for (int i = 0; i < 2 * size; ++i) {
            items += "<key>k" + QByteArray::number(i % size) + "</key><string>" + QByteArray::number(i) +
                     "</string>";
        }
        QVERIFY(useMachine(propertyOfRoot("<dict>" + items + "</dict>")));
        const Held held(createPropertyOfRoot("v"));
        const auto dictionary = static_cast<CFDictionaryRef>(held.object);
        QCOMPARE(CFDictionaryGetCount(dictionary), CFIndex(size));
        for (int i = 0; i < size; ++i) {
            const Held key(CFStringCreateWithCString(kCFAllocatorDefault, "k" + QByteArray::number(i),
                                                     kCFStringEncodingUTF8));
            const auto* const value = static_cast<CFStringRef>(CFDictionaryGetValue(dictionary, key.object));
            QCOMPARE(CFStringToQString(value), QString::number(size + i));
        }
    }
}

void PlatformTest::millionChildren()
{
    QVERIFY(useMachine("<key>registry</key><dict><key>children</key><array>" +
                       QByteArray("<dict/>").repeated(999999) +
                       "<dict><key>name</key><string>last</string><key>classes</key><array>"
                       "<string>IOUSBDevice</string></array></dict></array></dict>"));
    QVERIFY(ioKitUsbDevices().contains("Device name: 'last'"));
}

void PlatformTest::integers()
{
    const QList<QByteArray> lines =
        contentsOf(NORVEX_TEST_DATA "/recordedIntegers.txt").split('\n').mid(1, 23);
    QCOMPARE(lines.size(), 23);
    for (const QByteArray& line : lines) {
        const QList<QByteArray> row = line.split('\t');
        const QByteArray attribute = row[0] == "-" ? "" : " size='" + row[0] + "'";
        QVERIFY(useMachine(propertyOfRoot("<integer" + attribute + ">" + row.value(1) + "</integer>")));
        const Held value(createPropertyOfRoot("v"));
        QVERIFY(value.object != nullptr && CFGetTypeID(value.object) == CFNumberGetTypeID());
        const auto number = static_cast<CFNumberRef>(value.object);
        qlonglong read = 0;
        QVERIFY(CFNumberGetValue(number, kCFNumberSInt64Type, &read) != 0);
        QCOMPARE(row[0] + '\t' + row[1] + '\t' + QByteArray::number(int(CFNumberGetType(number))) + '\t' +
                     QByteArray::number(read),
                 line);
    }
}

void PlatformTest::data()
{
    const Held value(createPropertyOfRoot("data"));
    QCOMPARE(CFGetTypeID(value.object), CFDataGetTypeID());
    const auto bytes = static_cast<CFDataRef>(value.object);
    QCOMPARE(QByteArray(reinterpret_cast<const char*>(CFDataGetBytePtr(bytes)), int(CFDataGetLength(bytes))),
             QByteArray("ABCD"));
}

void PlatformTest::sysctlBuffers()
{
    const struct
    {
        const char* name;
        int bufferSize;
        const char* copied; // in hexadecimal; null: the query fails
    } rows[] = {
        {"text", 6, "616263646500"}, {"text", 9, "616263646500"},      {"text", 5, nullptr},
        {"umlaut", 2, nullptr},      {"umlaut", 3, "c3bc00"},          {"empty", 1, "00"},
        {"int32", 4, "feffffff"},    {"int32", 8, "feffffff"},         {"int64", 8, "0100000000000080"},
        {"int64", 4, nullptr},       {"large", 8, "0000008000000000"}, {"other", 8, nullptr},
    };
    for (const auto& row : rows) {
        QByteArray buffer(row.bufferSize + 1, 'x');
        std::size_t length = std::size_t(row.bufferSize);
        const bool isCopied = sysctlbyname(row.name, buffer.data(), &length, nullptr, 0) == 0;
        QVERIFY2(isCopied == (row.copied != nullptr), row.name);
        QCOMPARE(isCopied ? buffer.left(int(length)).toHex() : QByteArray(), QByteArray(row.copied));
        QCOMPARE(buffer[row.bufferSize], 'x');
    }
}

void PlatformTest::bootTime()
{
    qint64 time[2] = {1, 1}; // a Mac's struct timeval: 64-bit seconds, 32-bit microseconds, padding
    std::size_t length = sizeof time;
    QCOMPARE(sysctlbyname("kern.boottime", time, &length, nullptr, 0), 0);
    QCOMPARE(length, sizeof time);
    QCOMPARE(time[0], -5);
    QCOMPARE(time[1], 0);
}

void PlatformTest::handles()
{
    unsigned iterator = 0;
    QCOMPARE(ioKitGetUsbDevIterator(&iterator), 0);
    const unsigned device = nextObject(iterator);
    QVERIFY(device != 0 && device != iterator);
    QCOMPARE(nextObject(device), 0U); // no iterator
    QCOMPARE(liveCounts().entries, 1);
    QCOMPARE(liveCounts().iterators, 1);
    releaseObject(device);
    QCOMPARE(liveCounts().entries, 0);
    for (const unsigned dead : {device, 0U, 0xffffffffU, iterator + 1000}) {
        releaseObject(dead);
    }
    QCOMPARE(liveCounts().iterators, 1);
    const unsigned second = nextObject(iterator);
    QVERIFY(second != 0);
    releaseObject(device); // not even if its place was taken again
    QCOMPARE(liveCounts().entries, 1);
    QCOMPARE(nextObject(iterator), 0U);
    QCOMPARE(nextObject(iterator), 0U);
    releaseObject(iterator);
    QCOMPARE(nextObject(iterator), 0U); // released
    releaseObject(second);
    QVERIFY(liveCounts().isZero());

    // Calls on what is no entry fail, and hold nothing.
    io_name_t name = "";
    io_registry_entry_t parent = 0;
    CFMutableDictionaryRef properties = nullptr;
    for (const unsigned dead : {device, iterator, 0U}) {
        QVERIFY(IORegistryEntryGetName(dead, name) != 0);
        QVERIFY(IORegistryEntryGetParentEntry(dead, kIOServicePlane, &parent) != 0);
        QVERIFY(IORegistryEntryCreateCFProperties(dead, &properties, kCFAllocatorDefault, 0) != 0);
        QVERIFY(IOObjectCopyClass(dead) == nullptr);
        QCOMPARE(IOObjectConformsTo(dead, "IOUSBDevice"), 0U);
    }
}

void PlatformTest::liveCountsOfObjects()
{
    {
        const Held text(CFStringCreateWithCString(kCFAllocatorDefault, "a", kCFStringEncodingUTF8));
        CFRetain(text.object);
        QCOMPARE(liveCounts().strings, 2);
        CFRelease(text.object);
        const Held url(
            CFURLCreateWithString(kCFAllocatorDefault, static_cast<CFStringRef>(text.object), nullptr));
        const Held dictionary(createPropertyOfRoot("dictionary"));
        const Held data(CFDataCreate(kCFAllocatorDefault, nullptr, 0));
        const LiveCounts counts = liveCounts();
        QCOMPARE(counts.strings, 1);
        QCOMPARE(counts.urls, 1);
        QCOMPARE(counts.data, 1);
        QCOMPARE(counts.dictionaries, 1);
        QCOMPARE(counts.arrays + counts.numbers + counts.booleans, 0); // what is got is not held
    }
    QVERIFY(liveCounts().isZero());
}

void PlatformTest::iteratorOutlivesMachine()
{
    unsigned iterator = 0;
    QCOMPARE(ioKitGetSerialBsdDevicesIterator(&iterator), 0);
    QVERIFY(useMachine(""));
    const unsigned device = nextObject(iterator);
    usbDeviceInfoStruct_t info;
    QCOMPARE(ioKitGetUsbDevInfo(device, &info), 0);
    QCOMPARE(info.name, "a");
    QCOMPARE(nextObject(iterator), 0U); // the second is no serial port
    releaseObject(device);
    releaseObject(iterator);
}

void PlatformTest::usbRecord()
{
    unsigned iterator = 0;
    QCOMPARE(ioKitGetUsbDevIterator(&iterator), 0);
    const int results[] = {0, -536870212};
    const char* const names[] = {"a", ""};
    for (int i = 0; i < 2; ++i) {
        usbDeviceInfoStruct_t info{1, 2, 3, 4, 5, "before", "before", "before"};
        const unsigned device = nextObject(iterator);
        QCOMPARE(ioKitGetUsbDevInfo(device, &info), results[i]);
        QCOMPARE(info.vendorId | info.productId | info.locationId | info.address | info.speed, 0U);
        QCOMPARE(info.name, names[i]);
        QVERIFY(info.productName.isEmpty() && info.vendorName.isEmpty());
        releaseObject(device);
    }
    releaseObject(iterator);
    QCOMPARE(offsetof(usbDeviceInfoStruct_t, name), std::size_t(20));
    QCOMPARE(offsetof(usbDeviceInfoStruct_t, productName), std::size_t(152));
    usbDeviceInfoStruct_t info{1, 2, 3, 4, 5, "before", "before", "before"};
    QVERIFY(ioKitGetUsbDevInfo(0, &info) != 0);
    QCOMPARE(info.vendorId, 0U);
}

void PlatformTest::videoMemoryNumbers()
{
    const struct
    {
        CFNumberType type;
        qlonglong stored;
        const char* message;
    } rows[] = {{kCFNumberSInt8Type, 5, "warning: Error unexpected CFNumber type: 1|\n"},
                {kCFNumberSInt16Type, 5, "warning: Error unexpected CFNumber type: 2|\n"},
                {kCFNumberSInt32Type, INT_MAX, ""},
                {kCFNumberSInt32Type, INT_MIN, "warning: VRAM size negative: -2147483648|\n"},
                {kCFNumberSInt64Type, LLONG_MAX, ""},
                {kCFNumberSInt64Type, LLONG_MIN, "warning: VRAM size negative: -9223372036854775808|\n"},
                {kCFNumberFloat64Type, 0, "warning: Error unexpected CFNumber type: 6|\n"}};
    for (const auto& row : rows) {
        const LoggedMessages messages;
        const Held number(CFNumberCreate(kCFAllocatorDefault, row.type, &row.stored)); // little-endian
        const qulonglong value = ConvertVRAM_CFNumberToUInt64(static_cast<CFNumberRef>(number.object));
        QCOMPARE(value, *row.message == 0 ? qulonglong(row.stored) : 0);
        QCOMPARE(messages.text(), QString(row.message));
    }
}

void PlatformTest::videoMemoryData()
{
    const UInt8 bytes[] = {0xf1, 2, 3, 4, 5, 6, 7, 0x88, 9};
    const qulonglong values[] = {
        0, 0xf1, 0x2f1, 0x302f1, 0x40302f1, 0x5040302f1, 0x605040302f1, 0x7060504030'2f1, 0x8807060504'0302f1,
        0};
    for (int length = 0; length <= 9; ++length) {
        const Held data(CFDataCreate(kCFAllocatorDefault, bytes, length));
        QCOMPARE(ConvertVRAM_CFDataToUInt64(static_cast<CFDataRef>(data.object)), values[length]);
    }
}

void PlatformTest::texts()
{
    const auto converted = [](const QByteArray& utf8) {
        const Held text(CFStringCreateWithBytes(kCFAllocatorDefault,
                                                reinterpret_cast<const UInt8*>(utf8.constData()), utf8.size(),
                                                kCFStringEncodingUTF8, 0));
        return CFStringToQString(static_cast<CFStringRef>(text.object));
    };
    const LoggedMessages messages;
    QCOMPARE(converted(QByteArray("ab\0cd", 5)), QString("ab"));
    QCOMPARE(converted(QByteArray("\0", 1)), QString(""));
    QCOMPARE(converted(""), QString(""));
    for (const char* text : {"\xc3\xb6\xc3\x9f", "\xe2\x82\xac", "\xf0\x9f\x92\xbb"}) {
        QCOMPARE(converted(text), QString::fromUtf8(text));
    }
    QCOMPARE(converted(QByteArray("\xef\xbf\xbd").repeated(5000)).size(), 5000);
    QVERIFY(CFStringToQString(nullptr).isNull());
    QVERIFY(messages.text().isEmpty());
    QCOMPARE(CFBooleanToQStringYesNo(kCFBooleanTrue), QString("Yes"));
    QCOMPARE(CFBooleanToQStringYesNo(kCFBooleanFalse), QString("No"));
}

void PlatformTest::propertyListKeyPaths()
{
    const auto answer = [](const char* path, const char* keyPath) {
        return currentMachine()->propertyListString(path, keyPath).value_or("none");
    };
    QCOMPARE(answer("/p", "a"), "A");
    QCOMPARE(answer("/p", "b.c"), "");
    for (const char* keyPath : {"b", "b.d", "b.x", "a.b", "x", "", "b.", ".a", "@a"}) {
        QCOMPARE(answer("/p", keyPath), "none");
    }
    QCOMPARE(answer("/q", "a"), "none");
    QVERIFY(currentMachine()->fileExists("/p"));
    QVERIFY(!currentMachine()->fileExists("/q"));
}

void PlatformTest::osVersionNames()
{
    QCOMPARE(osVersionName(10, 0, -7), QString("Cheetah"));
    QCOMPARE(osVersionName(10, 6, 8), QString("Snow Leopard"));
    QCOMPARE(osVersionName(10, 14, 7), QString("Mojave"));
    for (const int minor : {-1, 15, 16, INT_MIN, INT_MAX}) {
        QCOMPARE(osVersionName(10, minor, 0) + osVersionName(9, 6, 0) + osVersionName(11, 6, 0), QString());
    }
}

void PlatformTest::bonjour()
{
    QString text = "before ";
    int error = 1;
    checkBonjour(error, text);
    QCOMPARE(error, 0);
    QCOMPARE(text, QString("before 765.0.12"));
    QVERIFY(useMachine(""));
    checkBonjour(error, text);
    QCOMPARE(error, -65563);
    QCOMPARE(text, QString("before 765.0.12"));
}

void PlatformTest::fileSystems()
{
    const QString path = QString::fromUtf8("/Volumes/\xc3\xbc");
    MacStatfs record;
    QVERIFY(getFileSystemInfo(path, &record));
    QCOMPARE(record.f_bsize, 512U);
    QCOMPARE(record.f_files, ~std::uint64_t(0));
    QCOMPARE(QByteArray(record.f_mntonname),
             "/" + QByteArray("m").repeated(1021) + '\xc3'); // cut in a letter
    QCOMPARE(getFileSystemCaseSensitivity(path), 2);
    QVERIFY(!getFileSystemInfo("/Volumes/other", &record));
    QVERIFY(!getFileSystemInfo(path, nullptr));
}

QTEST_GUILESS_MAIN(PlatformTest)
#include "platformTest.moc"
