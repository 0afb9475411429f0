#include "tools/selection.h"

#include "tools/sectionNames.h"
#include "tools/sections.h"

#include "systeminfo/reportTexts.h"

#include <algorithm>

namespace norvex::Tool {

using namespace SystemInfo;

namespace {

bool isMacintosh(const SectionInfo& section)
{
    return section.half == ReportHalf::Macintosh;
}

bool isMacintosh(const CReportSection& section)
{
    return section.half() == QLatin1String(macintoshName);
}

bool isMacintoshBanner(const CReportItem& banner)
{
    return banner.text().startsWith(QLatin1String(Internal::macintoshBanner));
}

/// Whether the report has a section of that name.
bool hasSection(const CReport& report, const QString& name)
{
    if (name != QLatin1String(macintoshName)) {
        return !report.section(name).isNull();
    }
    const QVector<CReportSection> sections = report.sections();
    return std::any_of(sections.begin(), sections.end(),
                       [](const CReportSection& section) { return isMacintosh(section); });
}

/// Collects the places of items in their order. What frames sections goes when they all go.
class FramedPlaces
{
public:
    void addBanner(int place)
    {
        endHalf();
        halfBegin_ = places_.size();
        hasKept_ = hasDropped_ = hasKeptInGroup_ = hasDroppedInGroup_ = false;
        places_.append(place);
    }

    void addSection(int place, bool isWanted)
    {
        (isWanted ? hasKept_ : hasDropped_) = true;
        (isWanted ? hasKeptInGroup_ : hasDroppedInGroup_) = true;
        if (isWanted) {
            places_.append(place);
        }
    }

    void addSeparator(int place)
    {
        if (hasKeptInGroup_ || !hasDroppedInGroup_) {
            places_.append(place);
        }
        hasKeptInGroup_ = hasDroppedInGroup_ = false;
    }

    void addLines(int place)
    {
        hasKept_ = hasKeptInGroup_ = true;
        places_.append(place);
    }

    QVector<int> places()
    {
        endHalf();
        return places_;
    }

private:
    void endHalf()
    {
        if (hasDropped_ && !hasKept_) {
            places_.resize(halfBegin_);
        }
    }

    QVector<int> places_;
    int halfBegin_ = 0; // in places_
    bool hasKept_ = false;
    bool hasDropped_ = false;
    bool hasKeptInGroup_ = false;
    bool hasDroppedInGroup_ = false;
};

QStringList optionsNaming(const QStringList& names, const std::vector<GivenSection>& given,
                          const SectionNames& known)
{
    QStringList options;
    QString ignored;
    for (const GivenSection& section : given) {
        const QStringList found = known.find(section.name, ignored);
        if (std::any_of(found.begin(), found.end(),
                        [&names](const QString& name) { return names.contains(name); })) {
            options += section.option;
        }
    }
    return options;
}

} // namespace

std::optional<Selection> Selection::make(const Options& options, const QVector<CReport>& reports,
                                         QString& errorMessage)
{
    Selection selection;
    if (options.sections.empty() && options.without.empty()) {
        return selection;
    }
    const SectionNames known(reports, options.asksMachine());
    for (const GivenSection& given : options.without) {
        const QStringList names = known.find(given.name, errorMessage);
        if (names.isEmpty()) {
            return std::nullopt;
        }
        selection.without_ += names;
    }
    for (const GivenSection& given : options.sections) {
        const QStringList names = known.find(given.name, errorMessage);
        if (names.isEmpty()) {
            return std::nullopt;
        }
        if (!selection.addSections(names)) {
            errorMessage =
                QStringLiteral("%1 and %2 exclude each other")
                    .arg(given.option,
                         optionsNaming(names, options.without, known).join(QStringLiteral(" and ")));
            return std::nullopt;
        }
        selection.given_.append({given.name, names});
    }
    return selection;
}

/// A topic adds what is not there yet; a name always adds itself.
/// @return false when all of it is left out
bool Selection::addSections(const QStringList& names)
{
    bool isAnyLeft = false;
    for (const QString& name : names) {
        if (without_.contains(name)) {
            continue;
        }
        isAnyLeft = true;
        if (names.size() == 1 || !sections_.contains(name)) {
            sections_ += name;
        }
    }
    return isAnyLeft;
}

bool Selection::isLeftOut(const QString& name, bool isInMacintosh) const
{
    return without_.contains(name) || (isInMacintosh && without_.contains(QLatin1String(macintoshName)));
}

bool Selection::leavesOut(const SectionInfo& section) const
{
    return isLeftOut(QLatin1String(section.name), isMacintosh(section));
}

bool Selection::isWanted(const QString& name, bool isInMacintosh) const
{
    const bool isNamed = sections_.isEmpty() || sections_.contains(name) ||
                         (isInMacintosh && sections_.contains(QLatin1String(macintoshName)));
    return isNamed && !isLeftOut(name, isInMacintosh);
}

QVector<SectionInfo> Selection::wantedSections() const
{
    QVector<SectionInfo> wanted;
    for (const SectionInfo& section : reportSections()) {
        if (isWanted(QLatin1String(section.name), isMacintosh(section))) {
            wanted.append(section);
        }
    }
    return wanted;
}

QStringList Selection::missingIn(const QVector<CReport>& reports) const
{
    QStringList missing;
    for (const auto& given : given_) {
        const bool isThere = std::any_of(reports.begin(), reports.end(), [&given](const CReport& report) {
            return std::any_of(given.second.begin(), given.second.end(),
                               [&report](const QString& name) { return hasSection(report, name); });
        });
        if (!isThere) {
            missing += given.first;
        }
    }
    return missing;
}

QVector<int> Selection::placesInReport(const QVector<CReportItem>& items) const
{
    const bool hasHalf = sections_.contains(QLatin1String(macintoshName));
    bool isInHalf = false;
    FramedPlaces places;
    for (int i = 0; i < items.size(); ++i) {
        const CReportSection section = items.at(i).toSection();
        switch (items.at(i).type()) {
        case CReportItem::Banner:
            isInHalf = isMacintoshBanner(items.at(i));
            places.addBanner(i);
            break;
        case CReportItem::Section:
            places.addSection(i, isWanted(section.name(), isMacintosh(section)));
            break;
        case CReportItem::Separator: places.addSeparator(i); break;
        default:
            // They belong to no section that --section could name, but to a half.
            if (!isOrdered() || (hasHalf && isInHalf)) {
                places.addLines(i);
            }
        }
    }
    return places.places();
}

QVector<int> Selection::places(const QVector<CReportItem>& items) const
{
    const QVector<int> inReport = placesInReport(items);
    if (!isOrdered()) {
        return inReport;
    }
    QVector<int> places;
    for (const QString& name : sections_) {
        const bool isHalf = name == QLatin1String(macintoshName);
        bool isInHalf = false;
        for (const int place : inReport) {
            const CReportItem& item = items.at(place);
            const CReportSection section = item.toSection();
            if (item.type() == CReportItem::Banner) {
                isInHalf = isMacintoshBanner(item);
            }
            const bool isPart = section.isNull() ? isInHalf : isMacintosh(section);
            if (isHalf ? isPart : !section.isNull() && section.name() == name) {
                places.append(place);
            }
        }
    }
    return places;
}

} // namespace norvex::Tool
