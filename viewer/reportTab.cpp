#include "viewer/reportTab.h"

#include "viewer/comparisonPage.h"
#include "viewer/outlineModel.h"
#include "viewer/overviewPage.h"
#include "viewer/reportTextView.h"
#include "viewer/statePages.h"
#include "viewer/textSearch.h"

#include <QDir>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSplitter>
#include <QStackedWidget>
#include <QStyle>
#include <QTimer>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>

namespace norvex {
namespace Viewer {

namespace {

enum StatePage { LoadingPage, ErrorPage, HiddenPage, ReportPage };

/// Sections of so few halves are seen at once.
const int mostExpanded = 200;

/// Where a place of a line stands in the same line without private data: at the begin or end of what is replaced if it
/// was in it.
int redactedColumn(const QStringRef& original, const QStringRef& redacted, int column, bool isBegin)
{
    const int shorter = std::min(original.size(), redacted.size());
    int same = 0;
    while (same < shorter && original.at(same) == redacted.at(same)) {
        ++same;
    }
    if (same == original.size() && same == redacted.size()) {
        return column;
    }
    int sameBehind = 0;
    while (sameBehind < shorter - same &&
           original.at(original.size() - 1 - sameBehind) == redacted.at(redacted.size() - 1 - sameBehind)) {
        ++sameBehind;
    }
    if (column <= same && (isBegin || column < same || same == 0)) {
        return column;
    }
    const int fromEnd = original.size() - column;
    if (fromEnd <= sameBehind) {
        return redacted.size() - fromEnd;
    }
    return isBegin ? same : redacted.size() - sameBehind;
}

int redactedOffset(const TextLines& original, const TextLines& redacted, int offset, bool isBegin)
{
    const int line = original.lineAt(offset);
    const int end = original.end(line);
    if (line >= redacted.count()) {
        return redacted.text().size();
    }
    const int redactedEnd = redacted.end(line);
    if (offset >= end) {
        return std::min(redactedEnd + offset - end, redacted.text().size());
    }
    const int begin = original.begin(line);
    const int redactedBegin = redacted.begin(line);
    return redactedBegin + redactedColumn(original.text().midRef(begin, end - begin),
                                          redacted.text().midRef(redactedBegin, redactedEnd - redactedBegin),
                                          offset - begin, isBegin);
}

QLabel* selectableLabel()
{
    QLabel* const label = wrappedLabel();
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return label;
}

} // namespace

QString redactedPart(const TextLines& original, const TextLines& redacted, int begin, int end)
{
    const int from = redactedOffset(original, redacted, begin, true);
    const int to = redactedOffset(original, redacted, end, false);
    return redacted.text().mid(from, std::max(to - from, 0));
}

ReportTab::ReportTab(Document* document, QWidget* parent)
    : QWidget(parent), document_(document), states_(new QStackedWidget), pages_(new QStackedWidget),
      splitter_(new QSplitter), tree_(new QTreeView), outlineModel_(new OutlineModel(this)),
      view_(new ReportTextView), overview_(new OverviewPage), comparison_(new ComparisonPage)
{
    document_->setParent(this);
    tree_->setObjectName(QStringLiteral("outline"));
    tree_->setAccessibleName(tr("Sections"));
    tree_->setModel(outlineModel_);
    tree_->setHeaderHidden(true);
    tree_->setUniformRowHeights(true);
    tree_->setTextElideMode(Qt::ElideRight);
    tree_->setContextMenuPolicy(Qt::ActionsContextMenu);
    tree_->installEventFilter(this);
    view_->setObjectName(QStringLiteral("text"));
    view_->setContextMenuPolicy(Qt::ActionsContextMenu);
    for (QFrame* const frame : {static_cast<QFrame*>(tree_), static_cast<QFrame*>(view_)}) {
        frame->setFrameShape(QFrame::NoFrame);
    }
    makePages();
    splitter_->addWidget(tree_);
    splitter_->addWidget(pages_);
    splitter_->setStretchFactor(1, 1);
    splitter_->setChildrenCollapsible(false);
    splitter_->setSizes({fontMetrics().averageCharWidth() * 44, fontMetrics().averageCharWidth() * 110});

    notice_ = selectableLabel();
    notice_->setObjectName(QStringLiteral("notice"));
    notice_->setContentsMargins(8, 4, 8, 4);
    notice_->setBackgroundRole(QPalette::ToolTipBase);
    notice_->setForegroundRole(QPalette::ToolTipText);
    notice_->setAutoFillBackground(true);
    notice_->hide();
    states_->insertWidget(LoadingPage, makeLoadingPage());
    states_->insertWidget(ErrorPage, makeErrorPage());
    states_->insertWidget(HiddenPage, makeHiddenPage());
    states_->insertWidget(ReportPage, splitter_);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(notice_);
    layout->addWidget(states_, 1);

    connect(document_, &Document::changed, this, &ReportTab::update);
    connect(tree_, &QTreeView::clicked, this, &ReportTab::jumpTo);
    connect(view_, &ReportTextView::firstVisibleLineChanged, this, &ReportTab::followText);
    document_->load();
}

QWidget* ReportTab::makeLoadingPage()
{
    auto* const label = selectableLabel();
    label->setText(document_->origin() == Document::Origin::ThisMachine
                       ? tr("Asking this machine…")
                       : tr("Reading “%1”…").arg(QDir::toNativeSeparators(document_->fileName())));
    progress_ = busyBar();
    connect(document_, &Document::progressed, this, [this](int percent) {
        // What comes behind reading does not say how far it is.
        progress_->setRange(0, percent < 100 ? 100 : 0);
        progress_->setValue(percent);
    });
    auto* const cancel = new QPushButton(tr("&Cancel"));
    cancel->setObjectName(QStringLiteral("cancelLoading"));
    connect(cancel, &QPushButton::clicked, document_, &Document::cancel);
    auto* const page = new QStackedWidget;
    page->addWidget(new QWidget);
    page->addWidget(centred({label, progress_, cancel}));
    QTimer::singleShot(patienceMs, page, [page] { page->setCurrentIndex(1); });
    return page;
}

QWidget* ReportTab::makeErrorPage()
{
    auto* const title = selectableLabel();
    title->setText(document_->origin() == Document::Origin::ThisMachine
                       ? tr("There is no report of this machine.")
                       : tr("“%1” cannot be shown.").arg(document_->title()));
    QFont font = title->font();
    font.setBold(true);
    title->setFont(font);
    error_ = selectableLabel();
    error_->setObjectName(QStringLiteral("error"));
    retry_ = new QPushButton(tr("&Try Again"));
    connect(retry_, &QPushButton::clicked, document_, &Document::load);
    QVector<QWidget*> widgets = {title, error_};
    if (document_->origin() == Document::Origin::File) {
        auto* const place = selectableLabel();
        place->setText(QDir::toNativeSeparators(document_->fileName()));
        widgets.append(place);
    }
    widgets.append(retry_);
    return centred(widgets);
}

QWidget* ReportTab::makeHiddenPage()
{
    hidden_ = selectableLabel();
    hidden_->setObjectName(QStringLiteral("hidden"));
    hiddenProgress_ = busyBar();
    hiddenProgress_->setRange(0, 100);
    connect(document_, &Document::redactionProgressed, hiddenProgress_, &QProgressBar::setValue);
    hiddenButton_ = new QPushButton;
    hiddenButton_->setObjectName(QStringLiteral("cancelHiding"));
    connect(hiddenButton_, &QPushButton::clicked, this, &ReportTab::toggleRedaction);
    return centred({hidden_, hiddenProgress_, hiddenButton_});
}

/// Gives up replacing private data, or begins again. The original is not shown instead: it is what the user hides.
void ReportTab::toggleRedaction()
{
    isRedactionCancelled_ = !isRedactionCancelled_;
    if (isRedactionCancelled_) {
        document_->cancelRedaction();
    }
    update();
}

void ReportTab::setShowsRedacted(bool showsRedacted)
{
    isComparisonOld_ = isComparisonOld_ || showsRedacted != showsRedacted_;
    showsRedacted_ = showsRedacted;
    isRedactionCancelled_ = false;
    update();
    updatePages();
}

void ReportTab::update()
{
    if (document_->state() == Document::State::Ready) {
        showReport();
    }
    showState();
    emit changed();
}

void ReportTab::showState()
{
    switch (document_->state()) {
    case Document::State::Loading: states_->setCurrentIndex(LoadingPage); break;
    case Document::State::Failed:
        error_->setText(document_->errorMessage());
        states_->setCurrentIndex(ErrorPage);
        break;
    case Document::State::Ready: states_->setCurrentIndex(isHidden_ ? HiddenPage : ReportPage); break;
    }
    showHidden();
    notice_->setText(document_->notices().join(QLatin1Char('\n')));
    notice_->setVisible(document_->state() == Document::State::Ready && !document_->notices().isEmpty());
}

void ReportTab::showHidden()
{
    const bool isImpossible = document_->isRedactionImpossible();
    hidden_->setText(isImpossible
                         ? tr("There is not enough memory to replace private data. Nothing is shown.")
                     : isRedactionCancelled_ ? tr("Private data is not replaced. Nothing is shown.")
                                             : tr("Replacing private data…"));
    hiddenProgress_->setVisible(!isImpossible && !isRedactionCancelled_);
    hiddenButton_->setVisible(!isImpossible);
    hiddenButton_->setText(isRedactionCancelled_ ? tr("&Try Again") : tr("&Cancel"));
}

void ReportTab::showReport()
{
    isShownRedacted_ = showsRedacted_ && !document_->redacted().isNull();
    isHidden_ = showsRedacted_ && !isShownRedacted_;
    if (!isHidden_) {
        showText(isShownRedacted_ ? document_->redacted() : document_->original());
        return;
    }
    stopSearch();
    if (!document_->isRedactionImpossible() && !isRedactionCancelled_) {
        document_->makeRedacted(this, [](bool) {});
    }
}

void ReportTab::showText(const ShownReport& report)
{
    const bool hasOtherText = report.lines != shown_.lines;
    const bool hasOtherOutline = report.outline != shown_.outline;
    shown_ = report;
    if (hasOtherText) {
        const int first = view_->firstVisibleLine();
        const bool keepsPlace = view_->lines().count() == shown_.lines->count();
        stopSearch();
        view_->setLines(shown_.lines);
        if (keepsPlace) {
            view_->setFirstVisibleLine(first);
        }
    }
    if (hasOtherText || hasOtherOutline) {
        view_->setOutline(shown_.outline);
        outlineModel_->setOutline(shown_.outline, shown_.lines);
        if (shown_.outline != nullptr && shown_.outline->topCount() <= mostExpanded) {
            tree_->expandToDepth(shown_.outline->nodes().size() <= mostExpanded ? 1 : 0);
        }
        followText(view_->firstVisibleLine());
    }
    if (search_ == nullptr) {
        startSearch();
    }
    if (hasOtherText || hasOtherOutline) {
        isOverviewOld_ = true;
        isComparisonOld_ = true;
        updatePages();
    }
}

void ReportTab::jumpTo(const QModelIndex& index)
{
    if (const Outline::Node* const node = outlineModel_->node(index)) {
        showPage(TextPage);
        isJumping_ = true;
        view_->showLine(node->firstLine);
        isJumping_ = false;
    }
}

void ReportTab::followText(int line)
{
    if (isJumping_ || shown_.outline == nullptr) {
        return;
    }
    // Under a separator begins what the reader sees.
    const bool isSeparator =
        shown_.outline->kind(line) == LineKind::Separator && line + 1 < shown_.lines->count();
    const QModelIndex index = outlineModel_->indexOf(shown_.outline->nodeAt(isSeparator ? line + 1 : line));
    if (index != tree_->currentIndex()) {
        tree_->setCurrentIndex(index);
    }
}

bool ReportTab::eventFilter(QObject* object, QEvent* event)
{
    if (object == tree_ && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            jumpTo(tree_->currentIndex());
            view_->setFocus();
            return true;
        }
    }
    return QWidget::eventFilter(object, event);
}

void ReportTab::currentSection(int& firstLine, int& lineCount) const
{
    firstLine = 0;
    lineCount = 0;
    if (shown().outline == nullptr) {
        return;
    }
    using Node = Outline::Node;
    const QVector<Node>& nodes = shown_.outline->nodes();
    const Node* const inTree = outlineModel_->node(tree_->currentIndex());
    const int node = shown_.outline->nodeAt(shown_.lines->lineAt(view_->cursor()));
    const Node* section = tree_->hasFocus() ? inTree : node == -1 ? nullptr : &nodes.at(node);
    while (section != nullptr && section->type == Node::Block) {
        section = &nodes.at(section->parent);
    }
    if (section != nullptr) {
        firstLine = section->firstLine;
        lineCount = section->lineCount;
    }
}

QString ReportTab::selectedText(bool isRedacted) const
{
    const int begin = view_->selectionBegin();
    const int end = view_->selectionEnd();
    if (isRedacted && !isShownRedacted_) {
        return redactedPart(*shown_.lines, *document_->redacted().lines, begin, end);
    }
    return shown_.lines->text().mid(begin, end - begin);
}

QString ReportTab::textOfLines(int firstLine, int lineCount, bool isRedacted) const
{
    const TextLines& lines = isRedacted ? *document_->redacted().lines : *document_->original().lines;
    const int count = lines.count();
    const int begin = lines.begin(std::min(firstLine, count - 1));
    const int behind = firstLine + lineCount;
    return lines.text().mid(begin, (behind < count ? lines.begin(behind) : lines.text().size()) - begin);
}

void ReportTab::setSought(const QString& sought, Qt::CaseSensitivity sensitivity)
{
    sought_ = sought;
    sensitivity_ = sensitivity;
    startSearch();
}

void ReportTab::startSearch()
{
    stopSearch();
    if (!sought_.isEmpty() && !shown().isNull()) {
        search_ = new TextSearch(this, shown_.lines->text(), sought_, sensitivity_);
        connect(search_, &TextSearch::advanced, this, &ReportTab::goOnFinding);
    }
    view_->setSearch(search_);
    emit searchAdvanced();
}

void ReportTab::stopSearch()
{
    view_->setSearch(nullptr);
    delete search_;
    search_ = nullptr;
    isFinding_ = false;
}

void ReportTab::goOnFinding()
{
    if (isFinding_) {
        findFrom(findPlace_, findDirection_);
    }
    view_->viewport()->update();
    emit searchAdvanced();
}

void ReportTab::findFrom(int place, Direction direction)
{
    if (search_ == nullptr) {
        return;
    }
    int hit = 0;
    const TextSearch::Found found =
        direction == Direction::Forward ? search_->next(place, hit) : search_->previous(place, hit);
    isFinding_ = found == TextSearch::Found::NotYet;
    findPlace_ = place;
    findDirection_ = direction;
    if (found == TextSearch::Found::Yes) {
        showPage(TextPage);
        view_->select(hit, hit + search_->length());
        emit searchAdvanced();
    } else if (found == TextSearch::Found::No) {
        emit searchEnded(direction);
    }
}

void ReportTab::findNext(Direction direction)
{
    findFrom(direction == Direction::Forward ? view_->selectionEnd() : view_->selectionBegin(), direction);
}

int ReportTab::currentHit() const
{
    if (search_ == nullptr || view_->selectionEnd() - view_->selectionBegin() != search_->length()) {
        return 0;
    }
    int hit = 0;
    const bool isHit = search_->next(view_->selectionBegin(), hit) == TextSearch::Found::Yes &&
                       hit == view_->selectionBegin();
    return isHit ? search_->numberOf(hit) : 0;
}

} // namespace Viewer
} // namespace norvex
