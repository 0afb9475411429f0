// The pages of a tab, and which reports are compared.

#include "viewer/comparisonPage.h"
#include "viewer/keys.h"
#include "viewer/mainWindow.h"

#include <QAction>
#include <QActionGroup>
#include <QFileDialog>
#include <QMenu>
#include <QTabWidget>
#include <QTreeView>

namespace norvex {
namespace Viewer {

void MainWindow::makePageActions(QMenu* menu)
{
    const struct
    {
        ReportTab::Page page;
        QString text;
        const char* name;
        Qt::Key key;
    } pages[] = {
        {ReportTab::TextPage, tr("T&ext"), "textPage", Qt::Key_1},
        {ReportTab::OverviewPageNumber, tr("&Overview"), "overviewPage", Qt::Key_2},
        {ReportTab::ComparisonPageNumber, tr("&Comparison"), "comparisonPage", Qt::Key_3},
    };
    auto* const group = new QActionGroup(this);
    for (const auto& page : pages) {
        const ReportTab::Page number = page.page;
        QAction* const action = add(menu, page.text, page.name, {keys(Qt::CTRL, page.key)}, [this, number] {
            if (ReportTab* const tab = currentTab()) {
                tab->showPage(number);
            }
        });
        action->setCheckable(true);
        group->addAction(action);
        pageActions_[number] = action;
    }
    menu->addSeparator();
    nextDifference_ =
        add(menu, tr("Next &Difference"), "goToNextDifference", {QKeySequence(Qt::Key_F7)}, [this] {
            currentTab()->showPage(ReportTab::ComparisonPageNumber);
            currentTab()->comparison()->nextAction()->trigger();
        });
    previousDifference_ = add(menu, tr("Previous Di&fference"), "goToPreviousDifference",
                              {keys(Qt::SHIFT, Qt::Key_F7)}, [this] {
                                  currentTab()->showPage(ReportTab::ComparisonPageNumber);
                                  currentTab()->comparison()->previousAction()->trigger();
                              });
    swapSides_ = add(menu, tr("&Swap Compared Reports"), "swapCompared",
                     {keys(Qt::CTRL + Qt::SHIFT, Qt::Key_X)}, [this] { currentTab()->swapComparison(); });
    menu->addSeparator();
}

void MainWindow::updatePageActions()
{
    const ReportTab* const tab = currentTab();
    const bool hasReport = tab != nullptr && !tab->shown().isNull();
    const bool hasComparison = hasReport && tab->hasComparison();
    for (QAction* const action : pageActions_) {
        action->setEnabled(hasReport);
    }
    for (QAction* const action : {pageActions_[ReportTab::ComparisonPageNumber], nextDifference_,
                                  previousDifference_, swapSides_, copyDifferences_}) {
        action->setEnabled(hasComparison);
    }
    if (tab != nullptr) {
        pageActions_[tab->page()]->setChecked(true);
    }
}

void MainWindow::fillCompareMenu()
{
    compareMenu_->clear();
    for (int i = 0; i < tabs_->count(); ++i) {
        ReportTab* const tab = tabAt(i);
        if (tab == currentTab()) {
            continue;
        }
        QAction* const action =
            compareMenu_->addAction(tab->document()->title().replace(QLatin1Char('&'), QLatin1String("&&")));
        connect(action, &QAction::triggered, tab, [this, tab] { compareWith(tab); });
    }
    compareMenu_->addSeparator();
    connect(compareMenu_->addAction(tr("&File…")), &QAction::triggered, this,
            &MainWindow::chooseFileToCompare);
}

void MainWindow::chooseFileToCompare()
{
    ReportTab* const newer = currentTab();
    const QString file =
        QFileDialog::getOpenFileName(this, tr("Compare With an Older Report"), QString(), reportFilter());
    if (file.isEmpty() || newer == nullptr) {
        return;
    }
    openFile(file);
    ReportTab* const older = currentTab();
    if (older != newer) {
        tabs_->setCurrentWidget(newer);
        compareWith(older);
    }
}

void MainWindow::compareWith(ReportTab* older)
{
    if (ReportTab* const tab = currentTab()) {
        tab->compareWith(older);
    }
}

} // namespace Viewer
} // namespace norvex
