// The keys and the mouse in the text of a report.

#include "viewer/reportTextView.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScrollBar>
#include <QTimerEvent>

#include <algorithm>
#include <cmath>

namespace norvex {
namespace Viewer {

namespace {

const int scrollIntervalMs = 40;
/// Words are looked for so far.
const int wordReach = 1000;

bool isPartOfWord(QChar character)
{
    return character.isLetterOrNumber() || character.isSurrogate() || character.isMark() ||
           character == QLatin1Char('_');
}

} // namespace

/// The place behind a character or in front of it; a line end is one.
int ReportTextView::besides(int offset, int direction) const
{
    const int line = lines_->lineAt(offset);
    if (direction > 0 && offset >= lines_->end(line)) {
        return line + 1 < lines_->count() ? lines_->begin(line + 1) : lines_->text().size();
    }
    if (direction < 0 && offset == lines_->begin(line)) {
        return line == 0 ? 0 : lines_->end(line - 1);
    }
    const Piece piece = pieceAt(line, pieceNumber(line, direction > 0 ? offset : offset - 1));
    const int place = offset - piece.begin;
    return piece.begin + (direction > 0 ? piece.layout->nextCursorPosition(place)
                                        : piece.layout->previousCursorPosition(place));
}

/// The begin of the next word or of this one.
int ReportTextView::wordFrom(int offset, int direction) const
{
    const QString& text = lines_->text();
    const int line = lines_->lineAt(offset);
    const int begin = lines_->begin(line);
    const int end = lines_->end(line);
    int place = offset;
    if (direction < 0) {
        if (place == begin) {
            return besides(place, -1);
        }
        const int limit = std::max(begin, place - wordReach);
        while (place > limit && !isPartOfWord(text.at(place - 1))) {
            --place;
        }
        while (place > limit && isPartOfWord(text.at(place - 1))) {
            --place;
        }
        return place;
    }
    if (place >= end) {
        return besides(place, 1);
    }
    const int limit = std::min(end, place + wordReach);
    while (place < limit && isPartOfWord(text.at(place))) {
        ++place;
    }
    while (place < limit && !isPartOfWord(text.at(place))) {
        ++place;
    }
    return place;
}

/// The place so many lines below the cursor, under the place where it went up or down first.
int ReportTextView::moved(int line, int by)
{
    if (wishedX_ < 0) {
        wishedX_ = xOf(cursor_);
    }
    const qint64 target = qint64(line) + by;
    if (target < 0) {
        return 0;
    }
    return target >= lines_->count() ? lines_->text().size()
                                     : offsetInLine(static_cast<int>(target), wishedX_);
}

bool ReportTextView::moveByKey(QKeyEvent* event)
{
    struct Move
    {
        QKeySequence::StandardKey move;
        QKeySequence::StandardKey select;
        int (*place)(ReportTextView& view, int line);
        bool isVertical;
    };
    using View = ReportTextView;
    static const Move moves[] = {
        {QKeySequence::MoveToNextChar, QKeySequence::SelectNextChar,
         [](View& v, int) { return v.besides(v.cursor_, 1); }, false},
        {QKeySequence::MoveToPreviousChar, QKeySequence::SelectPreviousChar,
         [](View& v, int) { return v.besides(v.cursor_, -1); }, false},
        {QKeySequence::MoveToNextWord, QKeySequence::SelectNextWord,
         [](View& v, int) { return v.wordFrom(v.cursor_, 1); }, false},
        {QKeySequence::MoveToPreviousWord, QKeySequence::SelectPreviousWord,
         [](View& v, int) { return v.wordFrom(v.cursor_, -1); }, false},
        {QKeySequence::MoveToNextLine, QKeySequence::SelectNextLine,
         [](View& v, int line) { return v.moved(line, 1); }, true},
        {QKeySequence::MoveToPreviousLine, QKeySequence::SelectPreviousLine,
         [](View& v, int line) { return v.moved(line, -1); }, true},
        {QKeySequence::MoveToNextPage, QKeySequence::SelectNextPage,
         [](View& v, int line) { return v.moved(line, v.rows() - 1); }, true},
        {QKeySequence::MoveToPreviousPage, QKeySequence::SelectPreviousPage,
         [](View& v, int line) { return v.moved(line, 1 - v.rows()); }, true},
        {QKeySequence::MoveToStartOfLine, QKeySequence::SelectStartOfLine,
         [](View& v, int line) { return v.lines_->begin(line); }, false},
        {QKeySequence::MoveToEndOfLine, QKeySequence::SelectEndOfLine,
         [](View& v, int line) { return v.lines_->end(line); }, false},
        {QKeySequence::MoveToStartOfDocument, QKeySequence::SelectStartOfDocument,
         [](View&, int) { return 0; }, false},
        {QKeySequence::MoveToEndOfDocument, QKeySequence::SelectEndOfDocument,
         [](View& v, int) { return v.lines_->text().size(); }, false},
    };
    for (const Move& move : moves) {
        const bool selects = event->matches(move.select);
        if (selects || event->matches(move.move)) {
            const int place = move.place(*this, lines_->lineAt(cursor_));
            if (!move.isVertical) {
                wishedX_ = -1;
            }
            if (move.move == QKeySequence::MoveToNextPage || move.move == QKeySequence::MoveToPreviousPage) {
                const int pages = move.move == QKeySequence::MoveToNextPage ? 1 : -1;
                verticalScrollBar()->setValue(verticalScrollBar()->value() + pages * (rows() - 1));
            }
            setCursorAt(place, selects);
            return true;
        }
    }
    return false;
}

void ReportTextView::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Copy)) {
        emit copyRequested();
    } else if (event->matches(QKeySequence::SelectAll)) {
        selectAll();
    } else if (event->key() == Qt::Key_Space && (event->modifiers() & ~Qt::ShiftModifier) == 0) {
        const bool isBack = (event->modifiers() & Qt::ShiftModifier) != 0;
        verticalScrollBar()->triggerAction(isBack ? QScrollBar::SliderPageStepSub
                                                  : QScrollBar::SliderPageStepAdd);
    } else if (!moveByKey(event)) {
        QAbstractScrollArea::keyPressEvent(event);
        return;
    }
    event->accept();
}

/// What a click selects at a place: nothing yet, a word, or a line with its end.
ReportTextView::Span ReportTextView::spanAt(int offset) const
{
    const QString& text = lines_->text();
    const int line = lines_->lineAt(offset);
    if (selectBy_ == SelectBy::Lines) {
        return {lines_->begin(line), line + 1 < lines_->count() ? lines_->begin(line + 1) : text.size()};
    }
    Span span = {offset, offset};
    if (selectBy_ == SelectBy::Words) {
        const int first = std::max(lines_->begin(line), offset - wordReach);
        const int last = std::min(lines_->end(line), offset + wordReach);
        while (span.begin > first && isPartOfWord(text.at(span.begin - 1))) {
            --span.begin;
        }
        while (span.end < last && isPartOfWord(text.at(span.end))) {
            ++span.end;
        }
    }
    return span;
}

void ReportTextView::startSelection(int offset, SelectBy selectBy)
{
    wishedX_ = -1;
    selectBy_ = selectBy;
    firstSpan_ = spanAt(offset);
    extendTo(offset);
}

/// Selects from what was selected first to a place that the mouse reached.
void ReportTextView::extendTo(int offset)
{
    const Span span = spanAt(offset);
    const bool isBackwards = span.begin < firstSpan_.begin;
    anchor_ = isBackwards ? firstSpan_.end : firstSpan_.begin;
    cursor_ = isBackwards ? span.begin : std::max(span.end, firstSpan_.end);
    viewport()->update();
    tellSelection();
}

void ReportTextView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        return;
    }
    const int offset = offsetAt(event->pos());
    const bool isThirdClick =
        selectBy_ == SelectBy::Words && sinceDoubleClick_.isValid() &&
        sinceDoubleClick_.elapsed() < QApplication::doubleClickInterval() &&
        (event->pos() - doubleClickPoint_).manhattanLength() < QApplication::startDragDistance();
    if (isThirdClick) {
        startSelection(offset, SelectBy::Lines);
    } else if ((event->modifiers() & Qt::ShiftModifier) != 0) {
        selectBy_ = SelectBy::Characters;
        firstSpan_ = {anchor_, anchor_};
        extendTo(offset);
    } else {
        startSelection(offset, SelectBy::Characters);
    }
}

void ReportTextView::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        sinceDoubleClick_.start();
        doubleClickPoint_ = event->pos();
        startSelection(offsetAt(event->pos()), SelectBy::Words);
    }
}

void ReportTextView::mouseMoveEvent(QMouseEvent* event)
{
    if ((event->buttons() & Qt::LeftButton) == 0) {
        return;
    }
    extendTo(offsetAt(event->pos()));
    if (viewport()->rect().contains(event->pos())) {
        scrollTimer_.stop();
    } else if (!scrollTimer_.isActive()) {
        scrollTimer_.start(scrollIntervalMs, this);
    }
}

void ReportTextView::mouseReleaseEvent(QMouseEvent* /*event*/)
{
    scrollTimer_.stop();
    emit selectionMade();
}

/// The mouse is held outside: the text comes to it, the faster the farther away it is.
void ReportTextView::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != scrollTimer_.timerId()) {
        QAbstractScrollArea::timerEvent(event);
        return;
    }
    const QPoint point = viewport()->mapFromGlobal(QCursor::pos());
    const QRect inside = viewport()->rect();
    const int down = point.y() - std::max(inside.top(), std::min(inside.bottom(), point.y()));
    const int right = point.x() - std::max(inside.left(), std::min(inside.right(), point.x()));
    const auto steps = [](int distance, int unit) {
        return distance == 0 ? 0 : distance / unit + (distance > 0 ? 1 : -1);
    };
    verticalScrollBar()->setValue(verticalScrollBar()->value() + steps(down, lineHeight_));
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() +
                                    steps(right, static_cast<int>(columnWidth_)));
    extendTo(offsetAt(point));
}

} // namespace Viewer
} // namespace norvex
