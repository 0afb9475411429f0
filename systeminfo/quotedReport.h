#pragma once

#include <QString>

#include <vector>

namespace norvex::SystemInfo::Internal {

/// A report with something in front of each of its lines: quoted in a mail ("> "), or indented.
class QuotedReport
{
public:
    /// Looks for the first one between two positions, the first of which begins a line. What makes one is a banner, a
    /// separator or the environment's heading that has blanks or marks such as "> " or "# " in front of it.
    QuotedReport(const QString& text, int begin, int end);

    bool isNull() const { return lines_.empty(); }
    int begin() const { return lines_.front().begin; }
    int end() const { return end_; }

    /// The report without what stands in front of its lines. Lines between them that have nothing of the kind are in it:
    /// programs that send mail cut long lines in two.
    const QString& text() const { return text_; }

    /// Where a position of text() is in the quoting text.
    int placeOf(int position) const;
    /// Whether that line was quoted itself.
    bool isQuoted(int position) const;
    /// Whether nothing but the begin of a mark stands there.
    bool isCutOff(int position) const;

private:
    struct QuotedLine
    {
        int begin;  ///< in the quoting text
        int place;  ///< of what is behind the prefix
        int inText; ///< where that stands in text_
    };

    const QuotedLine& lineOf(int position) const;
    int prefixLength(const QString& text, int begin, int end) const;

    QString prefix_;
    QString text_;
    std::vector<QuotedLine> lines_;
    int end_ = 0;
};

} // namespace norvex::SystemInfo::Internal
