#include "viewer/reportTextView.h"

#include "viewer/reportTextAccessible.h"
#include "viewer/textSearch.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QTextOption>

#include <algorithm>
#include <cmath>

namespace norvex {
namespace Viewer {

namespace {

/// Laying out as many characters takes a small part of a millisecond.
const int pieceLength = 512;
const int cachedLayouts = 1024;
const int textMargin = 8;

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
    // The begins of the lines show if they can: the labels stand there.
    QScrollBar* const bar = horizontalScrollBar();
    if (std::max(xOf(begin), xOf(end)) < (bar->pageStep() - 2) * columnWidth_) {
        bar->setValue(0);
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
