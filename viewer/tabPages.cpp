// What stands beside the tree of a tab.

#include "viewer/comparisonPage.h"
#include "viewer/overviewPage.h"
#include "viewer/reportTab.h"
#include "viewer/reportTextView.h"

#include <QAction>
#include <QStackedWidget>

namespace norvex {
namespace Viewer {

using SystemInfo::CReportItem;

namespace {

/// The deepest node of an outline that an item stands in; -1 for none.
int nodeOfPath(const Outline& outline, const QString& path)
{
    int found = -1;
    int longest = 0;
    for (int i = 0; i < outline.nodes().size(); ++i) {
        const QString& part = outline.nodes().at(i).path;
        const bool isPart = part.size() > longest && path.startsWith(part) &&
                            (part.size() == path.size() || path.at(part.size()) == QLatin1Char('/') ||
                             path.at(part.size()) == QLatin1Char('['));
        if (isPart) {
            longest = part.size();
            found = i;
        }
    }
    return found;
}

} // namespace

void ReportTab::makePages()
{
    pages_->insertWidget(TextPage, view_);
    pages_->insertWidget(OverviewPageNumber, overview_);
    pages_->insertWidget(ComparisonPageNumber, comparison_);
    // The window has these keys, wherever the focus is.
    comparison_->nextAction()->setShortcut(QKeySequence());
    comparison_->previousAction()->setShortcut(QKeySequence());
    connect(overview_, &OverviewPage::activated, this, &ReportTab::showItem);
    connect(comparison_, &ComparisonPage::activated, this,
            [this](ComparisonPage::Side side, const QString& path) {
                const bool isOwn = (side == ComparisonPage::Side::New) != isSwapped_;
                if (isOwn) {
                    showItem(path);
                } else if (comparedTab_ != nullptr) {
                    emit otherItemWanted(comparedTab_, path);
                }
            });
    connect(comparison_, &ComparisonPage::swapRequested, this, &ReportTab::swapComparison);
    connect(comparison_, &ComparisonPage::copyRequested, this, &ReportTab::differencesCopyRequested);
}

ReportTab::Page ReportTab::page() const
{
    return static_cast<Page>(pages_->currentIndex());
}

void ReportTab::showPage(Page page)
{
    if (page == this->page()) {
        return;
    }
    const bool hadFocus = pages_->isAncestorOf(focusWidget());
    pages_->setCurrentIndex(page);
    updatePages();
    if (hadFocus || page == ComparisonPageNumber) {
        (page == TextPage             ? static_cast<QWidget*>(view_)
         : page == OverviewPageNumber ? static_cast<QWidget*>(overview_)
                                      : static_cast<QWidget*>(comparison_))
            ->setFocus();
    }
    emit pageChanged();
}

/// A page is made of what is shown when somebody looks at it.
void ReportTab::updatePages()
{
    if (shown_.report.isNull()) {
        return; // the report is looked through, and comes again
    }
    if (page() == OverviewPageNumber && isOverviewOld_) {
        isOverviewOld_ = false;
        overview_->setReport(shown_.report);
    } else if (page() == ComparisonPageNumber && isComparing_ && isComparisonOld_) {
        startComparison();
    }
}

void ReportTab::showItem(const QString& path)
{
    if (shown_.outline == nullptr) {
        return;
    }
    const CReportItem item = shown_.report.item(path);
    const int index = nodeOfPath(*shown_.outline, path);
    if (item.isNull() || index == -1) {
        return;
    }
    const TextLines& lines = *shown_.lines;
    const Outline::Node& node = shown_.outline->nodes().at(index);
    const int found = lines.text().indexOf(item.text(), lines.begin(node.firstLine));
    const int line = found == -1 ? node.firstLine : lines.lineAt(found);
    showPage(TextPage);
    view_->showLine(line);
    view_->select(lines.begin(line), lines.end(line));
    view_->setFocus();
}

void ReportTab::compareWith(ReportTab* other)
{
    if (comparedTab_ != nullptr) {
        disconnect(comparedTab_, nullptr, comparison_, nullptr);
    }
    comparedTab_ = other;
    isComparing_ = true;
    isSwapped_ = false;
    isComparisonOld_ = true;
    comparison_->showWaiting();
    connect(other->document(), &Document::textChanged, comparison_, [this] {
        isComparisonOld_ = true;
        updatePages();
    });
    connect(other, &ReportTab::changed, comparison_, [this] { updatePages(); });
    connect(other, &QObject::destroyed, comparison_, [this] { updatePages(); });
    showPage(ComparisonPageNumber);
    updatePages();
    emit pageChanged();
}

void ReportTab::startComparison()
{
    const bool hasOther = comparedTab_ != nullptr;
    const Document* const other = hasOther ? comparedTab_->document() : nullptr;
    if (!hasOther || other->state() == Document::State::Failed) {
        isComparisonOld_ = false;
        comparison_->showMessage(tr("Not compared"),
                                 hasOther ? tr("“%1” cannot be read.").arg(other->title())
                                          : tr("The other report was closed before it was read."));
        return;
    }
    const Document* const older = isSwapped_ ? document_ : other;
    const Document* const newer = isSwapped_ ? other : document_;
    if (other->state() != Document::State::Ready || older->original().report.isNull() ||
        newer->original().report.isNull()) {
        return; // a report is read, and changes when that is done
    }
    isComparisonOld_ = false;
    comparison_->compare(older->original().report, older->title(), newer->original().report, newer->title(),
                         showsRedacted_);
}

void ReportTab::swapComparison()
{
    isSwapped_ = !isSwapped_;
    isComparisonOld_ = true;
    updatePages();
}

} // namespace Viewer
} // namespace norvex
