#include "viewer/mainWindow.h"

#include "viewer/findBar.h"
#include "viewer/identificationPanel.h"
#include "viewer/keys.h"
#include "viewer/reportTextView.h"
#include "viewer/sectionProcess.h"
#include "viewer/statePages.h"
#include "viewer/textSearch.h"

#include "systeminfo/norvexSystemInfo.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDir>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDatabase>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>

namespace norvex {
namespace Viewer {

namespace {

enum CentrePage { EmptyPage, TabsPage };

const int messageMs = 6000;
const int mostRecentFiles = 10;
const int mostZoomSteps = 20;
const char recentFilesKey[] = "recentFiles";
const char openFilesKey[] = "openFiles";
const char geometryKey[] = "geometry";
const char stateKey[] = "state";

/// Names of the system's icons, and what Qt has where the system has none.
QIcon icon(const char* name, QStyle::StandardPixmap substitute)
{
    return QIcon::fromTheme(QLatin1String(name), QApplication::style()->standardIcon(substitute));
}

} // namespace

MainWindow::MainWindow()
{
    setAcceptDrops(true);
    makeCentre();
    makeFileMenu();
    makeEditMenu();
    makeViewMenu();
    makeHelpMenu();
    makeToolBar();
    makeStatusBar();
    connectFindBar();
    restore();
    currentTabChanged();
}

MainWindow::~MainWindow()
{
    // What the tabs tell while they go finds no window any more.
    for (int i = 0; i < tabs_->count(); ++i) {
        tabAt(i)->disconnect(this);
    }
    tabs_->disconnect(this);
}

QAction* MainWindow::add(QMenu* menu, const QString& text, const char* name,
                         const QList<QKeySequence>& shortcuts, const std::function<void()>& act)
{
    auto* const action = new QAction(text, this);
    action->setObjectName(QLatin1String(name));
    action->setShortcuts(shortcuts);
    connect(action, &QAction::triggered, this, [act] { act(); });
    menu->addAction(action);
    return action;
}

QAction* MainWindow::addSwitch(QMenu* menu, const QString& text, const char* name, const QKeySequence& key,
                               bool isOn)
{
    QAction* const action = add(menu, text, name, {key}, [] {});
    action->setCheckable(true);
    action->setChecked(isOn);
    return action;
}

void MainWindow::makeCentre()
{
    tabs_ = new QTabWidget;
    tabs_->setDocumentMode(true);
    tabs_->setMovable(true);
    tabs_->setTabsClosable(true);
    // Titles are cut by the window: tabs of Qt's would shrink until nobody can tell them apart.
    tabs_->setElideMode(Qt::ElideNone);
    tabs_->setUsesScrollButtons(true);
    tabs_->setAccessibleName(tr("Reports"));
    tabs_->tabBar()->setAccessibleName(tr("Reports"));
    connect(tabs_, &QTabWidget::currentChanged, this, &MainWindow::currentTabChanged);
    connect(tabs_, &QTabWidget::tabCloseRequested, this, &MainWindow::closeTab);
    centre_ = new QStackedWidget;
    centre_->insertWidget(EmptyPage, makeEmptyPage());
    centre_->insertWidget(TabsPage, tabs_);
    findBar_ = new FindBar;
    findBar_->hide();
    auto* const widget = new QWidget;
    auto* const layout = new QVBoxLayout(widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(centre_, 1);
    layout->addWidget(findBar_);
    setCentralWidget(widget);

    auto* const dock = new QDockWidget(tr("Identification"), this);
    dock->setObjectName(QStringLiteral("identification"));
    dock->setAllowedAreas(Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea);
    identification_ = new IdentificationPanel;
    dock->setWidget(identification_);
    addDockWidget(Qt::RightDockWidgetArea, dock);
    dock->hide();
}

QWidget* MainWindow::makeEmptyPage()
{
    auto* const open = new QPushButton(tr("&Open…"));
    auto* const machine = new QPushButton(tr("Show &This Machine"));
    connect(open, &QPushButton::clicked, this, &MainWindow::chooseFiles);
    connect(machine, &QPushButton::clicked, this, &MainWindow::openThisMachine);
    auto* const row = new QWidget;
    auto* const buttons = new QHBoxLayout(row);
    buttons->setContentsMargins(0, 0, 0, 0);
    buttons->addWidget(open);
    buttons->addWidget(machine);
    buttons->addStretch(1);
    return centred({boldLabel(tr("No report is open.")),
                    wrappedLabel(tr("Open one, drop files here, or show this machine.")), row});
}

void MainWindow::makeFileMenu()
{
    QMenu* const menu = menuBar()->addMenu(tr("&File"));
    open_ = add(menu, tr("&Open…"), "open", {QKeySequence::Open}, [this] { chooseFiles(); });
    open_->setIcon(icon("document-open", QStyle::SP_DialogOpenButton));
    recentFiles_ = menu->addMenu(tr("Open &Recent"));
    connect(recentFiles_, &QMenu::aboutToShow, this, &MainWindow::fillRecentFiles);
    add(menu, tr("Show &This Machine"), "thisMachine", {keys(Qt::CTRL, Qt::Key_T)},
        [this] { openThisMachine(); });
    refresh_ = add(menu, tr("Re&fresh"), "refresh", QKeySequence::keyBindings(QKeySequence::Refresh), [this] {
        if (ReportTab* const tab = currentTab()) {
            tab->document()->load();
        }
    });
    refresh_->setIcon(icon("view-refresh", QStyle::SP_BrowserReload));
    menu->addSeparator();
    save_ = add(menu, tr("&Save As…"), "save", {QKeySequence::Save, keys(Qt::CTRL + Qt::SHIFT, Qt::Key_S)},
                [this] { chooseSaveName(); });
    save_->setIcon(icon("document-save-as", QStyle::SP_DialogSaveButton));
    compareMenu_ = menu->addMenu(tr("Co&mpare With"));
    compareMenu_->setObjectName(QStringLiteral("compareWith"));
    connect(compareMenu_, &QMenu::aboutToShow, this, &MainWindow::fillCompareMenu);
    menu->addSeparator();
    QAction* const pdf = add(menu, tr("&Export as PDF…"), "exportPdf", {keys(Qt::CTRL, Qt::Key_E)},
                             [this] { choosePdfName(); });
    QAction* const print =
        add(menu, tr("&Print…"), "print", {QKeySequence::Print}, [this] { this->print(); });
    print->setIcon(QIcon::fromTheme(QStringLiteral("document-print")));
    menu->addSeparator();
    closeTab_ = add(menu, tr("&Close Tab"), "closeTab", {QKeySequence::Close},
                    [this] { closeTab(tabs_->currentIndex()); });
    QAction* const quit = add(menu, tr("&Quit"), "quit", {QKeySequence::Quit}, [this] { close(); });
    quit->setMenuRole(QAction::QuitRole);
    reportActions_ << save_ << pdf << print << compareMenu_->menuAction();
}

void MainWindow::makeEditMenu()
{
    using Direction = ReportTab::Direction;
    QMenu* const menu = menuBar()->addMenu(tr("&Edit"));
    copy_ = add(menu, tr("&Copy"), "copy", {QKeySequence::Copy}, [this] { copySelection(); });
    copy_->setIcon(icon("edit-copy", QStyle::SP_FileIcon));
    copySection_ = add(menu, tr("Copy S&ection"), "copySection", {keys(Qt::CTRL + Qt::SHIFT, Qt::Key_C)},
                       [this] { copySection(); });
    QAction* const copyAll = add(menu, tr("Copy Whole &Report"), "copyAll",
                                 {keys(Qt::CTRL + Qt::SHIFT, Qt::Key_A)}, [this] { this->copyAll(); });
    copyDifferences_ = add(menu, tr("Copy &Differences"), "copyDifferences",
                           {keys(Qt::CTRL + Qt::SHIFT, Qt::Key_D)}, [this] { copyDifferences(); });
    QAction* const selectAll = add(menu, tr("Select &All"), "selectAll", {QKeySequence::SelectAll}, [this] {
        if (ReportTab* const tab = currentTab()) {
            tab->view()->selectAll();
        }
    });
    menu->addSeparator();
    find_ = add(menu, tr("&Find…"), "find", {QKeySequence::Find}, [this] { openFindBar(); });
    find_->setIcon(icon("edit-find", QStyle::SP_FileDialogContentsView));
    QAction* const next =
        add(menu, tr("Find &Next"), "findNext", {QKeySequence(Qt::Key_F3), keys(Qt::CTRL, Qt::Key_G)},
            [this] { find(Direction::Forward); });
    QAction* const previous = add(menu, tr("Find &Previous"), "findPrevious",
                                  {keys(Qt::SHIFT, Qt::Key_F3), keys(Qt::CTRL + Qt::SHIFT, Qt::Key_G)},
                                  [this] { find(Direction::Backward); });
    reportActions_ << copy_ << copySection_ << copyAll << selectAll << find_ << next << previous;
}

void MainWindow::makeViewMenu()
{
    QMenu* const menu = menuBar()->addMenu(tr("&View"));
    makePageActions(menu);
    showsRedacted_ = addSwitch(menu, tr("&Hide Private Data"), "hidePrivateData",
                               keys(Qt::CTRL + Qt::SHIFT, Qt::Key_H), false);
    showsRedacted_->setToolTip(tr("Show the report without private data"));
    connect(showsRedacted_, &QAction::toggled, this, &MainWindow::setShowsRedacted);
    sharesRedacted_ = addSwitch(menu, tr("Copy, Save and Print &Without Private Data"),
                                "shareWithoutPrivateData", QKeySequence(), true);
    connect(sharesRedacted_, &QAction::toggled, this, &MainWindow::updatePrivacyNote);
    menu->addSeparator();
    QAction* const panel = findChild<QDockWidget*>(QStringLiteral("identification"))->toggleViewAction();
    panel->setText(tr("&Identification"));
    panel->setShortcut(keys(Qt::CTRL, Qt::Key_I));
    menu->addAction(panel);
    menu->addSeparator();
    add(menu, tr("&Zoom In"), "zoomIn", {QKeySequence::ZoomIn, keys(Qt::CTRL, Qt::Key_Equal)},
        [this] { zoom(zoom_ + 1); });
    add(menu, tr("Zoom O&ut"), "zoomOut", {QKeySequence::ZoomOut}, [this] { zoom(zoom_ - 1); });
    add(menu, tr("&Normal Size"), "zoomNormal", {keys(Qt::CTRL, Qt::Key_0)}, [this] { zoom(0); });
    menu->addSeparator();
    const auto step = [this](int by) {
        if (tabs_->count() > 0) {
            tabs_->setCurrentIndex((tabs_->currentIndex() + by + tabs_->count()) % tabs_->count());
        }
    };
    add(menu, tr("Ne&xt Tab"), "nextTab", {keys(Qt::CTRL, Qt::Key_PageDown), QKeySequence::NextChild},
        [step] { step(1); });
    add(menu, tr("&Previous Tab"), "previousTab",
        {keys(Qt::CTRL, Qt::Key_PageUp), QKeySequence::PreviousChild}, [step] { step(-1); });
    add(menu, tr("Go to Sections or &Text"), "goToSections", {QKeySequence(Qt::Key_F6)}, [this] {
        if (ReportTab* const tab = currentTab()) {
            (tab->tree()->hasFocus() ? tab->pages()->currentWidget() : tab->tree())->setFocus();
        }
    });
}

void MainWindow::makeHelpMenu()
{
    QMenu* const menu = menuBar()->addMenu(tr("&Help"));
    add(menu, tr("&About"), "about", {}, [this] { showAbout(); })->setMenuRole(QAction::AboutRole);
}

void MainWindow::makeToolBar()
{
    QToolBar* const bar = addToolBar(tr("Tools"));
    bar->setObjectName(QStringLiteral("tools"));
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->setMovable(false);
    const auto addAction = [bar](QAction* action, const QString& shortText) {
        action->setIconText(shortText);
        bar->addAction(action);
    };
    addAction(open_, tr("Open"));
    addAction(save_, tr("Save"));
    addAction(refresh_, tr("Refresh"));
    bar->addSeparator();
    addAction(copy_, tr("Copy"));
    addAction(find_, tr("Find"));
    bar->addSeparator();
    addAction(showsRedacted_, tr("Hide Private Data"));
    bar->addSeparator();
    addAction(pageActions_[ReportTab::TextPage], tr("Text"));
    addAction(pageActions_[ReportTab::OverviewPageNumber], tr("Overview"));
    addAction(compareMenu_->menuAction(), tr("Compare"));
    if (auto* const button = qobject_cast<QToolButton*>(bar->widgetForAction(compareMenu_->menuAction()))) {
        button->setPopupMode(QToolButton::InstantPopup);
    }
}

void MainWindow::makeStatusBar()
{
    workNote_ = new QLabel;
    workNote_->setTextFormat(Qt::PlainText);
    workProgress_ = new QProgressBar;
    workProgress_->setMaximumWidth(fontMetrics().averageCharWidth() * 20);
    workProgress_->setAccessibleName(tr("Progress"));
    cancelWork_ = new QPushButton(tr("Cancel"));
    cancelWork_->setObjectName(QStringLiteral("cancelWork"));
    connect(cancelWork_, &QPushButton::clicked, this, &MainWindow::cancelWork);
    privacyNote_ = new QLabel;
    privacyNote_->setObjectName(QStringLiteral("privacyNote"));
    for (QWidget* const widget : {static_cast<QWidget*>(workNote_), static_cast<QWidget*>(workProgress_),
                                  static_cast<QWidget*>(cancelWork_), static_cast<QWidget*>(privacyNote_)}) {
        statusBar()->addPermanentWidget(widget);
    }
    updatePrivacyNote();
    updateBusyness();
}

void MainWindow::restore()
{
    const QSettings settings;
    if (!restoreGeometry(settings.value(QLatin1String(geometryKey)).toByteArray())) {
        resize(QSize(1100, 750).boundedTo(QGuiApplication::primaryScreen()->availableSize() * 0.85));
    }
    restoreState(settings.value(QLatin1String(stateKey)).toByteArray());
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    const bool isWorking = saving_ != nullptr || working_ != nullptr || sharing_ != nullptr;
    if (isWorking && !isConfirmed(tr("A report is still being copied, saved or printed. "
                                     "Do you want to close the window all the same?"))) {
        event->ignore();
        return;
    }
    QSettings settings;
    settings.setValue(QLatin1String(geometryKey), saveGeometry());
    settings.setValue(QLatin1String(stateKey), saveState());
    QStringList files;
    for (int i = 0; i < tabs_->count(); ++i) {
        const Document& document = *tabAt(i)->document();
        if (document.origin() == Document::Origin::File) {
            files += document.fileName();
        }
    }
    settings.setValue(QLatin1String(openFilesKey), files);
    event->accept();
}

QStringList MainWindow::rememberedFiles()
{
    QStringList files;
    for (const QString& file : QSettings().value(QLatin1String(openFilesKey)).toStringList()) {
        if (QFileInfo(file).isFile()) {
            files += file;
        }
    }
    return files;
}

// Tabs

ReportTab* MainWindow::tabAt(int index) const
{
    return qobject_cast<ReportTab*>(tabs_->widget(index));
}

ReportTab* MainWindow::currentTab() const
{
    return qobject_cast<ReportTab*>(tabs_->currentWidget());
}

void MainWindow::openThisMachine()
{
    for (int i = 0; i < tabs_->count(); ++i) {
        if (tabAt(i)->document()->origin() == Document::Origin::ThisMachine) {
            tabs_->setCurrentIndex(i);
            return;
        }
    }
    addTab(new Document(this));
}

void MainWindow::openFile(const QString& fileName)
{
    const QString path = QFileInfo(fileName).absoluteFilePath();
    for (int i = 0; i < tabs_->count(); ++i) {
        if (tabAt(i)->document()->fileName() == path) {
            tabs_->setCurrentIndex(i);
            return;
        }
    }
    rememberFile(path);
    addTab(new Document(this, path));
}

void MainWindow::addTab(Document* document)
{
    auto* const tab = new ReportTab(document);
    tab->view()->setFont(zoomedFont());
    tab->view()->addActions({copy_, copySection_});
    tab->tree()->addAction(copySection_);
    tab->setShowsRedacted(showsRedacted_->isChecked());
    connect(tab, &ReportTab::changed, this, &MainWindow::update);
    connect(tab, &ReportTab::searchAdvanced, this, &MainWindow::updateSearchResult);
    connect(tab, &ReportTab::searchEnded, this,
            [this, tab](ReportTab::Direction direction) { searchEnded(tab, direction); });
    connect(tab, &ReportTab::pageChanged, this, &MainWindow::updatePageActions);
    connect(tab, &ReportTab::differencesCopyRequested, this, &MainWindow::copyDifferences);
    connect(tab, &ReportTab::otherItemWanted, this, [this](ReportTab* other, const QString& path) {
        tabs_->setCurrentWidget(other);
        other->showItem(path);
    });
    connect(tab->view(), &ReportTextView::copyRequested, this, &MainWindow::copySelection);
    connect(tab->view(), &ReportTextView::selectionMade, this, &MainWindow::offerSelection);
    connect(tab->document(), &Document::progressed, this, [this, tab](int percent) {
        if (tab == currentTab() && sharing_ == nullptr) {
            workProgress_->setValue(percent);
        }
    });
    connect(tab->document(), &Document::redactionProgressed, this, [this, tab](int percent) {
        if (tab->document() == sharing_) {
            workProgress_->setValue(percent);
        }
    });
    const int index = tabs_->addTab(tab, QString());
    tabs_->setCurrentIndex(index);
    if (findBar_->isVisible()) {
        tab->setSought(findBar_->sought(), findBar_->sensitivity());
    }
    update();
}

void MainWindow::closeTab(int index)
{
    ReportTab* const tab = tabAt(index);
    if (tab == nullptr) {
        return;
    }
    tab->disconnect(this);
    tabs_->removeTab(index);
    delete tab;
    currentTabChanged();
}

void MainWindow::currentTabChanged()
{
    ReportTab* const tab = currentTab();
    identification_->setDocument(tab == nullptr ? nullptr : tab->document());
    update();
    if (tab != nullptr && !findBar_->isAncestorOf(QApplication::focusWidget())) {
        tab->pages()->currentWidget()->setFocus();
    }
}

void MainWindow::update()
{
    const ReportTab* const tab = currentTab();
    centre_->setCurrentIndex(tab == nullptr ? EmptyPage : TabsPage);
    const bool hasReport = tab != nullptr && !tab->shown().isNull();
    for (QAction* const action : reportActions_) {
        action->setEnabled(hasReport);
    }
    refresh_->setEnabled(tab != nullptr && !tab->document()->isBusy());
    closeTab_->setEnabled(tab != nullptr);
    setWindowTitle(tab == nullptr ? tr("System Information")
                                  : tr("%1 – System Information").arg(tab->document()->title()));
    updateTabs();
    updateBusyness();
    updatePageActions();
    updateSearchResult();
}

void MainWindow::updateTabs()
{
    const int longestTitle = fontMetrics().averageCharWidth() * 30;
    for (int i = 0; i < tabs_->count(); ++i) {
        const Document& document = *tabAt(i)->document();
        // In the title of a tab "&" stands for a key.
        tabs_->setTabText(i, fontMetrics()
                                 .elidedText(document.title(), Qt::ElideMiddle, longestTitle)
                                 .replace(QLatin1Char('&'), QLatin1String("&&")));
        tabs_->setTabToolTip(i, document.fileName().toHtmlEscaped());
        const bool isFailed = document.state() == Document::State::Failed;
        tabs_->setTabIcon(i, isFailed ? style()->standardIcon(QStyle::SP_MessageBoxWarning) : QIcon());
    }
}

void MainWindow::updateBusyness()
{
    const ReportTab* const tab = currentTab();
    const bool isRefreshing = tab != nullptr && tab->document()->isBusy() && !tab->shown().isNull();
    const bool isReplacing = sharing_ != nullptr;
    const bool isPrinting = working_ != nullptr;
    const bool isAsking = printers_ != nullptr;
    const bool isWorking = isRefreshing || isReplacing || isPrinting || isAsking || saving_ != nullptr;
    workNote_->setVisible(isWorking);
    workProgress_->setVisible(isWorking);
    cancelWork_->setVisible(isRefreshing || isReplacing || isPrinting || isAsking);
    if (!isWorking) {
        return;
    }
    workNote_->setText(isReplacing    ? tr("Replacing private data…")
                       : isPrinting   ? workingNote_
                       : isAsking     ? tr("Asking the print server…")
                       : isRefreshing ? tr("Refreshing…")
                                      : tr("Saving…"));
    // What cannot tell how far it is has a bar without a measure.
    workProgress_->setRange(0, !isAsking && (isRefreshing || isPrinting || isReplacing) ? 100 : 0);
}

void MainWindow::updatePrivacyNote()
{
    const bool isRedacted = sharesRedacted();
    privacyNote_->setText(isRedacted ? tr("Copied, saved and printed text has placeholders for private data.")
                                     : tr("Copied, saved and printed text contains private data."));
    privacyNote_->setToolTip(
        tr("Serial numbers, addresses, and the names of people, hosts and networks are private. "
           "The View menu decides."));
}

void MainWindow::setShowsRedacted(bool showsRedacted)
{
    for (int i = 0; i < tabs_->count(); ++i) {
        tabAt(i)->setShowsRedacted(showsRedacted);
    }
    updatePrivacyNote();
}

void MainWindow::zoom(int steps)
{
    zoom_ = std::max(-mostZoomSteps, std::min(steps, mostZoomSteps));
    for (int i = 0; i < tabs_->count(); ++i) {
        tabAt(i)->view()->setFont(zoomedFont());
    }
}

QFont MainWindow::zoomedFont() const
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    const int smallest = 5;
    if (font.pointSize() > 0) {
        font.setPointSize(std::max(font.pointSize() + zoom_, smallest));
    } else {
        font.setPixelSize(std::max(font.pixelSize() + zoom_, smallest));
    }
    return font;
}

// Files

void MainWindow::chooseFiles()
{
    const QStringList files =
        QFileDialog::getOpenFileNames(this, tr("Open Reports"), QString(), reportFilter());
    for (const QString& file : files) {
        openFile(file);
    }
}

void MainWindow::fillRecentFiles()
{
    recentFiles_->clear();
    const QStringList files = QSettings().value(QLatin1String(recentFilesKey)).toStringList();
    for (const QString& file : files) {
        QString text = QDir::toNativeSeparators(file);
        text.replace(QLatin1Char('&'), QLatin1String("&&"));
        connect(recentFiles_->addAction(text), &QAction::triggered, this, [this, file] { openFile(file); });
    }
    if (files.isEmpty()) {
        recentFiles_->addAction(tr("None"))->setEnabled(false);
        return;
    }
    recentFiles_->addSeparator();
    connect(recentFiles_->addAction(tr("&Clear")), &QAction::triggered, this,
            [] { QSettings().remove(QLatin1String(recentFilesKey)); });
}

void MainWindow::rememberFile(const QString& fileName)
{
    QSettings settings;
    QStringList files = settings.value(QLatin1String(recentFilesKey)).toStringList();
    files.removeAll(fileName);
    files.prepend(fileName);
    settings.setValue(QLatin1String(recentFilesKey), QStringList(files.mid(0, mostRecentFiles)));
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    for (const QUrl& url : event->mimeData()->urls()) {
        if (url.isLocalFile()) {
            event->acceptProposedAction();
            return;
        }
    }
}

void MainWindow::dropEvent(QDropEvent* event)
{
    for (const QUrl& url : event->mimeData()->urls()) {
        if (url.isLocalFile()) {
            openFile(url.toLocalFile());
        }
    }
    event->acceptProposedAction();
}

QString MainWindow::reportFilter()
{
    return tr("Reports (*.txt *.json *.plist *.log);;All files (*)");
}

void MainWindow::say(const QString& message)
{
    statusBar()->showMessage(message, messageMs);
}

void MainWindow::showAbout()
{
    QMessageBox::about(
        this, tr("About System Information"),
        tr("Shows system-information reports.\nVersion %1").arg(SystemInfo::libVersionString()));
}

} // namespace Viewer
} // namespace norvex
