#pragma once

#include "systeminfo/norvexReport.h"

#include <QCoreApplication>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QVector>

namespace norvex {
namespace Viewer {

/// What a person wants to know of a machine first, taken from its report. Texts are short, however long the report's
/// are; numbers that cannot be are left out. Each part has the path of what it stands for.
class Overview
{
    Q_DECLARE_TR_FUNCTIONS(norvex::Viewer::Overview)

public:
    struct Fact
    {
        QString label; ///< empty for another device of the same kind
        QString value;
        QString path;
    };
    struct Volume
    {
        QString name;
        QString space;   ///< in words
        QString details; ///< its file system and where it is mounted
        QString path;
        bool isSizeKnown = false;
        double used = 0;     ///< the part that is used, from 0 to 1
        double reserved = 0; ///< the part that is neither used nor available
    };
    struct Screen
    {
        QString name;
        QString details;
        QString path;
        QSize size; ///< invalid where the report gives none that a screen can have
        bool isPrimary = false;
    };
    struct Interface
    {
        enum State { Unknown, Up, Down };

        QString name;
        QString kind;
        QString addresses;
        QString path;
        State state = Unknown;
    };
    /// The things of one kind in the report's order.
    template <typename Thing>
    struct Things
    {
        QVector<Thing> shown;
        int others = 0;           ///< how many more the report has
        bool isDescribed = false; ///< whether the report says anything about these things
        QString path;             ///< of their section
    };

    /// Looks through a report; it takes time in proportion to its text. Any thread.
    static Overview of(const SystemInfo::CReport& report);

    bool isEmpty() const;

    QString title; ///< the model, or the system of a report without one
    QString titlePath;
    QVector<Fact> facts;
    Things<Volume> volumes;
    Things<Screen> screens;
    Things<Interface> interfaces;

private:
    friend class OverviewBuilder;
};

} // namespace Viewer
} // namespace norvex
