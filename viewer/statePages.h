#pragma once

#include <QLabel>
#include <QVector>

class QProgressBar;

namespace norvex::Viewer {

/// A shorter wait needs no picture of waiting.
const int patienceMs = 250;

/// A label of plain text in as many lines as it needs.
QLabel* wrappedLabel(const QString& text = QString());
/// The same as a title.
QLabel* boldLabel(const QString& text = QString());
/// A bar for what does not say how far it is.
QProgressBar* busyBar();

/// A page that says what is going on in place of what it would show: widgets below each other in its middle, as wide as
/// a text is read best.
QWidget* centred(const QVector<QWidget*>& widgets);

} // namespace norvex::Viewer
