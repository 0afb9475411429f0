#include "viewer/comparison.h"

#include "viewer/itemTitles.h"

#include <QHash>

#include <algorithm>
#include <numeric>

namespace norvex {
namespace Viewer {

using namespace SystemInfo;

namespace {

/// Nobody looks through more, and a tree of more is slow.
const int mostShown = 20000;
/// Of so many devices the title is looked for; of others the path says enough.
const int mostTitles = 500;
const int longestText = 300;

/// Where a path ends that begins with another item's: "SECTION", "SECTION[BLOCK]", "SECTION[BLOCK]/LABEL".
int endOfPart(const QString& path, int begin, const QString& ends)
{
    for (int i = begin; i < path.size(); ++i) {
        if (path.at(i) == QLatin1Char('\\')) {
            ++i;
        } else if (ends.contains(path.at(i))) {
            return i;
        }
    }
    return path.size();
}

/// The path of the block that a path leads into; empty for none.
QString blockPath(const QString& path, const QString& sectionPath)
{
    const int begin = sectionPath.size();
    if (begin >= path.size() || path.at(begin) != QLatin1Char('[')) {
        return QString();
    }
    const int bracket = endOfPart(path, begin + 1, QStringLiteral("]"));
    return path.left(endOfPart(path, bracket + 1, QStringLiteral("/")));
}

/// The last part of a path as people read it.
QString lastPart(const QString& path, int begin)
{
    QString part = path.mid(begin, 4 * longestText);
    while (part.startsWith(QLatin1Char('/')) || part.startsWith(QLatin1Char('['))) {
        part.remove(0, 1);
    }
    if (path.size() <= begin + 4 * longestText && part.endsWith(QLatin1Char(']'))) {
        part.chop(1);
    }
    QString plain;
    for (int i = 0; i < part.size(); ++i) {
        if (part.at(i) == QLatin1Char('\\') && i + 1 < part.size()) {
            ++i;
        }
        plain += part.at(i);
    }
    return oneLine(plain, longestText);
}

} // namespace

class ComparisonBuilder
{
public:
    ComparisonBuilder(const CReport& older, const CReport& newer, const JobControl& control)
        : older_(older), newer_(newer), control_(control)
    {}

    Comparison build();

private:
    using Node = Comparison::Node;

    void add(const CReportDifference& difference);
    void addExpected(const QVector<CReportDifference>& differences);
    int add(int parent, Node::Type type, const QString& name);
    int sectionNode(const QString& path, const CReport& report);
    int deviceNode(int section, const QString& path, const CReport& report);
    QString deviceTitle(const QString& path, const CReport& report);
    void addDifference(int parent, const QString& name, const CReportDifference& difference);
    QString fullName(const CReportDifference& difference);

    const CReport older_;
    const CReport newer_;
    const JobControl& control_;
    Comparison comparison_;
    QHash<QString, int> sections_;
    QHash<QString, int> devices_;
    QHash<QString, QString> titles_;
};

int ComparisonBuilder::add(int parent, Node::Type type, const QString& name)
{
    Node node;
    node.name = name;
    node.type = type;
    node.parent = parent;
    const int index = comparison_.nodes_.size();
    QVector<int>& siblings = parent == -1 ? comparison_.top_ : comparison_.nodes_[parent].children;
    node.row = siblings.size();
    siblings.append(index);
    comparison_.nodes_.append(node);
    return index;
}

int ComparisonBuilder::sectionNode(const QString& path, const CReport& report)
{
    const auto found = sections_.constFind(path);
    if (found != sections_.constEnd()) {
        return *found;
    }
    const CReportSection section =
        titles_.size() < mostTitles ? report.item(path).toSection() : CReportSection();
    titles_.insert(path, section.isNull() ? lastPart(path, 0) : titleOf(section));
    const int node = add(-1, Node::Section, titles_.value(path));
    sections_.insert(path, node);
    return node;
}

QString ComparisonBuilder::deviceTitle(const QString& path, const CReport& report)
{
    const auto found = titles_.constFind(path);
    if (found != titles_.constEnd()) {
        return *found;
    }
    if (titles_.size() >= mostTitles) {
        return lastPart(path, endOfPart(path, 0, QStringLiteral("[")));
    }
    const CReportBlock block = report.item(path).toBlock();
    QString title = block.isNull() ? lastPart(path, endOfPart(path, 0, QStringLiteral("["))) : titleOf(block);
    titles_.insert(path, title);
    return title;
}

int ComparisonBuilder::deviceNode(int section, const QString& path, const CReport& report)
{
    const auto found = devices_.constFind(path);
    if (found != devices_.constEnd()) {
        return *found;
    }
    const int node = add(section, Node::Device, deviceTitle(path, report));
    devices_.insert(path, node);
    return node;
}

void ComparisonBuilder::addDifference(int parent, const QString& name, const CReportDifference& difference)
{
    Node& node = comparison_.nodes_[add(parent, Node::Difference, name)];
    node.difference = difference;
    node.oldValue = oneLine(difference.oldValue(), longestText);
    node.newValue = oneLine(difference.newValue(), longestText);
}

void ComparisonBuilder::add(const CReportDifference& difference)
{
    const bool isRemoved = difference.kind() == CReportDifference::Removed;
    const CReport& report = isRemoved ? older_ : newer_;
    const QString path = difference.path();
    const QString section = difference.section();
    const int sectionIndex = sectionNode(section, report);
    const QString block = blockPath(path, section);
    if (path == section) {
        addDifference(sectionIndex, Comparison::tr("The section"), difference);
    } else if (block.isEmpty()) {
        addDifference(sectionIndex, lastPart(path, section.size()), difference);
    } else if (block == path && difference.kind() != CReportDifference::Changed) {
        addDifference(sectionIndex, deviceTitle(block, report), difference);
    } else if (block == path) {
        addDifference(deviceNode(sectionIndex, block, report), Comparison::tr("Other lines"), difference);
    } else {
        addDifference(deviceNode(sectionIndex, block, report), lastPart(path, block.size()), difference);
    }
}

QString ComparisonBuilder::fullName(const CReportDifference& difference)
{
    const QString path = difference.path();
    const QString section = difference.section();
    if (!titles_.contains(section)) {
        const CReportSection found = newer_.item(section).toSection();
        titles_.insert(section, found.isNull() ? lastPart(section, 0) : titleOf(found));
    }
    QStringList names(titles_.value(section));
    const QString block = blockPath(path, section);
    if (!block.isEmpty()) {
        names += deviceTitle(block, newer_);
    }
    const int end = block.isEmpty() ? section.size() : block.size();
    if (path.size() > end) {
        names += lastPart(path, end);
    }
    return oneLine(names.join(QStringLiteral(" › ")), longestText);
}

void ComparisonBuilder::addExpected(const QVector<CReportDifference>& differences)
{
    if (differences.isEmpty()) {
        return;
    }
    const int parent =
        add(-1, Node::Expected, Comparison::tr("Expected to differ: %1").arg(differences.size()));
    const int shown = std::min(differences.size(), mostShown);
    for (int i = 0; i < shown && !control_.isCancelled(); ++i) {
        addDifference(parent, fullName(differences.at(i)), differences.at(i));
    }
}

Comparison ComparisonBuilder::build()
{
    const QVector<CReportDifference> differences =
        older_.compare(newer_, [this] { return !control_.isCancelled(); });
    QVector<CReportDifference> expected;
    int shown = 0;
    for (const CReportDifference& difference : differences) {
        if (control_.isCancelled()) {
            break;
        }
        if (difference.isVolatile()) {
            expected.append(difference);
            continue;
        }
        ++comparison_.counts_[difference.kind()];
        if (shown < mostShown) {
            ++shown;
            add(difference);
        }
    }
    comparison_.expectedCount_ = expected.size();
    const int others = comparison_.count() - shown;
    if (others > 0) {
        add(-1, Node::Note, Comparison::tr("%1 more differences are not shown").arg(others));
    }
    addExpected(expected);
    return comparison_;
}

Comparison Comparison::of(const CReport& older, const CReport& newer, const JobControl& control)
{
    return ComparisonBuilder(older, newer, control).build();
}

Comparison Comparison::redacted(const CReport& older, const CReport& newer, const JobControl& control)
{
    CRedactor redactor;
    const auto goesOn = [&control](int) { return !control.isCancelled(); };
    redactor.collect(older, goesOn);
    redactor.collect(newer, goesOn);
    return of(older.redacted(&redactor, goesOn), newer.redacted(&redactor, goesOn), control);
}

QString Comparison::summary() const
{
    const struct
    {
        CReportDifference::Kind kind;
        QString text;
    } kinds[] = {
        {CReportDifference::Changed, tr("%1 changed")},
        {CReportDifference::Added, tr("%1 added")},
        {CReportDifference::Removed, tr("%1 removed")},
        {CReportDifference::Moved, tr("%1 moved")},
    };
    QStringList parts;
    for (const auto& kind : kinds) {
        if (count(kind.kind) > 0) {
            parts += kind.text.arg(count(kind.kind));
        }
    }
    if (expectedCount_ > 0) {
        parts += tr("%1 expected to differ").arg(expectedCount_);
    }
    return parts.join(QStringLiteral(", "));
}

QString Comparison::text(const QString& oldTitle, const QString& newTitle) const
{
    QString text = tr("What differs between %1 and %2").arg(oldTitle, newTitle) + QStringLiteral(":\n");
    text += (count() + expectedCount_ == 0 ? tr("nothing") : summary()) + QLatin1Char('\n');
    for (const int node : top_) {
        text += QLatin1Char('\n');
        appendText(text, nodes_.at(node), QString());
    }
    return text;
}

void Comparison::appendText(QString& text, const Node& node, const QString& indent) const
{
    const bool isDifference = node.type == Node::Difference;
    text += indent + node.name;
    text +=
        isDifference ? QStringLiteral(" (%1)\n").arg(kindText(node.difference.kind())) : QStringLiteral("\n");
    if (isDifference) {
        const struct
        {
            const char* sign;
            QString value;
        } sides[] = {{"  - ", node.difference.oldValue()}, {"  + ", node.difference.newValue()}};
        for (const auto& side : sides) {
            QString value = side.value;
            while (value.endsWith(QLatin1Char('\n'))) {
                value.chop(1);
            }
            const QStringList lines = value.isEmpty() ? QStringList() : value.split(QLatin1Char('\n'));
            for (const QString& line : lines) {
                text += indent + QLatin1String(side.sign) + line + QLatin1Char('\n');
            }
        }
    } else if (node.type != Node::Expected) {
        for (const int child : node.children) {
            appendText(text, nodes_.at(child), indent + QStringLiteral("  "));
        }
    }
}

int Comparison::count() const
{
    return std::accumulate(std::begin(counts_), std::end(counts_), 0);
}

QString kindText(CReportDifference::Kind kind)
{
    switch (kind) {
    case CReportDifference::Added: return Comparison::tr("added");
    case CReportDifference::Removed: return Comparison::tr("removed");
    case CReportDifference::Changed: return Comparison::tr("changed");
    case CReportDifference::Moved: break;
    }
    return Comparison::tr("moved");
}

} // namespace Viewer
} // namespace norvex
