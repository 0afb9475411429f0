#pragma once

#include <QTimer>
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

    /// What the search found. While it counts, this is shown only when that takes a while.
    /// @param result in a few words; empty for no search
    /// @param percent of the text that is counted
    void setResult(const QString& result, bool isHit, int percent);

signals:
    void soughtChanged();
    void nextRequested();
    void previousRequested();
    void stopRequested();
    void closed();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void showResult();

    QLineEdit* edit_;
    QCheckBox* matchCase_;
    QLabel* result_;
    QProgressBar* progress_;
    QToolButton* stop_;
    QTimer patience_;
    QString text_;
    bool isHit_ = true;
    int percent_ = 100;
};

} // namespace Viewer
} // namespace norvex
