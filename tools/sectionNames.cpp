#include "tools/sectionNames.h"

#include "tools/sections.h"

#include <QSet>

#include <algorithm>
#include <numeric>
#include <vector>

namespace norvex::Tool {

using namespace SystemInfo;

namespace {

const Qt::CaseSensitivity anyCase = Qt::CaseInsensitive;

/// How many letters must be added, removed or replaced to make one text of the other.
int editDistance(const QString& from, const QString& to)
{
    std::vector<int> row(static_cast<std::size_t>(to.size()) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (const QChar letter : from) {
        int diagonal = row[0]++;
        for (std::size_t i = 1; i < row.size(); ++i) {
            const bool isSame = letter == to.at(static_cast<int>(i) - 1);
            const int replaced = diagonal + (isSame ? 0 : 1);
            diagonal = row[i];
            row[i] = std::min({replaced, row[i] + 1, row[i - 1] + 1});
        }
    }
    return row.back();
}

/// Whether somebody who wrote `given` may have meant this.
bool resembles(const QString& name, const QString& given)
{
    const int shortestPart = 3;
    if (given.size() >= shortestPart && name.contains(given, anyCase)) {
        return true;
    }
    const int mostErrors = std::max(1, name.size() / 3);
    return std::abs(name.size() - given.size()) <= mostErrors &&
           editDistance(name.toLower(), given.toLower()) <= mostErrors;
}

} // namespace

SectionNames::SectionNames(const QVector<CReport>& reports, bool withMachine)
{
    QSet<QString> seen;
    QStringList inReports;
    for (const CReport& report : reports) {
        const QVector<CReportSection> sections = report.sections();
        for (const CReportSection& section : sections) {
            if (section.half() == QLatin1String(macintoshName)) {
                seen += QLatin1String(macintoshName);
            }
            const QString name = section.name();
            if (!seen.contains(name)) {
                seen += name;
                inReports += name;
            }
        }
    }
    for (const SectionInfo& section : namedSections()) {
        const QString name = QLatin1String(section.name);
        sections_.append({name, section.topics, withMachine || seen.contains(name)});
        inReports.removeOne(name);
    }
    for (const QString& name : inReports) {
        sections_.append({name, {}, true});
    }
}

/// Of the sections that are meant those that are there, or all if none is.
template <typename IsMeant>
QStringList SectionNames::matching(IsMeant isMeant) const
{
    QStringList there;
    QStringList all;
    for (const Section& section : sections_) {
        if (isMeant(section)) {
            all += section.name;
            there += section.isThere ? QStringList(section.name) : QStringList();
        }
    }
    return there.isEmpty() ? all : there;
}

QStringList SectionNames::find(const QString& name, QString& errorMessage) const
{
    const auto isExact = [&](const Section& section) { return section.name == name; };
    const auto isAlike = [&](const Section& section) { return section.name.compare(name, anyCase) == 0; };
    const auto isAbout = [&](const Section& section) { return section.topics.contains(name, anyCase); };
    const auto begins = [&](const Section& section) {
        return !name.isEmpty() && section.name.startsWith(name, anyCase);
    };
    for (const QStringList& found :
         QVector<QStringList>{matching(isExact), matching(isAlike).mid(0, 1), matching(isAbout)}) {
        if (!found.isEmpty()) {
            return found;
        }
    }
    QStringList found = matching(begins);
    if (found.size() == 1) {
        return found;
    }
    errorMessage = QStringLiteral("unknown section '%1'").arg(name);
    if (!found.isEmpty()) {
        errorMessage = QStringLiteral("several sections begin with '%1': %2")
                           .arg(name, found.join(QStringLiteral(", ")));
    } else if (!(found = suggestions(name)).isEmpty()) {
        errorMessage += QStringLiteral("; did you mean %1?").arg(found.join(QStringLiteral(" or ")));
    } else {
        errorMessage += QStringLiteral(" (--list-sections prints the names)");
    }
    return {};
}

QStringList SectionNames::suggestions(const QString& name) const
{
    QStringList names;
    for (const Section& section : sections_) {
        for (const QString& topic : section.topics) {
            names += resembles(topic, name) ? QStringList(topic) : QStringList();
        }
        names += resembles(section.name, name) ? QStringList(section.name) : QStringList();
    }
    names.removeDuplicates();
    return names;
}

} // namespace norvex::Tool
