#pragma once

#include "viewer/comparison.h"

#include <QAbstractItemModel>

#include <memory>

namespace norvex {
namespace Viewer {

/// A comparison for a tree: what it is about, how it differs, and the old and the new value side by side.
class ComparisonModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Column { NameColumn, KindColumn, OldColumn, NewColumn, columns };

    using QAbstractItemModel::QAbstractItemModel;

    void setComparison(std::shared_ptr<const Comparison> comparison, const QString& oldTitle,
                       const QString& newTitle);

    /// The node of an index; null for an invalid one.
    const Comparison::Node* node(const QModelIndex& index) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    const QVector<int>& children(const QModelIndex& parent) const;

    std::shared_ptr<const Comparison> comparison_;
    QString titles_[2];
};

} // namespace Viewer
} // namespace norvex
