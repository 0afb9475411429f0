#include "systeminfo/reportPrivate.h"

#include <algorithm>
#include <functional>
#include <vector>

namespace norvex::SystemInfo {

using namespace Internal;

namespace {

/// A section, block or entry as a comparison sees it. The others of its container have other names.
struct Node
{
    QString name; // a part of its path
    int begin;
    int end;
    bool isSection;
    Part part;   // of a section
    Piece piece; // of a block or entry
    const SectionFormat* format;
};

/// The nodes in a report, section or block, and its lines that are none.
struct Nodes
{
    std::vector<Node> all;
    QString lines;
};

/// Whether the caller still waits for the result.
class Interest
{
public:
    explicit Interest(const std::function<bool()>& goesOn) : goesOn_(goesOn) {}

    /// Call it for each of many small steps: only one in a thousand asks the caller.
    bool isLost()
    {
        constexpr unsigned stepsPerQuestion = 1000;
        if (!isLost_ && ++steps_ % stepsPerQuestion == 0) {
            isLost_ = !goesOn_();
        }
        return isLost_;
    }

private:
    const std::function<bool()>& goesOn_;
    unsigned steps_ = 0;
    bool isLost_ = false;
};

QString withoutCarriageReturns(QString lines)
{
    return lines.replace(QLatin1String("\r\n"), QLatin1String("\n"));
}

Nodes sectionNodes(const CReportPrivate& report, Interest& interest)
{
    Nodes nodes;
    SiblingNames names(SiblingNames::Elsewhere);
    for (int i = 0; i < report.parts.size() && !interest.isLost(); ++i) {
        const Part& part = report.parts.at(i);
        const int end = report.endOf(i);
        if (part.type == Part::Section) {
            nodes.all.push_back({names.add(sectionName(report.text, part, end)),
                                 part.begin,
                                 end,
                                 true,
                                 part,
                                 {},
                                 part.format()});
        }
    }
    return nodes;
}

/// The content of a section or block without the lines that say a block's number or name.
Container comparedContent(const QString& text, const Node& node)
{
    Container content =
        node.isSection ? contentOf(text, node.part, node.end) : contentOf(node.piece, *node.format);
    for (; content.ownLines > 0 && content.begin < content.end; --content.ownLines) {
        content.begin = lineAt(text, content.begin).next;
    }
    return content;
}

Nodes contentNodes(const QString& text, const Container& container, Interest& interest)
{
    Nodes nodes;
    SiblingNames blocks(SiblingNames::InBrackets);
    SiblingNames entries(SiblingNames::Elsewhere);
    PieceReader reader(text, container);
    for (Piece piece; reader.next(piece) && !interest.isLost();) {
        if (piece.type == Piece::Lines) {
            const int end = withoutLineEnd(text, piece.begin, piece.end);
            nodes.lines +=
                withoutCarriageReturns(text.mid(piece.begin, end - piece.begin)) + QLatin1Char('\n');
            continue;
        }
        const QString name = piece.type == Piece::Block
                                 ? blockPath(QString(), blocks.add(blockName(text, piece, *container.format)))
                                 : entryPath(QString(), entries.add(labelOf(text, piece.entry)));
        nodes.all.push_back({name, piece.begin, piece.end, false, {}, piece, container.format});
    }
    nodes.lines.chop(1);
    return nodes;
}

/// For each place in the old order whether it is out of order: not in the longest ascending row of places.
std::vector<bool> outOfOrder(const std::vector<int>& places)
{
    std::vector<int> last;                        // for each length the row's end with the lowest place
    std::vector<int> previous(places.size(), -1); // in the row that ends here
    for (std::size_t i = 0; i < places.size(); ++i) {
        const auto longer = std::lower_bound(last.begin(), last.end(), places[i], [&](int index, int place) {
            return places[std::size_t(index)] < place;
        });
        previous[i] = longer == last.begin() ? -1 : *(longer - 1);
        if (longer == last.end()) {
            last.push_back(static_cast<int>(i));
        } else {
            *longer = static_cast<int>(i);
        }
    }
    std::vector<bool> isOut(places.size(), true);
    for (int i = last.empty() ? -1 : last.back(); i != -1; i = previous[std::size_t(i)]) {
        isOut[std::size_t(i)] = false;
    }
    return isOut;
}

/// Which nodes of two containers are the same thing.
struct Pairs
{
    std::vector<int> oldOfNew; // for each new node the old one, or -1
    std::vector<bool> isOldPaired;
    std::vector<bool> isRenamed; // the new ones that were paired in spite of their names

    void join(int oldIndex, std::size_t newIndex)
    {
        oldOfNew[newIndex] = oldIndex;
        isOldPaired[std::size_t(oldIndex)] = true;
    }
};

/// The name of a USB device without its location.
QString usbDevice(const Node& node)
{
    const int location = node.name.lastIndexOf(QLatin1Char('@'));
    const bool isDevice = node.format != nullptr && node.piece.type == Piece::Block && location != -1 &&
                          isSection(node.format, usbSection);
    return isDevice ? node.name.left(location) : QString();
}

/// Devices that are left over in both reports, apart from their location, are paired in their order.
void pairMovedUsbDevices(Pairs& pairs, const Nodes& oldNodes, const Nodes& newNodes)
{
    QHash<QString, QVector<int>> left;
    for (std::size_t i = oldNodes.all.size(); i-- > 0;) {
        const QString device = pairs.isOldPaired[i] ? QString() : usbDevice(oldNodes.all[i]);
        if (!device.isEmpty()) {
            left[device].append(static_cast<int>(i));
        }
    }
    for (std::size_t i = 0; i < newNodes.all.size() && !left.isEmpty(); ++i) {
        const auto found = pairs.oldOfNew[i] == -1 ? left.find(usbDevice(newNodes.all[i])) : left.end();
        if (found != left.end() && !found->isEmpty()) {
            pairs.join(found->takeLast(), i);
            pairs.isRenamed[i] = true;
        }
    }
}

Pairs pairsOf(const Nodes& oldNodes, const Nodes& newNodes)
{
    Pairs pairs = {std::vector<int>(newNodes.all.size(), -1), std::vector<bool>(oldNodes.all.size()),
                   std::vector<bool>(newNodes.all.size())};
    QHash<QString, int> oldByName;
    oldByName.reserve(static_cast<int>(oldNodes.all.size()));
    for (const Node& node : oldNodes.all) {
        oldByName.insert(node.name, oldByName.size());
    }
    for (std::size_t i = 0; i < newNodes.all.size(); ++i) {
        const int found = oldByName.value(newNodes.all[i].name, -1);
        if (found != -1) {
            pairs.join(found, i);
        }
    }
    pairMovedUsbDevices(pairs, oldNodes, newNodes);
    return pairs;
}

/// For each new node whether it stands at another place among those that both reports have, or was renamed.
std::vector<bool> movedNodes(const Pairs& pairs)
{
    std::vector<int> places;
    std::vector<std::size_t> nodes;
    for (std::size_t i = 0; i < pairs.oldOfNew.size(); ++i) {
        if (pairs.oldOfNew[i] != -1 && !pairs.isRenamed[i]) {
            places.push_back(pairs.oldOfNew[i]);
            nodes.push_back(i);
        }
    }
    const std::vector<bool> isOut = outOfOrder(places);
    std::vector<bool> isMoved = pairs.isRenamed;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        isMoved[nodes[i]] = isOut[i];
    }
    return isMoved;
}

/// A container, or something in one, in both reports.
struct Place
{
    QString oldPath;
    QString path;
    QString section; // empty for the whole report
    bool isRenamed;

    Place in(const Node& oldNode, const Node& newNode, bool renamed) const
    {
        const QString newPath = path + newNode.name;
        return {oldPath + oldNode.name, newPath, section.isEmpty() ? newPath : section, renamed};
    }
};

class ReportComparison
{
public:
    ReportComparison(const CReportPrivate& older, const CReportPrivate& newer,
                     const std::function<bool()>& goesOn)
        : old_(older), new_(newer), interest_(goesOn)
    {}

    QVector<CReportDifference> differences();

private:
    void compareNodes(const Nodes& oldNodes, const Nodes& newNodes, const Place& place);
    void compareContent(const Node& oldNode, const Node& newNode, const Place& place);
    void compareValues(const Node& oldNode, const Node& newNode, const Place& place);
    void append(CReportDifference::Kind kind, const Place& place, const QString& oldValue,
                const QString& newValue, bool isVolatile = false);

    const CReportPrivate& old_;
    const CReportPrivate& new_;
    Interest interest_;
    QVector<CReportDifference> differences_;
};

bool isEntry(const Node& node)
{
    return !node.isSection && node.piece.type == Piece::Entry;
}

bool isVolatile(const Node& node)
{
    return isEntry(node) && node.piece.entry.format != nullptr && node.piece.entry.format->isVolatile;
}

QString valueOfNode(const CReportPrivate& report, const Node& node)
{
    return isEntry(node) ? withoutCarriageReturns(valueOf(report.text, node.piece, node.format))
                         : report.text.mid(node.begin, node.end - node.begin);
}

QVector<CReportDifference> ReportComparison::differences()
{
    compareNodes(sectionNodes(old_, interest_), sectionNodes(new_, interest_), {});
    return differences_;
}

void ReportComparison::compareNodes(const Nodes& oldNodes, const Nodes& newNodes, const Place& place)
{
    const Pairs pairs = pairsOf(oldNodes, newNodes);
    const std::vector<bool> isMoved = movedNodes(pairs);
    for (std::size_t i = 0; i < oldNodes.all.size() && !interest_.isLost(); ++i) {
        const Node& node = oldNodes.all[i];
        if (!pairs.isOldPaired[i]) {
            const Place removed = {place.oldPath + node.name, place.oldPath + node.name,
                                   place.section.isEmpty() ? node.name : place.section, false};
            append(CReportDifference::Removed, removed, valueOfNode(old_, node), QString(), isVolatile(node));
        }
    }
    for (std::size_t i = 0; i < newNodes.all.size() && !interest_.isLost(); ++i) {
        const Node& node = newNodes.all[i];
        if (pairs.oldOfNew[i] == -1) {
            append(CReportDifference::Added, place.in(node, node, false), QString(), valueOfNode(new_, node),
                   isVolatile(node));
            continue;
        }
        const Node& oldNode = oldNodes.all[std::size_t(pairs.oldOfNew[i])];
        const Place both = place.in(oldNode, node, pairs.isRenamed[i]);
        if (isMoved[i]) {
            append(CReportDifference::Moved, both, QString(), QString(),
                   isEntry(node) && isSection(node.format, environmentSection));
        }
        if (isEntry(node)) {
            compareValues(oldNode, node, place);
        } else {
            compareContent(oldNode, node, both);
        }
    }
    if (oldNodes.lines != newNodes.lines) {
        append(CReportDifference::Changed, place, oldNodes.lines, newNodes.lines);
    }
}

void ReportComparison::compareContent(const Node& oldNode, const Node& newNode, const Place& place)
{
    compareNodes(contentNodes(old_.text, comparedContent(old_.text, oldNode), interest_),
                 contentNodes(new_.text, comparedContent(new_.text, newNode), interest_), place);
}

void ReportComparison::compareValues(const Node& oldNode, const Node& newNode, const Place& place)
{
    const QString oldValue = valueOfNode(old_, oldNode);
    const QString newValue = valueOfNode(new_, newNode);
    const bool isKnown = place.isRenamed && newNode.name == QLatin1String("/Location ID");
    if (oldValue != newValue && !isKnown) {
        append(CReportDifference::Changed, place.in(oldNode, newNode, false), oldValue, newValue,
               isVolatile(newNode));
    }
}

void ReportComparison::append(CReportDifference::Kind kind, const Place& place, const QString& oldValue,
                              const QString& newValue, bool isVolatile)
{
    CReportDifferencePrivate data;
    data.kind = kind;
    data.path = place.path;
    data.oldPath = kind == CReportDifference::Added ? QString() : place.oldPath;
    data.section = place.section;
    data.oldValue = oldValue;
    data.newValue = newValue;
    data.isVolatile = isVolatile;
    differences_.append(CReportDifferencePrivate::difference(data));
}

} // namespace

CReportDifference CReportDifferencePrivate::difference(const CReportDifferencePrivate& data)
{
    CReportDifference difference;
    difference.d = new CReportDifferencePrivate(data);
    return difference;
}

CReportDifference::CReportDifference() : d(new CReportDifferencePrivate) {}

CReportDifference::CReportDifference(const CReportDifference& other) = default;

CReportDifference& CReportDifference::operator=(const CReportDifference& other) = default;

CReportDifference::~CReportDifference() = default;

CReportDifference::Kind CReportDifference::kind() const
{
    return d->kind;
}

QString CReportDifference::path() const
{
    return d->path;
}

QString CReportDifference::oldPath() const
{
    return d->oldPath;
}

QString CReportDifference::section() const
{
    return d->section;
}

QString CReportDifference::oldValue() const
{
    return d->oldValue;
}

QString CReportDifference::newValue() const
{
    return d->newValue;
}

bool CReportDifference::isVolatile() const
{
    return d->isVolatile;
}

QVector<CReportDifference> CReport::compare(const CReport& newer) const
{
    return compare(newer, [] { return true; });
}

QVector<CReportDifference> CReport::compare(const CReport& newer, const std::function<bool()>& goesOn) const
{
    if (isNull() || newer.isNull()) {
        return fromText(text()).compare(fromText(newer.text()), goesOn);
    }
    return ReportComparison(*d, *newer.d, goesOn).differences();
}

} // namespace norvex::SystemInfo
