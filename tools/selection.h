#pragma once

#include "tools/options.h"

#include "systeminfo/norvexReport.h"
#include "systeminfo/norvexSystemInfo.h"

#include <QStringList>
#include <QVector>

#include <optional>

namespace norvex::Tool {

/// The sections that an output has, as --section and --without name them.
class Selection
{
public:
    /// Looks up what the options name: exactly, then in any letter case, then as a topic, then as the beginning of one
    /// name. The sections that a report has come first, those of the table follow.
    /// @param reports that the sections are selected from, apart from this machine's
    /// @param[out] errorMessage receives why the options are wrong: then there is no selection
    static std::optional<Selection> make(const Options& options, const QVector<SystemInfo::CReport>& reports,
                                         QString& errorMessage);

    /// Whether all sections are wanted.
    bool isAll() const { return sections_.isEmpty() && without_.isEmpty(); }
    /// Whether --section gives an order of its own.
    bool isOrdered() const { return !sections_.isEmpty(); }

    /// The names to print in their order, for isOrdered(). "macintosh" is the whole half.
    const QStringList& sections() const { return sections_; }
    /// Whether --without names the section.
    bool leavesOut(const SystemInfo::SectionInfo& section) const;
    /// Which sections of the report's table are wanted, in its order.
    QVector<SystemInfo::SectionInfo> wantedSections() const;
    /// What --section names, but none of these reports has.
    QStringList missingIn(const QVector<SystemInfo::CReport>& reports) const;

    /// The places of the items that an output has, in its order. A separator or banner goes when all sections that it
    /// frames go.
    QVector<int> places(const QVector<SystemInfo::CReportItem>& items) const;
    /// The same, but in the report's order and with separators and banners even where isOrdered(): what is read as a
    /// report needs them.
    QVector<int> placesInReport(const QVector<SystemInfo::CReportItem>& items) const;

private:
    bool addSections(const QStringList& names);
    bool isWanted(const QString& name, bool isMacintosh) const;
    bool isLeftOut(const QString& name, bool isMacintosh) const;

    QStringList sections_;
    QStringList without_;
    QVector<QPair<QString, QStringList>> given_; // each --section and the names that it stands for
};

} // namespace norvex::Tool
