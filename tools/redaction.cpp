#include "tools/redaction.h"

#include "tools/output.h"

#include <QSet>
#include <QStringList>

namespace norvex::Tool {

using namespace SystemInfo;

namespace {

/// So many characters of names stand in a message, which has room for 200.
const int longestNames = 105;
/// Nobody reads more names.
const int mostNames = 30;

/// As many messages as it takes: one that is too long would lose the names in its middle.
void printNames(QStringList names)
{
    if (names.size() > mostNames) {
        const QString others = QStringLiteral("%1 others").arg(names.size() - mostNames);
        names = names.mid(0, mostNames) << others;
    }
    QString line;
    for (int i = 0; i < names.size(); ++i) {
        line += (line.isEmpty() ? QString() : QStringLiteral(", ")) + names.at(i);
        const bool isLast = i + 1 == names.size();
        if (isLast || line.size() + names.at(i + 1).size() > longestNames) {
            printMessage(QStringLiteral("read these before you send them, --redact has no rules for them: %1")
                             .arg(line));
            line.clear();
        }
    }
}

QString quoted(const QString& section)
{
    return QStringLiteral("section '%1'").arg(section);
}

} // namespace

bool redact(SelectedReport& selected, CRedactor& redactor, QString& errorMessage)
{
    const int items = selected.places ? selected.report.content().size() : 0;
    selected.report = selected.report.redacted(&redactor);
    const bool isSame = !selected.places || selected.report.content().size() == items;
    if (!isSame) {
        errorMessage =
            QStringLiteral("the redacted report has other sections: redact it, then select from the result");
    }
    return isSame;
}

void printUnjudged(const SelectedReport& redacted)
{
    QStringList names;
    const QVector<CReportItem> items = redacted.report.content();
    const int count = redacted.places ? redacted.places->size() : items.size();
    for (int i = 0; i < count; ++i) {
        const CReportSection section = items.at(redacted.places ? redacted.places->at(i) : i).toSection();
        if (!section.isNull() && !section.isKnown()) {
            names += quoted(section.name());
        }
    }
    names.removeDuplicates();
    printNames(names);
}

void printUnjudged(const QVector<CReport>& redacted, const Differences& differences)
{
    QSet<QString> unknown;
    for (const CReport& report : redacted) {
        const QVector<CReportSection> sections = report.sections();
        for (const CReportSection& section : sections) {
            if (!section.isKnown()) {
                unknown += section.path();
            }
        }
    }
    QStringList names;
    for (const CReportDifference& difference : differences) {
        if (unknown.remove(difference.section())) {
            names += quoted(difference.section());
        }
    }
    printNames(names);
}

} // namespace norvex::Tool
