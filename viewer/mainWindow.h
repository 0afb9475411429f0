#pragma once

#include "viewer/job.h"
#include "viewer/reportTab.h"

#include <QMainWindow>
#include <QPointer>

#include <functional>

class QAction;
class QLabel;
class QMenu;
class QProgressBar;
class QPushButton;
class QStackedWidget;
class QTabWidget;

namespace norvex {
namespace Viewer {

class FindBar;
class IdentificationPanel;
class SectionProcess;

/// The window: reports in tabs, and what can be done with them.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow();
    ~MainWindow() override;

    /// Opens a tab with this machine's report, or goes to it.
    void openThisMachine();
    /// Opens a file in a tab, or goes to its tab.
    void openFile(const QString& fileName);
    /// The files that were open when the window was closed last.
    static QStringList rememberedFiles();

    QTabWidget* tabs() const { return tabs_; }
    /// The tab in front; null for none.
    ReportTab* currentTab() const;

    /// Saves the report of the tab in front, as JSON where the name ends in ".json", else as text.
    void save(const QString& fileName);
    /// Writes the text of the tab in front into a PDF file.
    void exportPdf(const QString& fileName);
    /// Compares the report in a tab, the old one, with the one in front.
    void compareWith(ReportTab* older);

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    QAction* add(QMenu* menu, const QString& text, const char* name, const QList<QKeySequence>& shortcuts,
                 const std::function<void()>& act);
    QAction* addSwitch(QMenu* menu, const QString& text, const char* name, const QKeySequence& key,
                       bool isOn);
    void makeFileMenu();
    void makeEditMenu();
    void makeViewMenu();
    void makeHelpMenu();
    void makeToolBar();
    void makeStatusBar();
    void makeCentre();
    QWidget* makeEmptyPage();
    void connectFindBar();
    void restore();

    void addTab(Document* document);
    void closeTab(int index);
    ReportTab* tabAt(int index) const;
    void currentTabChanged();
    void update();
    void updateTabs();
    void updateBusyness();
    void updatePrivacyNote();
    void setShowsRedacted(bool showsRedacted);

    void chooseFiles();
    void chooseSaveName();
    QString withEnding(const QString& name, const QString& ending);
    bool isConfirmed(const QString& question);
    bool canReplace(const QString& fileName, const QString& failedNote);
    void fillRecentFiles();
    void rememberFile(const QString& fileName);
    void showAbout();
    static QString reportFilter();
    /// Tells what was done, for a while.
    void say(const QString& message);
    void zoom(int steps);
    QFont zoomedFont() const;

    bool sharesRedacted() const;
    void withReport(const std::function<void(ReportTab& tab, bool isRedacted)>& act);
    void copy(const QString& text, bool isRedacted);
    void copySelection();
    void offerSelection();
    void copySection();
    void copyAll();
    void startSaving(const SystemInfo::CReport& report, const QString& fileName);
    void choosePdfName();
    void print();
    void showPrintDialog();
    QString titleToShare(const ReportTab& tab) const;
    void copyDifferences();
    bool canStartWork();
    void startWork(const QString& note, const Job::Work& work, const std::function<void(bool)>& done);
    void startPrinting(const QString& note,
                       const std::function<QString(const TextLines&, const JobControl&)>& work,
                       const QString& doneNote, const QString& failedNote);
    void showFailure(const QString& text, const QString& reason);
    void cancelWork();

    void makePageActions(QMenu* menu);
    void updatePageActions();
    void fillCompareMenu();
    void chooseFileToCompare();

    void openFindBar();
    void closeFindBar();
    void soughtChanged();
    void find(ReportTab::Direction direction);
    void searchEnded(ReportTab* tab, ReportTab::Direction direction);
    void stopCounting();
    void updateSearchResult();
    QString searchResult(int total, bool isCounting) const;

    QStackedWidget* centre_ = nullptr;
    QTabWidget* tabs_ = nullptr;
    FindBar* findBar_ = nullptr;
    IdentificationPanel* identification_ = nullptr;
    QMenu* recentFiles_ = nullptr;
    QList<QAction*> reportActions_; // that need a report
    QAction* open_ = nullptr;
    QAction* save_ = nullptr;
    QAction* refresh_ = nullptr;
    QAction* copy_ = nullptr;
    QAction* copySection_ = nullptr;
    QAction* find_ = nullptr;
    QAction* showsRedacted_ = nullptr;
    QAction* sharesRedacted_ = nullptr;
    QAction* closeTab_ = nullptr;
    QAction* pageActions_[3] = {nullptr, nullptr, nullptr}; // by the numbers of ReportTab::Page
    QAction* nextDifference_ = nullptr;
    QAction* previousDifference_ = nullptr;
    QAction* swapSides_ = nullptr;
    QAction* copyDifferences_ = nullptr;
    QMenu* compareMenu_ = nullptr;
    QLabel* privacyNote_ = nullptr;
    QLabel* workNote_ = nullptr;
    QProgressBar* workProgress_ = nullptr;
    QPushButton* cancelWork_ = nullptr;
    QPointer<SectionProcess> printers_; // while it is unknown whether the print server answers
    QPointer<Job> saving_;
    QPointer<Job> working_; // on what is printed, exported or copied
    QString workingNote_;
    QPointer<Document> sharing_; // whose redacted report somebody waits for
    bool isTyping_ = false;      // a search that just began
    bool isSearchStopped_ = false;
    int zoom_ = 0;
};

} // namespace Viewer
} // namespace norvex
