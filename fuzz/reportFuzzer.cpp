// A report as a document, as JSON, redacted, and beside another report: what stands behind the last zero character of
// the input is the other one. An input that is JSON is read as a document of reports, too.

#include "fuzz/require.h"
#include "systeminfo/norvexReport.h"

#include <QJsonDocument>
#include <QSet>

#include <algorithm>
#include <cstdint>
#include <sanitizer/lsan_interface.h>

namespace {

using namespace norvex::SystemInfo;

QString joined(const QVector<CReportItem>& items)
{
    QString text;
    for (const CReportItem& item : items) {
        require(!item.isNull() && !item.text().isEmpty(), "an item has lines");
        text += item.text();
    }
    return text;
}

void checkPaths(const CReport& report, const QVector<CReportItem>& items, QSet<QString>& paths)
{
    for (const CReportItem& item : items) {
        const bool hasPath = item.type() == CReportItem::Section || item.type() == CReportItem::Block ||
                             item.type() == CReportItem::Entry;
        if (!hasPath) {
            require(item.path().isEmpty(), "lines have no path");
            continue;
        }
        require(!paths.contains(item.path()), "no two paths are one");
        paths.insert(item.path());
        constexpr int fewPaths = 50; // looking for one reads the whole report
        require(paths.size() > fewPaths || report.item(item.path()).text() == item.text(),
                "a path leads back");
        require(item.toEntry().numbers().size() == item.toEntry().units().size(), "each number has a unit");
        checkPaths(report, item.toBlock().content(), paths);
    }
}

void checkDocument(const CReport& report, const QString& text)
{
    require(report.text() == text, "the text stays");
    require(joined(report.content()) == text, "the content is the text");
    QSet<QString> paths;
    checkPaths(report, report.content(), paths);
    for (const CReportSection& section : report.sections()) {
        const QString content = joined(section.content());
        require(section.text().endsWith(content), "the content ends the section");
        require(section.heading().isEmpty() ? section.text() == content : section.text() != content,
                "the heading is no content");
        checkPaths(report, section.content(), paths);
        for (const CReportBlock& block : section.blocks()) {
            require(joined(block.content()) == block.text(), "the content is the block");
        }
    }
}

void checkJson(const CReport& report)
{
    QString message;
    const QByteArray json = report.toJson(&message).toJson(QJsonDocument::Compact);
    require(message.isEmpty(), "a small report becomes JSON");
    require(CReport::fromJson(QJsonDocument::fromJson(json)).text() == report.text(),
            "JSON gives the report back");
}

/// Qt 5.15 leaks what it has read of broken JSON.
QJsonDocument parsed(const QByteArray& json)
{
    const __lsan::ScopedDisabler noLeaks;
    return QJsonDocument::fromJson(json);
}

int count(const QVector<CReportDifference>& differences, CReportDifference::Kind kind)
{
    return static_cast<int>(
        std::count_if(differences.begin(), differences.end(),
                      [kind](const CReportDifference& each) { return each.kind() == kind; }));
}

void checkComparison(const CReport& older, const CReport& newer)
{
    require(older.compare(older).isEmpty(), "a report does not differ from itself");
    const QVector<CReportDifference> there = older.compare(newer);
    const QVector<CReportDifference> back = newer.compare(older);
    require(count(there, CReportDifference::Added) == count(back, CReportDifference::Removed),
            "added, then removed");
    require(count(there, CReportDifference::Moved) == count(back, CReportDifference::Moved),
            "moved there and back");
    require(there.size() == back.size(), "as many differences there and back");
    for (const CReportDifference& difference : there) {
        const bool isAdded = difference.kind() == CReportDifference::Added;
        require(isAdded || !older.item(difference.oldPath()).isNull(), "the old report has the old path");
        require(difference.kind() == CReportDifference::Removed || !newer.item(difference.path()).isNull(),
                "the new report has the path");
    }
}

void checkRedaction(const CReport& report)
{
    const CReport redacted = report.redacted();
    require(redacted.text().count(QLatin1Char('\n')) == report.text().count(QLatin1Char('\n')),
            "the number of lines stays");
    require(redacted.redacted().text() == redacted.text(), "what is redacted stays");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<int>(size));
    QString text = QString::fromUtf8(bytes);
    // What no UTF-8 can hold.
    text.replace(QLatin1String("<high>"), QString(QChar(0xd83d)))
        .replace(QLatin1String("<low>"), QString(QChar(0xde00)));
    const CReport report = CReport::fromText(text);
    checkDocument(report, text);
    checkJson(report);
    checkRedaction(report);
    checkComparison(report, CReport::fromText(text.mid(text.lastIndexOf(QChar(0)) + 1)));

    QString message;
    const CReport fromJson = CReport::fromJson(parsed(bytes), &message);
    require(fromJson.isNull() != message.isEmpty(), "a failure says why");
    if (!fromJson.isNull()) {
        checkJson(fromJson);
    }
    return 0;
}
