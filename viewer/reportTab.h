#pragma once

#include "viewer/document.h"

#include <QWidget>

class QLabel;
class QProgressBar;
class QPushButton;
class QSplitter;
class QStackedWidget;
class QTreeView;

namespace norvex {
namespace Viewer {

class ComparisonPage;
class OutlineModel;
class OverviewPage;
class ReportTextView;
class TextSearch;

/// A report in a tab: the tree of its sections, and beside it its text, its overview, or what differs from another
/// report; or that it is being read; or why there is none.
class ReportTab : public QWidget
{
    Q_OBJECT

public:
    enum class Direction { Forward, Backward };
    /// What stands beside the tree.
    enum Page { TextPage, OverviewPageNumber, ComparisonPageNumber };

    /// Takes the document over, and loads it.
    explicit ReportTab(Document* document, QWidget* parent = nullptr);

    Document* document() const { return document_; }
    ReportTextView* view() const { return view_; }
    QTreeView* tree() const { return tree_; }
    /// Beside the tree, by the numbers of Page.
    QStackedWidget* pages() const { return pages_; }
    Page page() const;
    void showPage(Page page);
    /// Shows an item in the text, see CReport::item().
    void showItem(const QString& path);
    /// Shows what differs between the report of another tab, the old one, and this one, as soon as both are read.
    void compareWith(ReportTab* other);
    bool hasComparison() const { return isComparing_; }
    /// Makes the old report of the comparison the new one, and this tab's the old one, or the other way round.
    void swapComparison();
    ComparisonPage* comparison() const { return comparison_; }
    OverviewPage* overview() const { return overview_; }
    QSplitter* splitter() const { return splitter_; }

    /// Shows the report without private data, as soon as that is made.
    void setShowsRedacted(bool showsRedacted);
    /// What is shown; a null report while there is none.
    const ShownReport& shown() const { return isHidden_ ? nothing_ : shown_; }
    bool isShownRedacted() const { return isShownRedacted_; }

    /// The section that the user works on: the one at the cursor, or in the tree where that has the keyboard. No lines
    /// without a section.
    void currentSection(int& firstLine, int& lineCount) const;
    /// The text of what is selected, or of lines.
    /// @param isRedacted whether it is without private data; then document()->redacted() must be there
    QString selectedText(bool isRedacted) const;
    QString textOfLines(int firstLine, int lineCount, bool isRedacted) const;

    /// Looks for a text from now on, also in what the tab shows later. An empty one ends that.
    void setSought(const QString& sought, Qt::CaseSensitivity sensitivity);
    /// Stops counting.
    void stopSearch();
    /// Null when nothing is sought.
    const TextSearch* search() const { return search_; }
    /// Goes to the next hit behind a place, at once or when it is counted. searchEnded() says that there is none.
    void findFrom(int place, Direction direction);
    void findNext(Direction direction);
    /// The number of the hit that is selected, from 1; 0 for none.
    int currentHit() const;

signals:
    /// The document changed, or what is shown of it.
    void changed();
    void searchAdvanced();
    void searchEnded(Direction direction);
    /// The user asks for an item of the report that this one is compared with.
    void otherItemWanted(ReportTab* other, const QString& path);
    void pageChanged();
    void differencesCopyRequested();

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    QWidget* makeLoadingPage();
    QWidget* makeErrorPage();
    QWidget* makeHiddenPage();
    void update();
    void showReport();
    void showText(const ShownReport& report);
    void showState();
    void showHidden();
    void toggleRedaction();
    void startSearch();
    void goOnFinding();
    void jumpTo(const QModelIndex& index);
    void followText(int line);
    void makePages();
    void updatePages();
    void startComparison();

    Document* const document_;
    QStackedWidget* const states_;
    QStackedWidget* const pages_;
    QSplitter* const splitter_;
    QTreeView* const tree_;
    OutlineModel* const outlineModel_;
    ReportTextView* const view_;
    QLabel* notice_;
    QLabel* error_;
    QProgressBar* progress_;
    QPushButton* retry_;
    QLabel* hidden_;
    QProgressBar* hiddenProgress_;
    QPushButton* hiddenButton_;
    ShownReport shown_;
    const ShownReport nothing_;
    bool isHidden_ = false; // while private data is being replaced
    bool isRedactionCancelled_ = false;
    bool showsRedacted_ = false;
    bool isShownRedacted_ = false;
    bool isJumping_ = false;
    OverviewPage* const overview_;
    ComparisonPage* const comparison_;
    QPointer<ReportTab> comparedTab_;
    bool isComparing_ = false;
    bool isSwapped_ = false;      // this tab's report is the old one
    bool isOverviewOld_ = true;   // not of the report that is shown
    bool isComparisonOld_ = true; // not of the reports that are shown
    QString sought_;
    Qt::CaseSensitivity sensitivity_ = Qt::CaseInsensitive;
    TextSearch* search_ = nullptr;
    bool isFinding_ = false; // a hit that is not counted yet
    int findPlace_ = 0;
    Direction findDirection_ = Direction::Forward;
};

/// The part of a text without private data that stands for a part of the original. Both have the same lines. What is
/// replaced is taken whole, never as it was.
QString redactedPart(const TextLines& original, const TextLines& redacted, int begin, int end);

} // namespace Viewer
} // namespace norvex
