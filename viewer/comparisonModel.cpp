#include "viewer/comparisonModel.h"

#include <QFont>
#include <QGuiApplication>
#include <QPalette>

namespace norvex {
namespace Viewer {

using SystemInfo::CReportDifference;
using Node = Comparison::Node;

namespace {

QString cellText(const Node& node, int column)
{
    if (column == ComparisonModel::NameColumn) {
        return node.name;
    }
    if (node.type != Node::Difference) {
        return QString();
    }
    switch (column) {
    case ComparisonModel::KindColumn: return kindText(node.difference.kind());
    case ComparisonModel::OldColumn: return node.oldValue;
    default: return node.newValue;
    }
}

/// A touch of the accent behind what only one of the reports has.
QVariant cellBackground(const Node& node, int column)
{
    const bool isOld = column == ComparisonModel::OldColumn;
    const bool isNew = column == ComparisonModel::NewColumn;
    const QString& value = isOld ? node.oldValue : node.newValue;
    if (node.type != Node::Difference || !(isOld || isNew) || value.isEmpty()) {
        return QVariant();
    }
    QColor color = QGuiApplication::palette().color(QPalette::Highlight);
    color.setAlpha(isNew ? 50 : 25);
    return QBrush(color);
}

} // namespace

void ComparisonModel::setComparison(std::shared_ptr<const Comparison> comparison, const QString& oldTitle,
                                    const QString& newTitle)
{
    beginResetModel();
    comparison_ = std::move(comparison);
    titles_[0] = oldTitle;
    titles_[1] = newTitle;
    endResetModel();
}

const Node* ComparisonModel::node(const QModelIndex& index) const
{
    return index.isValid() ? &comparison_->nodes().at(static_cast<int>(index.internalId())) : nullptr;
}

const QVector<int>& ComparisonModel::children(const QModelIndex& parent) const
{
    static const QVector<int> none;
    if (comparison_ == nullptr || parent.column() > 0) {
        return none;
    }
    return parent.isValid() ? node(parent)->children : comparison_->top();
}

QModelIndex ComparisonModel::index(int row, int column, const QModelIndex& parent) const
{
    if (column < 0 || column >= columns || row < 0 || row >= children(parent).size()) {
        return QModelIndex();
    }
    return createIndex(row, column, static_cast<quintptr>(children(parent).at(row)));
}

QModelIndex ComparisonModel::parent(const QModelIndex& child) const
{
    const int parent = child.isValid() ? node(child)->parent : -1;
    return parent == -1 ? QModelIndex()
                        : createIndex(comparison_->nodes().at(parent).row, 0, static_cast<quintptr>(parent));
}

int ComparisonModel::rowCount(const QModelIndex& parent) const
{
    return children(parent).size();
}

int ComparisonModel::columnCount(const QModelIndex& /*parent*/) const
{
    return columns;
}

QVariant ComparisonModel::data(const QModelIndex& index, int role) const
{
    const Node* const shown = node(index);
    if (shown == nullptr) {
        return QVariant();
    }
    switch (role) {
    case Qt::DisplayRole: return cellText(*shown, index.column());
    case Qt::BackgroundRole: return cellBackground(*shown, index.column());
    case Qt::FontRole: {
        QFont font;
        font.setBold(shown->type == Node::Section || shown->type == Node::Expected);
        return font;
    }
    default: return QVariant();
    }
}

QVariant ComparisonModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return QVariant();
    }
    switch (section) {
    case NameColumn: return tr("Item");
    case KindColumn: return tr("Difference");
    case OldColumn: return titles_[0];
    case NewColumn: return titles_[1];
    default: return QVariant();
    }
}

} // namespace Viewer
} // namespace norvex
