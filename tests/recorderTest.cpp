// Recordings made of recorded machines and of this host, as they are and anonymous.

#include "tests/cases.h"
#include "tests/recordingSupport.h"

#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/mac/platform/failureInjection.h"
#include "systeminfo/privacy/replacements.h"
#include "tools/anonymise/anonymiser.h"
#include "tools/record/recorder.h"
#include "tools/record/recordingWriter.h"

#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QRegularExpression>

#include <numeric>

using namespace norvex;
using Tool::RecordedValue;

namespace {

constexpr char everySecret[] = NORVEX_TEST_DATA "/recorder/everySecret.plist";

QByteArray recorded(bool isAnonymous = false, const QString& hostName = {})
{
    RecordedValue recording = Tool::recordMachine();
    if (isAnonymous) {
        Tool::anonymise(recording, hostName, {});
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

/// The content of a recording whose registry is a root with these properties and children.
QByteArray registryOf(const QByteArray& properties, const QByteArray& children = {})
{
    return "<key>registry</key><dict><key>properties</key><dict>" + properties +
           "</dict><key>children</key><array>" + children + "</array></dict>";
}

/// A recording from the list in recorder/machines.txt, for useMachine().
QByteArray machineNamed(const char* name)
{
    for (const Case& each : casesIn("recorder/machines.txt")) {
        if (each.name == QLatin1String(name)) {
            return each.texts.value(0).toUtf8();
        }
    }
    return "<missing>";
}

/// A private value, not encoded.
struct Secret
{
    QByteArray line; ///< of the list
    QByteArray bytes;
};

/// The private values of the recording that has them in every form. The head of the file explains the list.
QList<Secret> secrets()
{
    const QByteArray list = contentsOf(QStringLiteral(NORVEX_TEST_DATA "/recorder/secrets.txt"));
    QList<Secret> all;
    for (const QByteArray& line : list.mid(list.indexOf("\n\n") + 2).trimmed().split('\n')) {
        const QByteArray value = line.mid(line.indexOf(' ') + 1);
        if (line.startsWith("hex ")) {
            all += {line, QByteArray::fromHex(value)};
        } else if (line.startsWith("utf16 ")) {
            const QString text = QString::fromUtf8(value);
            all += {line, QByteArray(reinterpret_cast<const char*>(text.utf16()), 2 * text.size())};
        } else {
            all += {line, value};
        }
    }
    return all;
}

bool holds(const QByteArray& bytes, const Secret& secret)
{
    return secret.line.startsWith("hex ") ? bytes.contains(secret.bytes)
                                          : bytes.toLower().contains(secret.bytes.toLower());
}

/// The lines of a recording or a report, with data decoded.
QByteArrayList clearLines(const QByteArray& text)
{
    QByteArrayList lines = text.split('\n');
    for (QByteArray& line : lines) {
        const QByteArray value = line.trimmed();
        if (value.startsWith("<data>")) {
            line = QByteArray::fromBase64(value.mid(6, value.indexOf('<', 6) - 6));
        }
    }
    return lines;
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
    void nothingLeft();
    void nothingSpoiled();
    void consistent();
    void identifiers();
    void sameShape();
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

/// Injected failures are not recorded. All else is, and what was recorded is recorded again unchanged.
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
    addCases("recorder/differs.txt", {"content", "expected", "unexpected"});
}

void RecorderTest::differs()
{
    QFETCH(QString, content);
    QFETCH(QString, expected);
    QFETCH(QString, unexpected);
    QVERIFY(useMachine(content.toUtf8()));
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

/// The deepest nesting that a recording can have, of entries and of values.
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

/// Whatever fails, nothing is leaked, and what is written can be read.
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
    row("DEAD dead Dead", "BEEF beef Beef");
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
    all.add("dead", "Beef", R::Where::Anywhere, R::Letters::AllAsFound);
    all.add("one", "ten", R::Where::Word, R::Letters::EachAsFound);
    all.add("dir", "rid", R::Where::Component, R::Letters::EachAsFound);
    all.add("Exact", "Other", R::Where::Anywhere, R::Letters::Exact);
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, expected);
    QCOMPARE(all.replaced(text), expected);
}

/// Replaces sequences that are beginnings of each other, and compares the result with a simple search for each.
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

/// Recordings so large that quadratic time would be minutes take a second.
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

void RecorderTest::nothingLeft()
{
    QVERIFY(useRecording(contentsOf(everySecret)));
    const QByteArray before = clearLines(recorded()).join('\n');
    const QByteArray recording = recorded(true);
    const QByteArray after = clearLines(recording).join('\n');
    QVERIFY(secrets().size() >= 60);
    for (const Secret& secret : secrets()) {
        QVERIFY2(holds(before, secret), secret.line.constData());
        QVERIFY2(!holds(after, secret), (secret.line + " in " + after).constData());
    }
    int displays = 0;
    for (const QByteArray& line : clearLines(recording)) {
        if (line.startsWith(QByteArray("\0\xff\xff\xff\xff\xff\xff\0", 8))) {
            for (auto block = line.begin(); block != line.end(); block += 128) {
                QCOMPARE(std::accumulate(block, block + 128, 0) % 0x100, 0);
            }
            ++displays;
        }
    }
    QCOMPARE(displays, 3);
    QVERIFY(useRecording(recording));
    QCOMPARE(recorded(), recording);
}

/// What holds nothing private stays, in the recording and in the section.
void RecorderTest::nothingSpoiled()
{
    QVERIFY(useRecording(contentsOf(everySecret)));
    const QByteArray original = recorded() + section().toUtf8();
    const QByteArray recording = recorded(true);
    QVERIFY(useRecording(recording));
    const QByteArrayList lines = clearLines(original);
    QByteArrayList left = clearLines(recording + section().toUtf8());
    QCOMPARE(left.size(), lines.size());
    const QList<Secret> all = secrets();
    int stayed = 0;
    QByteArrayList spoiled;
    for (const QByteArray& line : lines) {
        const auto isHeld = [&line](const Secret& secret) { return holds(line, secret); };
        const bool isPublic = std::none_of(all.begin(), all.end(), isHeld);
        if (isPublic && !left.removeOne(line)) {
            spoiled += line;
        }
        stayed += isPublic ? 1 : 0;
    }
    QCOMPARE(spoiled.join('\n'), QByteArray());
    QVERIFY(stayed > 500);
}

void RecorderTest::consistent()
{
    QVERIFY(useMachine(machineNamed("serial numbers")));
    const QStringList found = textsIn(recorded(true));
    QCOMPARE(found.size(), 4);
    QVERIFY2(QRegularExpression(QStringLiteral("^[A-F]\\d\\d[A-F]{4}\\d$")).match(found[0]).hasMatch(),
             qPrintable(found[0]));
    QVERIFY(found[0] != found[1]);
    QCOMPARE(found[2], '-' + found[0].toLower() + '-' + found[0] + '-');
    QCOMPARE(found[3], found[1].toLower());
    QCOMPARE(recorded(true), recorded(true));

    QVERIFY(useMachine(machineNamed("class as a name")));
    const QStringList texts = textsIn(recorded(true));
    QCOMPARE(texts.size(), 2);
    QVERIFY(texts[0] != QLatin1String("IOUSBDevice"));
    QCOMPARE(texts[1], QStringLiteral("IOUSBDevice")); // the class

    QVERIFY(useMachine(machineNamed("short serial numbers")));
    const QStringList replaced = textsIn(recorded(true));
    QCOMPARE(QSet<QString>(replaced.begin(), replaced.end()).size(), 30);
    QVERIFY(!replaced.contains(QStringLiteral("A10")));
}

/// A UUID keeps its version, and the two bits of its variant.
void RecorderTest::identifiers()
{
    const QByteArray machine = machineNamed("identifiers");
    QVERIFY(useMachine(machine));
    const QStringList originals = textsIn(machine);
    const QStringList found = textsIn(recorded(true));
    QCOMPARE(found.size(), originals.size());
    for (int i = 0; i < found.size(); ++i) {
        const QRegularExpression shape(
            QStringLiteral("^[0-9A-F]{8}-[0-9A-F]{4}-%1[0-9A-F]{3}-[89AB][0-9A-F-]{16}$")
                .arg(originals[i].at(14)));
        QVERIFY2(shape.match(found[i]).hasMatch() && found[i] != originals[i], qPrintable(found[i]));
    }
}

/// The anonymous recording gives the same lines as the original, with other values.
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

QTEST_GUILESS_MAIN(RecorderTest)
#include "recorderTest.moc"
