#include "tools/differences.h"

#include "systeminfo/boundedText.h"
#include "systeminfo/surrogates.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <algorithm>
#include <limits>

namespace norvex::Tool {

using namespace SystemInfo;

namespace {

/// A difference that is wider gets a line for each value.
const int widestLine = 120;

const char deeper[] = "    ";

const int formatNumber = 1;

struct Sign
{
    const char* mark;
    const char* name; // in JSON
    Style style;
};

Sign signOf(CReportDifference::Kind kind)
{
    switch (kind) {
    case CReportDifference::Added: return {"+", "added", Style::Added};
    case CReportDifference::Removed: return {"-", "removed", Style::Removed};
    case CReportDifference::Moved: return {">", "moved", Style::Changed};
    case CReportDifference::Changed: break;
    }
    return {"~", "changed", Style::Changed};
}

QString shown(const QString& text)
{
    return Internal::boundedText(text, std::numeric_limits<int>::max());
}

/// The path without its section's.
QString pathInSection(const QString& path, const QString& section)
{
    const QString inSection = path.mid(section.size());
    return shown(inSection.startsWith(QLatin1Char('/')) ? inSection.mid(1) : inSection);
}

QStringList linesOf(const QString& value)
{
    QStringList lines = value.split(QLatin1Char('\n'));
    if (lines.last().isEmpty()) {
        lines.removeLast();
    }
    return lines;
}

QString oneLine(const QStringList& lines)
{
    return lines.isEmpty() ? QStringLiteral("(nothing)") : shown(lines.first());
}

/// Writes the differences one after the other.
class DifferenceWriter
{
public:
    explicit DifferenceWriter(const Painter& painter) : painter_(painter) {}

    void append(const CReportDifference& difference);
    QString text() const { return text_; }

private:
    void appendHeading(const QString& section);
    void appendLine(CReportDifference::Kind kind, const QString& line);
    void appendLines(CReportDifference::Kind kind, const QStringList& lines, const char* indentation);
    void appendValues(const CReportDifference& difference, const QString& what);
    void appendWhole(const CReportDifference& difference, const QString& what);

    const Painter& painter_;
    QString text_;
    QString section_;
};

void DifferenceWriter::appendHeading(const QString& section)
{
    if (section != section_ || text_.isEmpty()) {
        text_ += painter_.painted(shown(section), Style::Heading) + QLatin1Char('\n');
        section_ = section;
    }
}

void DifferenceWriter::appendLine(CReportDifference::Kind kind, const QString& line)
{
    const Sign sign = signOf(kind);
    text_ += QStringLiteral("  ") +
             painter_.painted(QLatin1String(sign.mark) + QLatin1Char(' ') + line, sign.style) +
             QLatin1Char('\n');
}

void DifferenceWriter::appendLines(CReportDifference::Kind kind, const QStringList& lines,
                                   const char* indentation)
{
    for (const QString& line : lines) {
        appendLine(kind, QLatin1String(indentation) + shown(line));
    }
}

/// What changed, without the lines at the begin and end that did not.
void DifferenceWriter::appendValues(const CReportDifference& difference, const QString& what)
{
    QStringList oldLines = linesOf(difference.oldValue());
    QStringList newLines = linesOf(difference.newValue());
    if (oldLines.size() <= 1 && newLines.size() <= 1) {
        const QString line = QStringLiteral("%1: %2 → %3").arg(what, oneLine(oldLines), oneLine(newLines));
        if (line.size() <= widestLine) {
            appendLine(difference.kind(), line);
            return;
        }
    }
    while (!oldLines.isEmpty() && !newLines.isEmpty() && oldLines.first() == newLines.first()) {
        oldLines.removeFirst();
        newLines.removeFirst();
    }
    while (!oldLines.isEmpty() && !newLines.isEmpty() && oldLines.last() == newLines.last()) {
        oldLines.removeLast();
        newLines.removeLast();
    }
    appendLine(difference.kind(), what);
    appendLines(CReportDifference::Removed, oldLines, deeper);
    appendLines(CReportDifference::Added, newLines, deeper);
}

/// Something that only one report has, with its lines.
void DifferenceWriter::appendWhole(const CReportDifference& difference, const QString& what)
{
    const QStringList lines = linesOf(difference.oldValue() + difference.newValue());
    const bool isSection = difference.path() == difference.section();
    const bool isBlock =
        difference.path().endsWith(QLatin1Char(']')) && !difference.path().endsWith(QLatin1String("\\]"));
    if (isSection) {
        appendLines(difference.kind(), lines, "");
    } else if (isBlock || lines.size() > 1) {
        appendLine(difference.kind(), what);
        appendLines(difference.kind(), lines, deeper);
    } else {
        appendLine(difference.kind(), what + QStringLiteral(": ") + oneLine(lines));
    }
}

void DifferenceWriter::append(const CReportDifference& difference)
{
    appendHeading(difference.section());
    QString what = pathInSection(difference.path(), difference.section());
    if (what.isEmpty()) {
        what = difference.kind() == CReportDifference::Moved ? QStringLiteral("the section")
                                                             : QStringLiteral("other lines");
    }
    if (difference.isVolatile()) {
        what += QStringLiteral(" (volatile)");
    }
    switch (difference.kind()) {
    case CReportDifference::Changed: appendValues(difference, what); break;
    case CReportDifference::Moved:
        if (difference.path() != difference.oldPath()) {
            what += QStringLiteral(" from ") + pathInSection(difference.oldPath(), difference.section());
        }
        appendLine(difference.kind(), what);
        break;
    default: appendWhole(difference, what);
    }
}

QJsonObject toJson(const CReportDifference& difference)
{
    const CReportDifference::Kind kind = difference.kind();
    QJsonObject object{{QStringLiteral("kind"), QLatin1String(signOf(kind).name)},
                       {QStringLiteral("section"), Internal::validText(difference.section())},
                       {QStringLiteral("path"), Internal::validText(difference.path())},
                       {QStringLiteral("volatile"), difference.isVolatile()}};
    if (kind == CReportDifference::Moved) {
        object.insert(QStringLiteral("oldPath"), Internal::validText(difference.oldPath()));
    }
    if (kind == CReportDifference::Removed || kind == CReportDifference::Changed) {
        object.insert(QStringLiteral("old"), Internal::validText(difference.oldValue()));
    }
    if (kind == CReportDifference::Added || kind == CReportDifference::Changed) {
        object.insert(QStringLiteral("new"), Internal::validText(difference.newValue()));
    }
    return object;
}

} // namespace

Differences differencesBetween(const CReport& older, const CReport& newer, bool withVolatile)
{
    Differences differences = older.compare(newer);
    if (!withVolatile) {
        differences.erase(
            std::remove_if(differences.begin(), differences.end(),
                           [](const CReportDifference& difference) { return difference.isVolatile(); }),
            differences.end());
    }
    return differences;
}

QString differencesText(const Differences& differences, const Painter& painter)
{
    DifferenceWriter writer(painter);
    for (const CReportDifference& difference : differences) {
        writer.append(difference);
    }
    return writer.text();
}

QByteArray differencesJson(const Differences& differences)
{
    QJsonArray items;
    for (const CReportDifference& difference : differences) {
        items.append(toJson(difference));
    }
    return QJsonDocument(
               QJsonObject{{QStringLiteral("format"), formatNumber}, {QStringLiteral("differences"), items}})
        .toJson();
}

} // namespace norvex::Tool
