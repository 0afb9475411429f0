#pragma once

#include "viewer/textLines.h"

#include "systeminfo/norvexReport.h"

#include <QString>
#include <QVector>

#include <functional>

namespace norvex::Viewer {

/// What stands in a line of a report.
enum class LineKind : quint8 {
    Plain,
    Banner,
    Heading, ///< of a section
    Name,    ///< the first line of a block
    Label,   ///< a label and its value
    Separator
};

/// The halves, sections and blocks of a report with their lines, and what stands in each line.
class Outline
{
public:
    struct Node
    {
        enum Type : quint8 { Half, Section, Block };

        QString name; ///< as people read it, at most a line of some 100 characters
        QString path; ///< of a section or block, see CReportItem::path(); empty where it is too long
        int firstLine = 0;
        int lineCount = 0;
        int parent = -1;     ///< an index, -1 at the top
        int firstChild = -1; ///< an index; the children follow each other
        int childCount = 0;
        int row = 0; ///< among the children of its parent
        Type type = Section;
    };

    Outline() = default;

    /// Looks through a report; it takes time in proportion to its text.
    /// @param goesOn is asked now and then whether to go on; without, the outline ends there
    static Outline of(const SystemInfo::CReport& report, const TextLines& lines,
                      const std::function<bool(int percent)>& goesOn);

    /// Whether everything is in it. A section of millions of characters has no blocks and labels here, because these
    /// would take many times its memory.
    bool isComplete() const { return isComplete_; }
    /// Whether there are more sections and blocks than it has.
    bool hasTooManyNodes() const { return hasTooManyNodes_; }

    /// The nodes: those of the top first, and children of one node together.
    const QVector<Node>& nodes() const { return nodes_; }
    int topCount() const { return topCount_; }

    /// The innermost node that a line stands in; -1 for none.
    int nodeAt(int line) const;

    LineKind kind(int line) const;
    /// Of a line with a label: where it ends in the line, with its colon.
    int labelEnd(int line) const;

private:
    friend class OutlineBuilder;

    QVector<Node> nodes_;
    QVector<quint16> marks_; // of each line: where the label ends, or its kind
    int topCount_ = 0;
    bool isComplete_ = true;
    bool hasTooManyNodes_ = false;
};

} // namespace norvex::Viewer
