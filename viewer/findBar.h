#pragma once

#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QToolButton;

namespace norvex {
namespace Viewer {

/// The line below the reports in which people type what they look for.
class FindBar : public QWidget
{
    Q_OBJECT

public:
    explicit FindBar(QWidget* parent = nullptr);

    QString sought() const;
    Qt::CaseSensitivity sensitivity() const;
    /// Shows the bar with the keyboard in it.
    /// @param sought replaces what stands there, unless it is empty
    void open(const QString& sought);

    /// What the search found, in a sentence; empty for no search.
    void setResult(const QString& result, bool isHit);
    /// @param percent -1 when nothing is being counted
    void setProgress(int percent);

signals:
    void soughtChanged();
    void nextRequested();
    void previousRequested();
    void stopRequested();
    void closed();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QLineEdit* edit_;
    QCheckBox* matchCase_;
    QLabel* result_;
    QProgressBar* progress_;
    QToolButton* stop_;
};

} // namespace Viewer
} // namespace norvex
