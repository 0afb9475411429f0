#include "cases.h"
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

QString joined(const QVector<CReportItem>& items)
{
    QString text;
    for (const CReportItem& item : items) {
        text += item.text();
    }
    return text;
}

/// The first property of documents that this text as a report does not have; empty when it has all.
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
    void json_data();
    void json();
    void jsonText_data();
    void jsonText();
    void jsonFailures_data();
    void jsonFailures();
    void limits();
    void compare_data();
    void compare();
    void endedComparison();
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
    QString visited;
    CReport::fromText(all).visit([&](const CReportItem& item) {
        visited += item.path() + ' ';
        return item.path() != names.at(2);
    });
    QCOMPARE(visited, names.mid(0, 3).join(' ') + ' ');
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

/// The report of a machine as a document; each path in it leads back to its item.
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
    addCases("reportDocument/sections.txt", {"text", "expected"});
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
    addCases("reportDocument/values.txt", {"text", "path", "expected"});
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
    addCases("reportDocument/numbers.txt", {"text", "expected"});
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

void ReportDocumentTest::json_data()
{
    addCases("reportDocument/json.txt", {"text", "expected"});
}

/// A document as a whole, member by member.
void ReportDocumentTest::json()
{
    QFETCH(QString, text);
    QTEST(QString::fromUtf8(CReport::fromText(text).toJson().toJson()), "expected");
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
    addCases("reportDocument/jsonFailures.txt", {"json", "expected"});
}

void ReportDocumentTest::jsonFailures()
{
    QFETCH(QString, json);
    QString message;
    QVERIFY(CReport::fromJson(QJsonDocument::fromJson(json.toUtf8()), &message).isNull());
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
    addCases("reportDocument/compare.txt", {"older", "newer", "expected"});
}

void ReportDocumentTest::compare()
{
    QFETCH(QString, older);
    QFETCH(QString, newer);
    QTEST(shown(CReport::fromText(older).compare(CReport::fromText(newer))), "expected");
}

void ReportDocumentTest::endedComparison()
{
    const QString begin = "###### System informations retrieved using Qt #######\nheading:\n";
    const CReport older = CReport::fromText(begin + QString("a: old\n").repeated(5000));
    const CReport newer = CReport::fromText(begin + QString("a: new\n").repeated(5000));
    const int all = older.compare(newer).size();
    QCOMPARE(all, 5000);
    int questions = 0;
    QCOMPARE(older.compare(newer, [&] { return ++questions > 0; }).size(), all);
    // While the entries of both reports are read, and while they are compared.
    for (const int last : {1, questions - 1}) {
        QVERIFY(older.compare(newer, [&, left = last]() mutable { return --left > 0; }).size() < all);
    }
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
