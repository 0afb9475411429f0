#pragma once

#include "viewer/comparisonModel.h"
#include "viewer/job.h"

#include <QPointer>
#include <QWidget>

#include <functional>

class QAction;
class QBoxLayout;
class QHBoxLayout;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QStackedWidget;
class QToolButton;
class QTreeView;

namespace norvex {
namespace Viewer {

/// Two reports side by side: what differs, by section and device, and the whole values of the difference that the
/// cursor is on.
class ComparisonPage : public QWidget
{
    Q_OBJECT

public:
    enum class Side { Old, New };

    explicit ComparisonPage(QWidget* parent = nullptr);

    /// Compares beside the window, then shows what differs.
    /// @param isRedacted whether to compare and show the reports without private data
    void compare(const SystemInfo::CReport& older, const QString& oldTitle, const SystemInfo::CReport& newer,
                 const QString& newTitle, bool isRedacted);

    /// Shows that it waits for the reports.
    void showWaiting();
    /// Shows why there is nothing to compare.
    void showMessage(const QString& title, const QString& text);

    /// What makes a text of the differences; null while there is no comparison. It takes time, and any thread.
    /// @param isRedacted whether the text has placeholders for private data, and no titles
    std::function<QString(const JobControl&)> textMaker(bool isRedacted) const;

    QTreeView* tree() const { return tree_; }
    /// Go to the next and to the previous difference.
    QAction* nextAction() const { return next_; }
    QAction* previousAction() const { return previous_; }

signals:
    /// What was asked for last is shown.
    void shown();
    /// The user gave up waiting.
    void cancelled();
    /// The user asks for the lines of an item of one report, see CReport::item().
    void activated(Side side, const QString& path);
    /// The user asks for the old report in the place of the new one.
    void swapRequested();
    /// The user asks for a copy of the differences.
    void copyRequested();

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    enum class Direction { Forward, Backward };

    QWidget* makeWaiting();
    QWidget* makeMessage();
    QWidget* makeResult();
    QWidget* makeBar();
    void arrange();
    QWidget* makeDetails();
    void makeActions();
    void showComparison(const std::shared_ptr<Comparison>& comparison);
    void showTree();
    int widestKind() const;
    QModelIndex neighbour(const QModelIndex& index, Direction direction) const;
    QModelIndex difference(Direction direction) const;
    void step(Direction direction);
    void updateActions();
    void showDetails();
    void activate(const QModelIndex& index);

    QStackedWidget* const states_;
    QTreeView* const tree_;
    ComparisonModel* const model_;
    QAction* next_ = nullptr;
    QAction* previous_ = nullptr;
    QBoxLayout* bar_ = nullptr;
    QHBoxLayout* buttons_ = nullptr;
    QLabel* summary_ = nullptr;
    QLabel* messageTitle_ = nullptr;
    QLabel* messageText_ = nullptr;
    QPushButton* showExpected_ = nullptr;
    QLabel* detailTitles_[2] = {nullptr, nullptr};
    QPlainTextEdit* details_[2] = {nullptr, nullptr};
    QPointer<Job> job_;
    std::shared_ptr<const Comparison> comparison_; // null while there is none
    SystemInfo::CReport reports_[2];
    bool isRedacted_ = false;
    QString titles_[2];
};

} // namespace Viewer
} // namespace norvex
