#pragma once

#include "viewer/job.h"

#include "systeminfo/norvexReport.h"

#include <QCoreApplication>
#include <QString>
#include <QVector>

namespace norvex {
namespace Viewer {

/// What differs between two reports, by section and device. What always differs stands in a branch of its own, the last
/// one. Texts are short, however long the reports' are.
class Comparison
{
    Q_DECLARE_TR_FUNCTIONS(norvex::Viewer::Comparison)

public:
    struct Node
    {
        enum Type : quint8 { Section, Device, Difference, Expected, Note };

        QString name;
        QString oldValue; ///< in one line
        QString newValue;
        SystemInfo::CReportDifference difference; ///< of a difference
        QVector<int> children;
        int parent = -1; ///< an index; -1 at the top
        int row = 0;     ///< among the children of its parent
        Type type = Difference;
    };

    Comparison() = default;

    /// Compares; it takes time in proportion to the texts. Any thread.
    static Comparison of(const SystemInfo::CReport& older, const SystemInfo::CReport& newer,
                         const JobControl& control);
    /// The same of the reports without private data. What one of them tells is private in both.
    static Comparison redacted(const SystemInfo::CReport& older, const SystemInfo::CReport& newer,
                               const JobControl& control);

    const QVector<Node>& nodes() const { return nodes_; }
    const QVector<int>& top() const { return top_; }

    /// How many differences there are of a kind, without those to be expected.
    int count(SystemInfo::CReportDifference::Kind kind) const { return counts_[kind]; }
    int count() const;
    int expectedCount() const { return expectedCount_; }

    /// How many differences there are of each kind, in words; empty for none.
    QString summary() const;
    /// What differs, with whole values, but for what is expected to.
    QString text(const QString& oldTitle, const QString& newTitle) const;

private:
    friend class ComparisonBuilder;

    void appendText(QString& text, const Node& node, const QString& indent) const;

    QVector<Node> nodes_;
    QVector<int> top_;
    int counts_[4] = {0, 0, 0, 0};
    int expectedCount_ = 0;
};

/// A word for a kind of difference.
QString kindText(SystemInfo::CReportDifference::Kind kind);

} // namespace Viewer
} // namespace norvex
