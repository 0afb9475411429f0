#include "viewer/outlineModel.h"

#include <QFont>

#include <algorithm>

namespace norvex {
namespace Viewer {

namespace {

/// As many rows as a tree takes without a pause.
const int rowsAtOnce = 2000;
const int longestHeading = 100;

} // namespace

void OutlineModel::setOutline(std::shared_ptr<const Outline> outline, std::shared_ptr<const TextLines> lines)
{
    beginResetModel();
    outline_ = std::move(outline);
    lines_ = std::move(lines);
    fetched_.clear();
    endResetModel();
}

const Outline::Node* OutlineModel::node(const QModelIndex& index) const
{
    return index.isValid() ? &outline_->nodes().at(static_cast<int>(index.internalId())) : nullptr;
}

int OutlineModel::childCount(const QModelIndex& parent) const
{
    if (outline_ == nullptr) {
        return 0;
    }
    return parent.isValid() ? node(parent)->childCount : outline_->topCount();
}

int OutlineModel::firstChild(const QModelIndex& parent) const
{
    return parent.isValid() ? node(parent)->firstChild : 0;
}

QModelIndex OutlineModel::index(int row, int column, const QModelIndex& parent) const
{
    if (column != 0 || row < 0 || row >= rowCount(parent)) {
        return QModelIndex();
    }
    const int child = firstChild(parent) + row;
    return createIndex(row, 0, static_cast<quintptr>(child));
}

QModelIndex OutlineModel::parent(const QModelIndex& child) const
{
    const int parent = child.isValid() ? node(child)->parent : -1;
    return parent == -1 ? QModelIndex()
                        : createIndex(outline_->nodes().at(parent).row, 0, static_cast<quintptr>(parent));
}

int OutlineModel::rowCount(const QModelIndex& parent) const
{
    const int key = parent.isValid() ? static_cast<int>(parent.internalId()) : -1;
    return std::min(childCount(parent), fetched_.value(key, rowsAtOnce));
}

int OutlineModel::columnCount(const QModelIndex& /*parent*/) const
{
    return 1;
}

QVariant OutlineModel::data(const QModelIndex& index, int role) const
{
    const Outline::Node* const shown = node(index);
    if (shown == nullptr) {
        return QVariant();
    }
    switch (role) {
    case Qt::DisplayRole: return shown->name;
    case Qt::ToolTipRole: return heading(*shown).toHtmlEscaped();
    case Qt::FontRole: {
        QFont font;
        font.setBold(shown->type == Outline::Node::Half);
        return font;
    }
    default: return QVariant();
    }
}

/// How the report itself calls a section, whatever the language of its title is.
QString OutlineModel::heading(const Outline::Node& node) const
{
    const int line = node.firstLine;
    if (node.type != Outline::Node::Section || outline_->kind(line) != LineKind::Heading) {
        return node.name;
    }
    const int begin = lines_->begin(line);
    return lines_->text().mid(begin, std::min(lines_->end(line) - begin, longestHeading));
}

bool OutlineModel::hasChildren(const QModelIndex& parent) const
{
    return childCount(parent) > 0;
}

bool OutlineModel::canFetchMore(const QModelIndex& parent) const
{
    return rowCount(parent) < childCount(parent);
}

void OutlineModel::fetchMore(const QModelIndex& parent)
{
    fetchUpTo(parent, rowCount(parent) + rowsAtOnce - 1);
}

void OutlineModel::fetchUpTo(const QModelIndex& parent, int row)
{
    const int before = rowCount(parent);
    const int after = std::min(childCount(parent), row + 1);
    if (after > before) {
        beginInsertRows(parent, before, after - 1);
        fetched_[parent.isValid() ? static_cast<int>(parent.internalId()) : -1] = after;
        endInsertRows();
    }
}

QModelIndex OutlineModel::indexOf(int node)
{
    if (node == -1) {
        return QModelIndex();
    }
    const QModelIndex parent = indexOf(outline_->nodes().at(node).parent);
    const int row = outline_->nodes().at(node).row;
    fetchUpTo(parent, row);
    return index(row, 0, parent);
}

} // namespace Viewer
} // namespace norvex
