#include "systeminfo/quotedReport.h"

#include "systeminfo/reportFormat.h"

#include <algorithm>

namespace norvex::SystemInfo::Internal {

namespace {

constexpr int longestMark = 60;
constexpr int mostUnquoted = 200; ///< lines between quoted ones; bounds the time

/// How many marks stand in front of a line that only reports have; 0 for any other line. A mark has no letter or digit, and
/// does not go on as the line begins.
int marksBeforeStructure(const QString& text, const Line& line)
{
    const int last = std::min(line.end, line.begin + longestMark);
    for (int begin = line.begin; begin < last && !text.at(begin).isLetterOrNumber(); ++begin) {
        const QChar next = begin + 1 < line.end ? text.at(begin + 1) : QChar();
        if (next == text.at(begin)) {
            continue; // within hyphens or number signs
        }
        const Line bare = {begin + 1, line.end, line.next};
        if (isSeparator(text, bare) || bannerHalf(text, bare) != Half::None ||
            sectionOf(text, bare, Half::Qt) == environmentFormat()) {
            return bare.begin - line.begin;
        }
    }
    return 0;
}

} // namespace

QuotedReport::QuotedReport(const QString& text, int begin, int end)
{
    int runBegin = begin; // of the lines that begin with the same mark
    Line line = {begin, begin, begin};
    for (; prefix_.isEmpty() && line.next < end;) {
        const Line previous = line;
        line = lineAt(text, line.next);
        const bool goesOn =
            !line.isEmpty() && !previous.isEmpty() && text.at(line.begin) == text.at(previous.begin);
        runBegin = goesOn ? runBegin : line.begin;
        prefix_ = text.mid(line.begin, marksBeforeStructure(text, line));
    }
    if (prefix_.isEmpty()) {
        return;
    }
    int unquoted = 0;
    for (int position = runBegin; position < end && unquoted < mostUnquoted;) {
        const Line each = lineAt(text, position);
        const int length = prefixLength(text, each.begin, each.end);
        lines_.push_back({each.begin, each.begin + length, text_.size()});
        text_ += text.midRef(each.begin + length, each.next - each.begin - length);
        position = each.next;
        ++unquoted;
        if (length > 0) {
            end_ = position;
            unquoted = 0;
        }
    }
    while (lines_.back().begin >= end_) {
        text_.truncate(lines_.back().inText);
        lines_.pop_back();
    }
}

/// A program that cuts blanks off leaves less of the prefix on lines that are empty.
int QuotedReport::prefixLength(const QString& text, int begin, int end) const
{
    const int common = static_cast<int>(std::mismatch(prefix_.begin(),
                                                      prefix_.begin() + std::min(prefix_.size(), end - begin),
                                                      text.begin() + begin)
                                            .first -
                                        prefix_.begin());
    return common == prefix_.size() || begin + common == end ? common : 0;
}

const QuotedReport::QuotedLine& QuotedReport::lineOf(int position) const
{
    const auto behind =
        std::upper_bound(lines_.begin(), lines_.end(), position,
                         [](int wanted, const QuotedLine& line) { return wanted < line.inText; });
    return *(behind - 1);
}

int QuotedReport::placeOf(int position) const
{
    const QuotedLine& line = lineOf(position);
    return line.place + position - line.inText;
}

bool QuotedReport::isQuoted(int position) const
{
    const QuotedLine& line = lineOf(position);
    return line.place != line.begin;
}

bool QuotedReport::isCutOff(int position) const
{
    const QuotedLine& line = lineOf(position);
    return line.place != line.begin && line.place - line.begin < prefix_.size();
}

} // namespace norvex::SystemInfo::Internal
