#pragma once

#include <QLabel>
#include <QVector>

namespace norvex::Viewer {

/// A label of plain text in as many lines as it needs.
QLabel* wrappedLabel(const QString& text = QString());

/// A page that says what is going on in place of what it would show: widgets below each other in its middle, as wide as
/// a text is read best.
QWidget* centred(const QVector<QWidget*>& widgets);

} // namespace norvex::Viewer
