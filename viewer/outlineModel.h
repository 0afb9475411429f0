#pragma once

#include "viewer/outline.h"

#include <QAbstractItemModel>

#include <memory>

namespace norvex {
namespace Viewer {

/// The outline of a report for a tree. It hands out what the tree asks for, piece by piece.
class OutlineModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    using QAbstractItemModel::QAbstractItemModel;

    /// @param lines of the report; they have the headings
    void setOutline(std::shared_ptr<const Outline> outline, std::shared_ptr<const TextLines> lines);

    /// The index of a node, after what leads to it has been handed out; invalid for -1.
    QModelIndex indexOf(int node);
    /// The node of an index; null for an invalid one.
    const Outline::Node* node(const QModelIndex& index) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool hasChildren(const QModelIndex& parent = QModelIndex()) const override;
    bool canFetchMore(const QModelIndex& parent) const override;
    void fetchMore(const QModelIndex& parent) override;

private:
    int childCount(const QModelIndex& parent) const;
    int firstChild(const QModelIndex& parent) const;
    void fetchUpTo(const QModelIndex& parent, int row);

    QString heading(const Outline::Node& node) const;

    std::shared_ptr<const Outline> outline_;
    std::shared_ptr<const TextLines> lines_;
    QHash<int, int> fetched_; // the number of children handed out, by node; -1 stands for the top
};

} // namespace Viewer
} // namespace norvex
