#pragma once

#include "systeminfo/norvexReport.h"

#include <QStringList>
#include <QVector>

namespace norvex::Tool {

/// Finds sections by what people call them.
class SectionNames
{
public:
    /// @param reports whose sections can be named, too
    /// @param withMachine whether this machine has all sections of the table
    SectionNames(const QVector<SystemInfo::CReport>& reports, bool withMachine);

    /// The sections of a name: the one of that name, exactly or else in any letter case; those of a topic, in the
    /// report's order; the one whose name alone begins so. None, with a message, when there is no such section.
    QStringList find(const QString& name, QString& errorMessage) const;

private:
    struct Section
    {
        QString name;
        QStringList topics;
        bool isThere; // in a report or on this machine
    };

    template <typename IsMeant>
    QStringList matching(IsMeant isMeant) const;
    QStringList suggestions(const QString& name) const;

    QVector<Section> sections_;
};

} // namespace norvex::Tool
