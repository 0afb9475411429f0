// Finding in all tabs of the window.

#include "viewer/mainWindow.h"

#include "viewer/findBar.h"
#include "viewer/reportTextView.h"
#include "viewer/textSearch.h"

#include <QTabWidget>

#include <algorithm>

namespace norvex {
namespace Viewer {

namespace {

/// A longer selection is not what somebody wants to find.
const int longestSelection = 100;

} // namespace

void MainWindow::connectFindBar()
{
    connect(findBar_, &FindBar::soughtChanged, this, &MainWindow::soughtChanged);
    connect(findBar_, &FindBar::nextRequested, this, [this] { find(ReportTab::Direction::Forward); });
    connect(findBar_, &FindBar::previousRequested, this, [this] { find(ReportTab::Direction::Backward); });
    connect(findBar_, &FindBar::stopRequested, this, &MainWindow::stopCounting);
    connect(findBar_, &FindBar::closed, this, &MainWindow::closeFindBar);
}

void MainWindow::openFindBar()
{
    const ReportTab* const tab = currentTab();
    QString sought;
    if (tab != nullptr && tab->view()->hasSelection() &&
        tab->view()->selectionEnd() - tab->view()->selectionBegin() <= longestSelection) {
        sought = tab->selectedText(tab->isShownRedacted()).section(QLatin1Char('\n'), 0, 0);
    }
    findBar_->open(sought);
    soughtChanged();
}

void MainWindow::closeFindBar()
{
    findBar_->hide();
    for (int i = 0; i < tabs_->count(); ++i) {
        tabAt(i)->setSought(QString(), Qt::CaseInsensitive);
    }
    if (ReportTab* const tab = currentTab()) {
        tab->view()->setFocus();
    }
}

/// Begins to look in all tabs, and goes to the first hit that is not in front of the cursor.
void MainWindow::soughtChanged()
{
    isSearchStopped_ = false;
    for (int i = 0; i < tabs_->count(); ++i) {
        tabAt(i)->setSought(findBar_->sought(), findBar_->sensitivity());
    }
    ReportTab* const tab = currentTab();
    if (tab == nullptr || tab->search() == nullptr) {
        return;
    }
    isTyping_ = true;
    tab->findFrom(tab->view()->selectionBegin(), ReportTab::Direction::Forward);
}

void MainWindow::find(ReportTab::Direction direction)
{
    ReportTab* const tab = currentTab();
    if (tab == nullptr) {
        return;
    }
    if (!findBar_->isVisible() || findBar_->sought().isEmpty() || isSearchStopped_) {
        openFindBar();
        return;
    }
    isTyping_ = false;
    tab->findNext(direction);
}

/// Goes on in the next tab with a hit; the tab itself comes last.
void MainWindow::searchEnded(ReportTab* tab, ReportTab::Direction direction)
{
    if (tab != currentTab()) {
        return;
    }
    const int count = tabs_->count();
    const int step = direction == ReportTab::Direction::Forward ? 1 : count - 1;
    const int others = isTyping_ ? 0 : count - 1;
    for (int i = 1; i <= others + 1; ++i) {
        const int index = i > others ? tabs_->currentIndex() : (tabs_->currentIndex() + i * step) % count;
        ReportTab* const next = tabAt(index);
        if (next->search() == nullptr || next->search()->count() == 0) {
            continue;
        }
        if (next == tab) {
            say(direction == ReportTab::Direction::Forward ? tr("Continued from the top.")
                                                           : tr("Continued from the end."));
        }
        tabs_->setCurrentIndex(index);
        const int end = next->shown().lines->text().size();
        next->findFrom(direction == ReportTab::Direction::Forward ? 0 : end, direction);
        return;
    }
    updateSearchResult();
}

void MainWindow::stopCounting()
{
    for (int i = 0; i < tabs_->count(); ++i) {
        tabAt(i)->stopSearch();
    }
    isSearchStopped_ = true;
    updateSearchResult();
}

void MainWindow::updateSearchResult()
{
    if (!findBar_->isVisible()) {
        return;
    }
    int total = 0;
    int percent = 100;
    for (int i = 0; i < tabs_->count(); ++i) {
        if (const TextSearch* const search = tabAt(i)->search()) {
            total += search->count();
            percent = std::min(percent, search->percent());
        }
    }
    const bool isIdle = findBar_->sought().isEmpty() || currentTab() == nullptr;
    findBar_->setResult(isIdle ? QString() : searchResult(total, percent < 100), total > 0 || isIdle,
                        percent);
}

/// @param total hits in all tabs
QString MainWindow::searchResult(int total, bool isCounting) const
{
    const ReportTab& tab = *currentTab();
    if (isSearchStopped_) {
        return tr("Stopped.");
    }
    const int here = tab.search() == nullptr ? 0 : tab.search()->count();
    if (total == 0) {
        return isCounting ? tr("Searching…") : tr("No hit");
    }
    const int current = tab.currentHit();
    const QString hits = current > 0 ? tr("Hit %1 of %2").arg(current).arg(here) : tr("Hits: %1").arg(here);
    return tabs_->count() == 1 ? hits : tr("%1, %2 in all tabs").arg(hits).arg(total);
}

} // namespace Viewer
} // namespace norvex
