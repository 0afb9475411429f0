#pragma once

#include "systeminfo/norvexReport.h"
#include "systeminfo/reportParts.h"

#include <QHash>
#include <QSharedData>

namespace norvex::SystemInfo {

/// The text, and where its parts begin.
class CReportPrivate : public QSharedData
{
public:
    explicit CReportPrivate(const QString& reportText) : text(reportText), parts(Internal::partsOf(text)) {}

    int endOf(int part) const { return part + 1 < parts.size() ? parts.at(part + 1).begin : text.size(); }

    const QString text;
    const QVector<Internal::Part> parts;
};

class CReportDifferencePrivate : public QSharedData
{
public:
    CReportDifference::Kind kind = CReportDifference::Changed;
    QString path;
    QString oldPath;
    QString section;
    QString oldValue;
    QString newValue;
    bool isVolatile = false;

    static CReportDifference difference(const CReportDifferencePrivate& data);
};

namespace Internal {

/// Makes the names of neighbours differ: the parts of their paths.
class SiblingNames
{
public:
    /// The characters that get a backslash. Between the brackets of a block a slash needs none.
    enum Escaped { InBrackets, Elsewhere };

    explicit SiblingNames(Escaped escaped) : escaped_(escaped) {}

    /// The name as it stands in a path, with "#2" behind the second of its kind.
    QString add(const QString& name);

private:
    QString escape(const QString& name) const;
    /// Whether add() gave the name as another one's with a number.
    bool isGivenAsNumber(const QString& escaped) const;

    const Escaped escaped_;
    QHash<QString, int> counts_;
};

inline QString blockPath(const QString& section, const QString& name)
{
    return section + QLatin1Char('[') + name + QLatin1Char(']');
}

inline QString entryPath(const QString& container, const QString& name)
{
    return container + QLatin1Char('/') + name;
}

/// The half that a section is shown to be in.
inline Half halfOf(const Part& section)
{
    return section.format() != nullptr ? section.format()->half : section.half;
}

} // namespace Internal

} // namespace norvex::SystemInfo
