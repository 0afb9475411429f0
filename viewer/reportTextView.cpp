#include "viewer/reportTextView.h"

#include "viewer/reportTextAccessible.h"
#include "viewer/textSearch.h"

#include <QApplication>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QTextOption>
#include <QTimerEvent>

#include <algorithm>
#include <cmath>

namespace norvex {
namespace Viewer {

namespace {

/// Laying out as many characters takes a small part of a millisecond.
const int pieceLength = 512;
const int cachedLayouts = 1024;
const int textMargin = 8;
const int scrollIntervalMs = 40;
/// Words are looked for so far.
const int wordReach = 1000;

bool isPartOfWord(QChar character)
{
    return character.isLetterOrNumber() || character.isSurrogate() || character.isMark() ||
           character == QLatin1Char('_');
}

/// How light a colour looks, from 0 to 1.
qreal luminance(const QColor& color)
{
    const auto linear = [](qreal part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

qreal contrast(const QColor& one, const QColor& other)
{
    const qreal first = luminance(one) + 0.05;
    const qreal second = luminance(other) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

/// A mixture of two colours.
QColor mixed(const QColor& one, const QColor& other, qreal part)
{
    const auto mix = [part](qreal from, qreal to) { return from + (to - from) * part; };
    return QColor::fromRgbF(mix(one.redF(), other.redF()), mix(one.greenF(), other.greenF()),
                            mix(one.blueF(), other.blueF()));
}

/// The colour, nearer to that of text if it cannot be read well on the background.
QColor readable(const QColor& color, const QPalette& palette)
{
    const qreal wanted = 4.5;
    const qreal step = 0.1;
    const QColor& base = palette.color(QPalette::Base);
    const QColor& text = palette.color(QPalette::Text);
    QColor result = color;
    for (qreal part = 0; part < 1 && contrast(result, base) < wanted; part += step) {
        result = mixed(color, text, part);
    }
    return result;
}

} // namespace

ReportTextView::ReportTextView(QWidget* parent)
    : QAbstractScrollArea(parent), lines_(std::make_shared<TextLines>()), layouts_(cachedLayouts)
{
    installReportTextAccessible();
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setCursor(Qt::IBeamCursor);
    viewport()->setBackgroundRole(QPalette::Base);
    // The Base colour fills it; nothing shines through.
    viewport()->setAutoFillBackground(true);
    setAccessibleName(tr("Text of the report"));
    measureFont();
}

ReportTextView::~ReportTextView() = default;

void ReportTextView::setLines(std::shared_ptr<const TextLines> lines)
{
    const bool keepsPlace = lines->count() == lines_->count();
    const int cursorLine = lines_->lineAt(cursor_);
    lines_ = std::move(lines);
    search_ = nullptr;
    layouts_.clear();
    cursor_ = keepsPlace ? lines_->begin(cursorLine) : 0;
    anchor_ = cursor_;
    wishedX_ = -1;
    updateScrollBars();
    if (!keepsPlace) {
        verticalScrollBar()->setValue(0);
        horizontalScrollBar()->setValue(0);
    }
    viewport()->update();
    tellSelection();
}

void ReportTextView::setOutline(std::shared_ptr<const Outline> outline)
{
    outline_ = std::move(outline);
    layouts_.clear();
    viewport()->update();
}

void ReportTextView::setSearch(const TextSearch* search)
{
    search_ = search;
    viewport()->update();
}

void ReportTextView::measureFont()
{
    const QString digits(100, QLatin1Char('0'));
    QTextLayout layout(digits, font());
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    columnWidth_ = std::max(line.naturalTextWidth() / digits.size(), 1.0);
    lineHeight_ = std::max(static_cast<int>(std::ceil(line.height())) + 2, 1);
    layouts_.clear();
    updateScrollBars();
}

int ReportTextView::rows() const
{
    return std::max(viewport()->height() / lineHeight_, 1);
}

void ReportTextView::updateScrollBars()
{
    verticalScrollBar()->setPageStep(rows());
    verticalScrollBar()->setRange(0, std::max(lines_->count() - rows(), 0));
    const int columns = std::max(static_cast<int>((viewport()->width() - 2 * textMargin) / columnWidth_), 1);
    horizontalScrollBar()->setPageStep(columns);
    horizontalScrollBar()->setSingleStep(4);
    horizontalScrollBar()->setRange(0, std::max(lines_->mostColumns() - columns + 1, 0));
}

int ReportTextView::firstVisibleLine() const
{
    return verticalScrollBar()->value();
}

void ReportTextView::setFirstVisibleLine(int line)
{
    verticalScrollBar()->setValue(line);
}

/// Where lines begin in the viewport.
qreal ReportTextView::lineX() const
{
    return textMargin - horizontalScrollBar()->value() * columnWidth_;
}

int ReportTextView::pieceBegin(int line, int number) const
{
    const int begin = lines_->begin(line);
    const int end = lines_->end(line);
    const qint64 place = begin + qint64(number) * pieceLength;
    return number == 0 ? begin : cutAt(lines_->text(), static_cast<int>(std::min<qint64>(place, end)), end);
}

int ReportTextView::pieceNumber(int line, int offset) const
{
    const int number = (offset - lines_->begin(line)) / pieceLength;
    return number > 0 && pieceBegin(line, number) > offset ? number - 1 : number;
}

ReportTextView::Piece ReportTextView::pieceAt(int line, int number) const
{
    const int begin = pieceBegin(line, number);
    const int end = pieceBegin(line, number + 1);
    return {begin, end, number == 0 ? 0 : lines_->columnAt(begin) * columnWidth_, layoutOf(line, begin, end)};
}

std::shared_ptr<QTextLayout> ReportTextView::layoutOf(int line, int begin, int end) const
{
    if (const std::shared_ptr<QTextLayout>* const cached = layouts_.object(begin)) {
        return *cached;
    }
    auto layout = std::make_shared<QTextLayout>(shownText(lines_->text(), begin, end), font());
    QTextOption option(Qt::AlignLeft);
    option.setWrapMode(QTextOption::NoWrap);
    option.setTextDirection(Qt::LeftToRight);
    if (layout->text().contains(QLatin1Char('\t'))) {
        QList<qreal> stops;
        const int first = lines_->columnAt(begin);
        for (int column = TextLines::tabColumns - first % TextLines::tabColumns;
             column < pieceLength * TextLines::tabColumns; column += TextLines::tabColumns) {
            stops.append(column * columnWidth_);
        }
        option.setTabArray(stops);
    }
    layout->setTextOption(option);
    layout->setFormats(formatsOf(line, begin, end));
    layout->beginLayout();
    layout->createLine();
    layout->endLayout();
    layouts_.insert(begin, new std::shared_ptr<QTextLayout>(layout));
    return layout;
}

QVector<QTextLayout::FormatRange> ReportTextView::formatsOf(int line, int begin, int end) const
{
    if (outline_ == nullptr) {
        return {};
    }
    QTextCharFormat format;
    int formatEnd = end;
    switch (outline_->kind(line)) {
    case LineKind::Plain: return {};
    case LineKind::Banner:
    case LineKind::Heading:
        format.setForeground(readable(palette().color(QPalette::Highlight), palette()));
        format.setFontWeight(QFont::Bold);
        break;
    case LineKind::Name: format.setFontWeight(QFont::Bold); break;
    case LineKind::Separator: format.setForeground(palette().color(QPalette::Mid)); break;
    case LineKind::Label: {
        const qreal paleness = 0.45;
        format.setForeground(readable(
            mixed(palette().color(QPalette::Text), palette().color(QPalette::Base), paleness), palette()));
        formatEnd = std::min(end, lines_->begin(line) + outline_->labelEnd(line));
        break;
    }
    }
    return formatEnd <= begin ? QVector<QTextLayout::FormatRange>()
                              : QVector<QTextLayout::FormatRange>{{0, formatEnd - begin, format}};
}

void ReportTextView::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::Text));
    const int first = firstVisibleLine() + event->rect().top() / lineHeight_;
    const int last = std::min(firstVisibleLine() + event->rect().bottom() / lineHeight_, lines_->count() - 1);
    for (int line = first; line <= last; ++line) {
        paintLine(painter, line, (line - firstVisibleLine()) * lineHeight_);
    }
    if (hasFocus()) {
        paintCursor(painter);
    }
}

void ReportTextView::paintLine(QPainter& painter, int line, int y) const
{
    const int column = std::max(horizontalScrollBar()->value() - 2 * TextLines::tabColumns, 0);
    int number = pieceNumber(line, lines_->offsetAt(line, column));
    while (true) {
        const Piece piece = pieceAt(line, number++);
        const qreal x = lineX() + piece.x;
        if (x > viewport()->width()) {
            return;
        }
        piece.layout->draw(&painter, QPointF(x, y + 1), marksIn(line, piece));
        if (piece.end < lines_->end(line)) {
            continue;
        }
        // A line end that is selected shows.
        const int end = lines_->end(line);
        if (hasSelection() && selectionBegin() <= end && selectionEnd() > end) {
            const qreal right = x + piece.layout->lineAt(0).naturalTextWidth();
            painter.fillRect(QRectF(right, y, columnWidth_, lineHeight_),
                             palette().brush(QPalette::Highlight));
        }
        return;
    }
}

/// What is drawn over a piece: hits, and the selection above them.
QVector<QTextLayout::FormatRange> ReportTextView::marksIn(int line, const Piece& piece) const
{
    QVector<QTextLayout::FormatRange> marks;
    const auto mark = [&](int begin, int end, const QBrush& background, const QBrush& foreground) {
        const int from = std::max(begin, piece.begin);
        const int to = std::min(end, piece.end);
        if (from < to) {
            QTextLayout::FormatRange range;
            range.start = from - piece.begin;
            range.length = to - from;
            range.format.setBackground(background);
            range.format.setForeground(foreground);
            marks.append(range);
        }
    };
    if (search_ != nullptr) {
        // The accent, weak enough to read on.
        QColor background = palette().color(QPalette::Highlight);
        background.setAlphaF(0.35);
        for (const int hit : search_->hitsIn(lines_->begin(line), piece.begin, piece.end)) {
            mark(hit, hit + search_->length(), background, palette().brush(QPalette::Text));
        }
    }
    if (hasSelection()) {
        mark(selectionBegin(), selectionEnd(), palette().brush(QPalette::Highlight),
             palette().brush(QPalette::HighlightedText));
    }
    return marks;
}

void ReportTextView::paintCursor(QPainter& painter) const
{
    const QRect place = characterRect(cursor_);
    if (place.bottom() >= 0 && place.top() < viewport()->height()) {
        const int width = style()->pixelMetric(QStyle::PM_TextCursorWidth, nullptr, this);
        painter.fillRect(QRect(place.left(), place.top(), std::max(width, 2), place.height()),
                         palette().color(QPalette::Text));
    }
}

qreal ReportTextView::xOf(int offset) const
{
    const int line = lines_->lineAt(offset);
    const int place = std::min(offset, lines_->end(line));
    const Piece piece = pieceAt(line, pieceNumber(line, place));
    return piece.x + piece.layout->lineAt(0).cursorToX(place - piece.begin);
}

QRect ReportTextView::characterRect(int offset) const
{
    const qint64 y = (qint64(lines_->lineAt(offset)) - firstVisibleLine()) * lineHeight_;
    const qreal x = lineX() + xOf(offset);
    const qreal farthest = 1 << 30;
    return QRect(static_cast<int>(std::max(-farthest, std::min(farthest, x))),
                 static_cast<int>(std::max<qint64>(-(1 << 30), std::min<qint64>(1 << 30, y))),
                 static_cast<int>(std::ceil(columnWidth_)), lineHeight_);
}

/// @param x in the line
int ReportTextView::offsetInLine(int line, qreal x) const
{
    const int column = std::max(static_cast<int>(x / columnWidth_), 0);
    int number = pieceNumber(line, lines_->offsetAt(line, column));
    Piece piece = pieceAt(line, number);
    while (number > 0 && x < piece.x) {
        piece = pieceAt(line, --number);
    }
    return piece.begin + piece.layout->lineAt(0).xToCursor(x - piece.x);
}

int ReportTextView::offsetAt(const QPoint& point) const
{
    const int row = static_cast<int>(std::floor(point.y() / qreal(lineHeight_)));
    const int line = firstVisibleLine() + row;
    if (line < 0) {
        return 0;
    }
    return line >= lines_->count() ? lines_->text().size() : offsetInLine(line, point.x() - lineX());
}

void ReportTextView::showLine(int line)
{
    const int shownLine = std::max(0, std::min(line, lines_->count() - 1));
    horizontalScrollBar()->setValue(0);
    cursor_ = anchor_ = lines_->begin(shownLine);
    wishedX_ = -1;
    verticalScrollBar()->setValue(shownLine);
    viewport()->update();
    tellSelection();
}

void ReportTextView::select(int begin, int end)
{
    cursor_ = end;
    anchor_ = begin;
    wishedX_ = -1;
    const int line = lines_->lineAt(begin);
    if (line < firstVisibleLine() || line >= firstVisibleLine() + rows()) {
        verticalScrollBar()->setValue(line - rows() / 3);
    }
    ensureVisible(begin);
    ensureVisible(end);
    viewport()->update();
    tellSelection();
}

void ReportTextView::selectAll()
{
    anchor_ = 0;
    cursor_ = lines_->text().size();
    viewport()->update();
    tellSelection();
}

void ReportTextView::ensureVisible(int offset)
{
    const int line = lines_->lineAt(offset);
    const int first = firstVisibleLine();
    if (line < first || line >= first + rows()) {
        verticalScrollBar()->setValue(line < first ? line : line - rows() + 1);
    }
    const int column = static_cast<int>(xOf(offset) / columnWidth_);
    QScrollBar* const bar = horizontalScrollBar();
    if (column < bar->value() + 2) {
        bar->setValue(std::max(column - 8, 0));
    } else if (column > bar->value() + bar->pageStep() - 2) {
        bar->setValue(column - bar->pageStep() + 8);
    }
}

void ReportTextView::setCursorAt(int offset, bool keepsAnchor)
{
    cursor_ = std::max(0, std::min(offset, lines_->text().size()));
    anchor_ = keepsAnchor ? anchor_ : cursor_;
    ensureVisible(cursor_);
    viewport()->update();
    tellSelection();
}

void ReportTextView::tellSelection()
{
    emit cursorMoved();
    emit selectionChanged();
    tellAccessibleCursor(this);
}

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

void ReportTextView::resizeEvent(QResizeEvent* /*event*/)
{
    updateScrollBars();
    emit firstVisibleLineChanged(firstVisibleLine());
}

void ReportTextView::scrollContentsBy(int dx, int dy)
{
    if (dx == 0 && dy != 0 && std::abs(dy) < rows()) {
        viewport()->scroll(0, dy * lineHeight_);
    } else {
        viewport()->update();
    }
    if (dy != 0) {
        emit firstVisibleLineChanged(firstVisibleLine());
    }
}

void ReportTextView::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        measureFont();
    } else if (event->type() == QEvent::PaletteChange) {
        layouts_.clear();
        viewport()->update();
    }
    QAbstractScrollArea::changeEvent(event);
}

/// Keys that move the cursor come here even where a menu has them, too.
bool ReportTextView::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        auto* const key = static_cast<QKeyEvent*>(event);
        if (key->matches(QKeySequence::SelectAll) || key->matches(QKeySequence::Copy)) {
            event->accept();
            return true;
        }
    }
    return QAbstractScrollArea::event(event);
}

void ReportTextView::focusInEvent(QFocusEvent* event)
{
    viewport()->update();
    QAbstractScrollArea::focusInEvent(event);
}

void ReportTextView::focusOutEvent(QFocusEvent* event)
{
    viewport()->update();
    QAbstractScrollArea::focusOutEvent(event);
}

} // namespace Viewer
} // namespace norvex
