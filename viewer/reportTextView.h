#pragma once

#include "viewer/outline.h"
#include "viewer/textLines.h"

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <QCache>
#include <QElapsedTimer>
#include <QTextLayout>

#include <memory>

namespace norvex {
namespace Viewer {

class TextSearch;

/// The lines of a report, of which it lays out only those that it shows: a text of any length, also in a single line, is
/// there at once. Text can be selected with the mouse and the keys, not changed. Every character is as it stands in the
/// text; those that do not print are shown by symbols.
class ReportTextView : public QAbstractScrollArea
{
    Q_OBJECT

public:
    explicit ReportTextView(QWidget* parent = nullptr);
    ~ReportTextView() override;

    /// Shows a text, and keeps the place and the selection where the new one has the same lines.
    void setLines(std::shared_ptr<const TextLines> lines);
    /// What stands in the lines; null while that is not known.
    void setOutline(std::shared_ptr<const Outline> outline);
    /// Marks hits; null marks none. Not owned, and must outlive its use here.
    void setSearch(const TextSearch* search);

    const TextLines& lines() const { return *lines_; }

    /// Scrolls so that a line is the topmost one, as far as there is text below it, and puts the cursor there.
    void showLine(int line);
    /// Selects a range and scrolls so that it is seen.
    void select(int begin, int end);
    void selectAll();
    int firstVisibleLine() const;
    void setFirstVisibleLine(int line);

    /// The cursor, and the other end of the selection.
    int cursor() const { return cursor_; }
    int anchor() const { return anchor_; }
    bool hasSelection() const { return cursor_ != anchor_; }
    int selectionBegin() const { return qMin(cursor_, anchor_); }
    int selectionEnd() const { return qMax(cursor_, anchor_); }
    void setCursorAt(int offset, bool keepsAnchor);

    /// Where a character is shown, in the coordinates of the viewport.
    QRect characterRect(int offset) const;
    /// The offset that is shown nearest to a point of the viewport.
    int offsetAt(const QPoint& point) const;

signals:
    void firstVisibleLineChanged(int line);
    void cursorMoved();
    void selectionChanged();
    /// The mouse ended to select.
    void selectionMade();
    /// The user asks to copy what is selected.
    void copyRequested();

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    /// A part of a line that is laid out at once.
    struct Piece
    {
        int begin;
        int end;
        qreal x; // in the line
        std::shared_ptr<QTextLayout> layout;
    };
    struct Span
    {
        int begin;
        int end;
    };
    enum class SelectBy { Characters, Words, Lines };

    void measureFont();
    void updateScrollBars();
    qreal lineX() const;
    int rows() const;
    Piece pieceAt(int line, int number) const;
    int pieceBegin(int line, int number) const;
    int pieceNumber(int line, int offset) const;
    std::shared_ptr<QTextLayout> layoutOf(int line, int begin, int end) const;
    QVector<QTextLayout::FormatRange> formatsOf(int line, int begin, int end) const;
    void paintLine(QPainter& painter, int line, int y) const;
    QVector<QTextLayout::FormatRange> marksIn(int line, const Piece& piece) const;
    void paintCursor(QPainter& painter) const;
    int offsetInLine(int line, qreal x) const;
    qreal xOf(int offset) const;
    void ensureVisible(int offset);
    bool moveByKey(QKeyEvent* event);
    int moved(int line, int by);
    int wordFrom(int offset, int direction) const;
    int besides(int offset, int direction) const;
    Span spanAt(int offset) const;
    void startSelection(int offset, SelectBy selectBy);
    void extendTo(int offset);
    void tellSelection();

    std::shared_ptr<const TextLines> lines_;
    std::shared_ptr<const Outline> outline_;
    const TextSearch* search_ = nullptr;
    mutable QCache<int, std::shared_ptr<QTextLayout>> layouts_; // by where they begin
    int cursor_ = 0;
    int anchor_ = 0;
    qreal wishedX_ = -1; // of the cursor while it moves up and down
    SelectBy selectBy_ = SelectBy::Characters;
    Span firstSpan_ = {0, 0}; // what the mouse selected first
    QElapsedTimer sinceDoubleClick_;
    QPoint doubleClickPoint_;
    QBasicTimer scrollTimer_;
    qreal columnWidth_ = 1;
    int lineHeight_ = 1;
};

} // namespace Viewer
} // namespace norvex
