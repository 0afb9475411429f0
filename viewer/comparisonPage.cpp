#include "viewer/comparisonPage.h"

#include "viewer/keys.h"
#include "viewer/statePages.h"

#include <QAction>
#include <QFontDatabase>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSplitter>
#include <QStackedWidget>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

namespace norvex {
namespace Viewer {

using namespace SystemInfo;
using Node = Comparison::Node;

namespace {

enum State { Waiting, Message, Result };

/// Longer values are cut: a QPlainTextEdit lays out all of a line.
const int longestDetail = 20000;
const char* const detailNames[] = {"oldValue", "newValue"};

} // namespace

ComparisonPage::ComparisonPage(QWidget* parent)
    : QWidget(parent), states_(new QStackedWidget), tree_(new QTreeView), model_(new ComparisonModel(this))
{
    setObjectName(QStringLiteral("comparison"));
    setFocusProxy(tree_);
    makeActions();
    states_->insertWidget(Waiting, makeWaiting());
    states_->insertWidget(Message, makeMessage());
    states_->insertWidget(Result, makeResult());
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(states_);
}

void ComparisonPage::makeActions()
{
    const auto make = [this](const QString& text, const QKeySequence& key, const char* name,
                             const QString& toolTip, Direction direction) {
        auto* const action = new QAction(text, this);
        action->setToolTip(toolTip);
        action->setObjectName(QLatin1String(name));
        action->setShortcut(key);
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        action->setEnabled(false);
        connect(action, &QAction::triggered, this, [this, direction] { step(direction); });
        addAction(action);
        return action;
    };
    previous_ = make(tr("Previous"), keys(Qt::SHIFT, Qt::Key_F7), "previousDifference",
                     tr("Previous difference (Shift+F7)"), Direction::Backward);
    next_ = make(tr("Next"), QKeySequence(Qt::Key_F7), "nextDifference", tr("Next difference (F7)"),
                 Direction::Forward);
}

QWidget* ComparisonPage::makeWaiting()
{
    auto* const cancel = new QPushButton(tr("&Cancel"));
    cancel->setObjectName(QStringLiteral("cancelComparison"));
    connect(cancel, &QPushButton::clicked, this, [this] {
        delete job_;
        showMessage(tr("Not compared"), tr("The comparison was cancelled."));
        emit cancelled();
    });
    return centred({wrappedLabel(tr("Comparing the reports…")), busyBar(), cancel});
}

QWidget* ComparisonPage::makeMessage()
{
    messageTitle_ = boldLabel();
    messageTitle_->setObjectName(QStringLiteral("messageTitle"));
    messageText_ = wrappedLabel();
    messageText_->setObjectName(QStringLiteral("messageText"));
    showExpected_ = new QPushButton(tr("&Show Them"));
    showExpected_->setObjectName(QStringLiteral("showExpected"));
    connect(showExpected_, &QPushButton::clicked, this, [this] {
        showTree();
        tree_->expandAll();
        step(Direction::Forward);
    });
    return centred({messageTitle_, messageText_, showExpected_});
}

QWidget* ComparisonPage::makeResult()
{
    tree_->setObjectName(QStringLiteral("differences"));
    tree_->setAccessibleName(tr("Differences"));
    tree_->setFrameShape(QFrame::NoFrame);
    tree_->setUniformRowHeights(true);
    tree_->setAllColumnsShowFocus(true);
    tree_->setTextElideMode(Qt::ElideRight);
    tree_->setModel(model_);
    // Both sides are always seen; the details below have what the columns cut off.
    tree_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    for (const int side : {ComparisonModel::OldColumn, ComparisonModel::NewColumn}) {
        tree_->header()->setSectionResizeMode(side, QHeaderView::Stretch);
    }
    tree_->installEventFilter(this);
    connect(tree_, &QTreeView::doubleClicked, this, &ComparisonPage::activate);
    connect(tree_->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &ComparisonPage::showDetails);
    connect(tree_, &QTreeView::expanded, this, &ComparisonPage::updateActions);
    connect(tree_, &QTreeView::collapsed, this, &ComparisonPage::updateActions);

    auto* const splitter = new QSplitter(Qt::Vertical);
    splitter->addWidget(tree_);
    splitter->addWidget(makeDetails());
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 1);
    splitter->setChildrenCollapsible(false);
    auto* const page = new QWidget;
    auto* const layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeBar());
    layout->addWidget(splitter, 1);
    return page;
}

QWidget* ComparisonPage::makeBar()
{
    auto* const bar = new QWidget;
    bar_ = new QBoxLayout(QBoxLayout::LeftToRight, bar);
    const int margin = bar->fontMetrics().averageCharWidth();
    bar_->setContentsMargins(margin, margin / 2, margin, margin / 2);
    summary_ = wrappedLabel();
    summary_->setObjectName(QStringLiteral("summary"));
    buttons_ = new QHBoxLayout;
    bar_->addWidget(summary_, 1);
    auto* const row = new QHBoxLayout;
    row->addLayout(buttons_);
    row->addStretch(1);
    bar_->addLayout(row);
    const auto add = [layout = buttons_](const QString& text, const QString& toolTip, const QString& name) {
        auto* const button = new QToolButton;
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        button->setText(text);
        button->setToolTip(toolTip);
        button->setAccessibleName(name);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::TabFocus);
        layout->addWidget(button);
        return button;
    };
    QToolButton* const previous = add(QString(), QString(), tr("Previous difference"));
    previous->setDefaultAction(previous_);
    previous->setArrowType(Qt::UpArrow);
    QToolButton* const next = add(QString(), QString(), tr("Next difference"));
    next->setDefaultAction(next_);
    next->setArrowType(Qt::DownArrow);
    connect(add(tr("S&wap"), tr("Swap the compared reports (Ctrl+Shift+X)"), tr("Swap the compared reports")),
            &QToolButton::clicked, this, &ComparisonPage::swapRequested);
    connect(add(tr("C&opy"), tr("Copy the differences (Ctrl+Shift+D)"), tr("Copy the differences")),
            &QToolButton::clicked, this, &ComparisonPage::copyRequested);
    return bar;
}

/// The summary stands beside the buttons, or above them where the page is too narrow for both. The names leave room for
/// the values.
void ComparisonPage::arrange()
{
    const int unit = fontMetrics().averageCharWidth();
    const int margins = 4 * unit;
    const int needed =
        fontMetrics().boundingRect(summary_->text()).width() + buttons_->sizeHint().width() + margins;
    bar_->setDirection(needed <= width() ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    tree_->setColumnWidth(ComparisonModel::NameColumn, qMin(unit * 40, width() * 2 / 5));
}

void ComparisonPage::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    arrange();
}

QWidget* ComparisonPage::makeDetails()
{
    auto* const splitter = new QSplitter;
    splitter->setChildrenCollapsible(false);
    for (int side = 0; side < 2; ++side) {
        detailTitles_[side] = wrappedLabel();
        detailTitles_[side]->setContentsMargins(fontMetrics().averageCharWidth(), 2, 0, 2);
        auto* const edit = new QPlainTextEdit;
        edit->setObjectName(QLatin1String(detailNames[side]));
        edit->setAccessibleName(side == 0 ? tr("Old value") : tr("New value"));
        edit->setReadOnly(true);
        // What may be copied has no private data, if the user wants so; this has it where it is shown.
        edit->setTextInteractionFlags(Qt::NoTextInteraction);
        edit->setFocusPolicy(Qt::StrongFocus);
        edit->setTabChangesFocus(true);
        edit->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
        edit->setFrameShape(QFrame::NoFrame);
        edit->setPlaceholderText(tr("Nothing"));
        details_[side] = edit;
        auto* const column = new QWidget;
        auto* const layout = new QVBoxLayout(column);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(0);
        layout->addWidget(detailTitles_[side]);
        layout->addWidget(edit, 1);
        splitter->addWidget(column);
    }
    return splitter;
}

void ComparisonPage::compare(const CReport& older, const QString& oldTitle, const CReport& newer,
                             const QString& newTitle, bool isRedacted)
{
    delete job_;
    comparison_.reset();
    reports_[0] = older;
    reports_[1] = newer;
    titles_[0] = oldTitle;
    titles_[1] = newTitle;
    isRedacted_ = isRedacted;
    const auto made = std::make_shared<Comparison>();
    job_ = new Job(
        this,
        [=](const JobControl& control) {
            *made = isRedacted ? Comparison::redacted(older, newer, control)
                               : Comparison::of(older, newer, control);
        },
        [this, made](bool isOutOfMemory) {
            if (isOutOfMemory) {
                showMessage(tr("Not compared"), tr("There is not enough memory to compare these reports."));
            } else {
                showComparison(made);
            }
            emit shown();
        });
    afterPatience(job_, [this] { showWaiting(); });
}

std::function<QString(const JobControl&)> ComparisonPage::textMaker(bool isRedacted) const
{
    if (comparison_ == nullptr) {
        return nullptr;
    }
    const bool needsOther = isRedacted && !isRedacted_;
    // A file may be called after a person.
    const QString oldTitle = isRedacted ? tr("the old report") : titles_[0];
    const QString newTitle = isRedacted ? tr("the new report") : titles_[1];
    return
        [=, comparison = comparison_, older = reports_[0], newer = reports_[1]](const JobControl& control) {
            return needsOther ? Comparison::redacted(older, newer, control).text(oldTitle, newTitle)
                              : comparison->text(oldTitle, newTitle);
        };
}

void ComparisonPage::showWaiting()
{
    states_->setCurrentIndex(Waiting);
}

void ComparisonPage::showMessage(const QString& title, const QString& text)
{
    messageTitle_->setText(title);
    messageText_->setText(text);
    showExpected_->hide();
    next_->setEnabled(false);
    previous_->setEnabled(false);
    states_->setCurrentIndex(Message);
}

void ComparisonPage::showComparison(const std::shared_ptr<Comparison>& comparison)
{
    comparison_ = comparison;
    model_->setComparison(comparison_, titles_[0], titles_[1]);
    for (int side = 0; side < 2; ++side) {
        detailTitles_[side]->setText(titles_[side]);
        details_[side]->clear();
    }
    const int expected = comparison_->expectedCount();
    if (comparison_->count() > 0) {
        showTree();
    } else if (expected == 0) {
        showMessage(tr("No difference"), tr("Both reports say the same."));
    } else {
        showMessage(tr("No difference"),
                    tr("Both reports say the same, apart from what differs between any two reports, such as "
                       "dates and free space: %1.")
                        .arg(expected));
        showExpected_->show();
    }
}

int ComparisonPage::widestKind() const
{
    int widest = fontMetrics()
                     .boundingRect(model_->headerData(ComparisonModel::KindColumn, Qt::Horizontal).toString())
                     .width();
    for (const auto kind : {CReportDifference::Added, CReportDifference::Removed, CReportDifference::Changed,
                            CReportDifference::Moved}) {
        widest = qMax(widest, fontMetrics().boundingRect(kindText(kind)).width());
    }
    return widest;
}

void ComparisonPage::showTree()
{
    summary_->setText(comparison_->summary());
    arrange();
    // One by one, thousands of branches take seconds.
    tree_->expandAll();
    const QModelIndex last = model_->index(model_->rowCount() - 1, 0);
    if (last.isValid() && model_->node(last)->type == Node::Expected) {
        tree_->collapse(last);
    }
    const int unit = fontMetrics().averageCharWidth();
    tree_->setColumnWidth(ComparisonModel::KindColumn, widestKind() + unit * 2);
    tree_->setCurrentIndex(QModelIndex());
    states_->setCurrentIndex(Result);
    showDetails();
    if (comparison_->count() > 0) {
        step(Direction::Forward);
    }
}

/// The row next to an index in the order of the tree, also where that is folded; a folded branch of what is expected is
/// left out.
QModelIndex ComparisonPage::neighbour(const QModelIndex& index, Direction direction) const
{
    const auto isOpen = [this](const QModelIndex& branch) {
        return model_->node(branch)->type != Node::Expected || tree_->isExpanded(branch);
    };
    if (direction == Direction::Forward) {
        if (!index.isValid() || (model_->rowCount(index) > 0 && isOpen(index))) {
            return model_->index(0, 0, index);
        }
        QModelIndex branch = index;
        while (branch.isValid()) {
            const QModelIndex sibling = model_->index(branch.row() + 1, 0, branch.parent());
            if (sibling.isValid()) {
                return sibling;
            }
            branch = branch.parent();
        }
        return QModelIndex();
    }
    if (!index.isValid()) {
        return QModelIndex();
    }
    if (index.row() == 0) {
        return index.parent();
    }
    QModelIndex last = model_->index(index.row() - 1, 0, index.parent());
    while (model_->rowCount(last) > 0 && isOpen(last)) {
        last = model_->index(model_->rowCount(last) - 1, 0, last);
    }
    return last;
}

/// The next difference in a direction; an invalid index when there is none.
QModelIndex ComparisonPage::difference(Direction direction) const
{
    const QModelIndex current = tree_->currentIndex();
    QModelIndex index = neighbour(current.sibling(current.row(), 0), direction);
    while (index.isValid() && model_->node(index)->type != Node::Difference) {
        index = neighbour(index, direction);
    }
    return index;
}

void ComparisonPage::step(Direction direction)
{
    const QModelIndex index = difference(direction);
    if (index.isValid()) {
        tree_->setCurrentIndex(index);
        // First what it belongs to: a value alone does not say whose it is.
        tree_->scrollTo(index.parent());
        tree_->scrollTo(index);
    }
}

void ComparisonPage::updateActions()
{
    next_->setEnabled(difference(Direction::Forward).isValid());
    previous_->setEnabled(difference(Direction::Backward).isValid());
}

void ComparisonPage::showDetails()
{
    updateActions();
    const Node* const node = model_->node(tree_->currentIndex());
    const bool isDifference = node != nullptr && node->type == Node::Difference;
    const QString values[] = {isDifference ? node->difference.oldValue() : QString(),
                              isDifference ? node->difference.newValue() : QString()};
    for (int side = 0; side < 2; ++side) {
        QString text = values[side].left(longestDetail);
        const int others = values[side].size() - text.size();
        if (others > 0) {
            text += QLatin1Char('\n') + tr("[%1 more characters]").arg(others);
        }
        details_[side]->setPlainText(text);
    }
}

void ComparisonPage::activate(const QModelIndex& index)
{
    const Node* const node = model_->node(index);
    if (node == nullptr || node->type != Node::Difference) {
        return;
    }
    const CReportDifference& difference = node->difference;
    const bool isOld = difference.kind() == CReportDifference::Removed ||
                       (index.column() == ComparisonModel::OldColumn && !difference.oldPath().isEmpty());
    emit activated(isOld ? Side::Old : Side::New,
                   isOld && !difference.oldPath().isEmpty() ? difference.oldPath() : difference.path());
}

bool ComparisonPage::eventFilter(QObject* object, QEvent* event)
{
    if (object == tree_ && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            activate(tree_->currentIndex());
            return true;
        }
    }
    return QWidget::eventFilter(object, event);
}

} // namespace Viewer
} // namespace norvex
