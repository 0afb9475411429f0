#include "viewer/outline.h"

#include "viewer/itemTitles.h"

#include <algorithm>

namespace norvex::Viewer {

using namespace SystemInfo;

namespace {

/// No person reads more, and a tree of more can take more memory than the text.
const int mostNodes = 200000;
/// A longer section is not looked into.
const int longestSection = 4 << 20;
/// Longer ones are not kept: the path of a line of millions of characters has as many.
const int longestPath = 1000;
const int depths = 3;

// The marks of a line; smaller numbers say where its label ends.
const quint16 plainMark = 0;
const quint16 longestLabel = 0xff00;
const quint16 bannerMark = 0xff01;
const quint16 headingMark = 0xff02;
const quint16 nameMark = 0xff03;
const quint16 separatorMark = 0xff04;

QString pathOf(const CReportItem& item)
{
    const QString path = item.path();
    return path.size() <= longestPath ? path : QString();
}

} // namespace

class OutlineBuilder
{
public:
    using GoesOn = std::function<bool(int percent)>;

    OutlineBuilder(const CReport& report, const TextLines& lines, const GoesOn& goesOn)
        : report_(report), lines_(lines), goesOn_(goesOn)
    {}

    Outline build();

private:
    using Node = Outline::Node;

    void addItem(const CReportItem& item);
    void addHalf(const CReportItem& banner);
    Outline flattened();
    void addSection(const CReportSection& section);
    void addContent(const QVector<CReportItem>& content, int end, int depth);
    void addBlock(const CReportBlock& block, int depth);
    void markLabel(const CReportEntry& entry);
    int add(int depth, Node node);
    void endAt(int offset);
    int lineOf(int offset) const;

    const CReport& report_;
    const TextLines& lines_;
    const GoesOn& goesOn_;
    int place_ = 0; // in the text
    QVector<Node> levels_[depths];
    QVector<quint16> marks_;
    bool hasHalf_ = false;
    bool isComplete_ = true;
};

int OutlineBuilder::lineOf(int offset) const
{
    return offset >= lines_.text().size() ? lines_.count() : lines_.lineAt(offset);
}

int OutlineBuilder::add(int depth, Node node)
{
    QVector<Node>& level = levels_[depth];
    node.firstLine = lines_.lineAt(place_);
    if (depth > 0) {
        Node& parent = levels_[depth - 1].last();
        node.parent = levels_[depth - 1].size() - 1;
        node.row = parent.childCount++;
        if (node.row == 0) {
            parent.firstChild = level.size();
        }
    } else {
        node.row = level.size();
    }
    level.append(node);
    return depth;
}

void OutlineBuilder::addHalf(const CReportItem& banner)
{
    marks_[lines_.lineAt(place_)] = bannerMark;
    Node node;
    node.type = Node::Half;
    node.name = titleOfHalf(banner);
    add(0, node);
    hasHalf_ = true;
}

void OutlineBuilder::addSection(const CReportSection& section)
{
    Node node;
    node.type = Node::Section;
    node.name = titleOf(section);
    node.path = pathOf(section);
    const int end = place_ + section.text().size();
    const int depth = add(hasHalf_ ? 1 : 0, node);
    if (!section.heading().isEmpty()) {
        marks_[lines_.lineAt(place_)] = headingMark;
    }
    if (end - place_ <= longestSection) {
        addContent(section.content(), end, depth + 1);
    } else {
        isComplete_ = false;
    }
    place_ = end;
    levels_[depth].last().lineCount = lineOf(place_) - levels_[depth].last().firstLine;
}

/// The content stands at the end of its container.
void OutlineBuilder::addContent(const QVector<CReportItem>& content, int end, int depth)
{
    int size = 0;
    for (const CReportItem& item : content) {
        size += item.text().size();
    }
    place_ = end - size;
    for (const CReportItem& item : content) {
        const int next = place_ + item.text().size();
        if (item.type() == CReportItem::Block && depth < depths) {
            addBlock(item.toBlock(), depth);
        } else if (item.type() == CReportItem::Entry) {
            markLabel(item.toEntry());
        }
        place_ = next;
    }
}

void OutlineBuilder::addBlock(const CReportBlock& block, int depth)
{
    Node node;
    node.type = Node::Block;
    node.name = titleOf(block);
    node.path = pathOf(block);
    add(depth, node);
    const int firstLine = levels_[depth].last().firstLine;
    const int end = place_ + block.text().size();
    // The lines about a network interface begin with a line of underscores.
    const bool isRuled = lines_.text().midRef(place_).startsWith(QLatin1String("____"));
    marks_[firstLine] = isRuled ? separatorMark : nameMark;
    if (isRuled && firstLine + 1 < lineOf(end)) {
        marks_[firstLine + 1] = nameMark;
    }
    addContent(block.content(), end, depths);
    levels_[depth].last().lineCount = lineOf(end) - firstLine;
}

void OutlineBuilder::markLabel(const CReportEntry& entry)
{
    const int line = lines_.lineAt(place_);
    const QString label = entry.label();
    const int found = lines_.text().midRef(place_, longestLabel).indexOf(label);
    if (found == -1 || found + label.size() >= longestLabel || label.isEmpty()) {
        return;
    }
    int end = found + label.size();
    if (place_ + end < lines_.end(line) && lines_.text().at(place_ + end) == QLatin1Char(':')) {
        ++end;
    }
    marks_[line] = static_cast<quint16>(end);
}

void OutlineBuilder::addItem(const CReportItem& item)
{
    const int next = place_ + item.text().size();
    switch (item.type()) {
    case CReportItem::Banner: addHalf(item); break;
    case CReportItem::Separator: marks_[lines_.lineAt(place_)] = separatorMark; break;
    case CReportItem::Section: addSection(item.toSection()); break;
    default: break;
    }
    place_ = next;
}

Outline OutlineBuilder::build()
{
    marks_.fill(plainMark, lines_.count());
    const int size = std::max(lines_.text().size(), 1);
    report_.visit([this, size](const CReportItem& item) {
        if (!goesOn_(static_cast<int>(100LL * place_ / size)) ||
            levels_[0].size() + levels_[1].size() + levels_[2].size() > mostNodes) {
            isComplete_ = false;
            return false;
        }
        addItem(item);
        return true;
    });
    return flattened();
}

/// The levels one behind the other, with indices that count through all of them.
Outline OutlineBuilder::flattened()
{
    Outline outline;
    outline.topCount_ = levels_[0].size();
    outline.marks_ = marks_;
    outline.isComplete_ = isComplete_;
    int parents = 0;
    for (QVector<Node>& level : levels_) {
        const int begin = outline.nodes_.size();
        const int children = begin + level.size();
        for (Node& node : level) {
            node.parent += node.parent == -1 ? 0 : parents;
            node.firstChild += node.firstChild == -1 ? 0 : children;
            if (node.type == Node::Half) {
                const bool isLast = node.row + 1 == level.size();
                node.lineCount =
                    (isLast ? lineOf(place_) : level.at(node.row + 1).firstLine) - node.firstLine;
            }
        }
        outline.nodes_ += level;
        parents = begin;
    }
    return outline;
}

Outline Outline::of(const CReport& report, const TextLines& lines, const std::function<bool(int)>& goesOn)
{
    return OutlineBuilder(report, lines, goesOn).build();
}

int Outline::nodeAt(int line) const
{
    int found = -1;
    int first = 0;
    int count = topCount_;
    while (count > 0) {
        const auto begin = nodes_.begin() + first;
        const auto behind = std::upper_bound(
            begin, begin + count, line, [](int value, const Node& node) { return value < node.firstLine; });
        if (behind == begin || line >= (behind - 1)->firstLine + (behind - 1)->lineCount) {
            break;
        }
        found = static_cast<int>(behind - nodes_.begin()) - 1;
        first = nodes_.at(found).firstChild;
        count = nodes_.at(found).childCount;
    }
    return found;
}

LineKind Outline::kind(int line) const
{
    switch (line < marks_.size() ? marks_.at(line) : plainMark) {
    case plainMark: return LineKind::Plain;
    case bannerMark: return LineKind::Banner;
    case headingMark: return LineKind::Heading;
    case nameMark: return LineKind::Name;
    case separatorMark: return LineKind::Separator;
    default: return LineKind::Label;
    }
}

int Outline::labelEnd(int line) const
{
    return kind(line) == LineKind::Label ? marks_.at(line) : 0;
}

} // namespace norvex::Viewer
