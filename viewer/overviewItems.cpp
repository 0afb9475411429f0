#include "viewer/overviewItems.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>

namespace norvex {
namespace Viewer {

namespace {

const int cornerRadius = 3;

/// A colour between two.
QColor mixed(const QColor& one, const QColor& other, double partOfOther)
{
    const auto channel = [partOfOther](int from, int to) {
        return from + static_cast<int>(partOfOther * (to - from));
    };
    return {channel(one.red(), other.red()), channel(one.green(), other.green()),
            channel(one.blue(), other.blue())};
}

void drawElided(QPainter& painter, const QRect& rect, const QString& text,
                Qt::Alignment alignment = Qt::AlignLeft, Qt::TextElideMode mode = Qt::ElideRight)
{
    const QString elided = painter.fontMetrics().elidedText(text, mode, rect.width());
    painter.drawText(rect, static_cast<int>(alignment) | Qt::AlignVCenter | Qt::TextSingleLine, elided);
}

QString stateText(Overview::Interface::State state)
{
    switch (state) {
    case Overview::Interface::Up: return InterfaceItem::tr("up");
    case Overview::Interface::Down: return InterfaceItem::tr("down");
    case Overview::Interface::Unknown: break;
    }
    return InterfaceItem::tr("unknown");
}

/// What a picture says in words.
QString words(const QStringList& parts)
{
    QStringList said = parts;
    said.removeAll(QString());
    return said.join(QStringLiteral(", "));
}

int textWidth(const QFontMetrics& metrics, const QString& text)
{
    return metrics.boundingRect(text).width() + metrics.averageCharWidth();
}

} // namespace

QFont scaledFont(const QFont& font, double scale)
{
    QFont scaled = font;
    scaled.setBold(true);
    if (font.pointSizeF() > 0) {
        scaled.setPointSizeF(font.pointSizeF() * scale);
    } else {
        scaled.setPixelSize(static_cast<int>(font.pixelSize() * scale));
    }
    return scaled;
}

OverviewItem::OverviewItem(const QString& words, const QString& path) : path_(path)
{
    setAccessibleName(words);
    setToolTip(words.toHtmlEscaped());
    setEnabled(!path.isEmpty());
    setCursor(path.isEmpty() ? Qt::ArrowCursor : Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void OverviewItem::setColumns(const RowColumns& columns)
{
    columns_ = columns;
    updateGeometry();
    update();
}

int OverviewItem::margin() const
{
    return (parentWidget() == nullptr ? fontMetrics() : parentWidget()->fontMetrics()).averageCharWidth();
}

int OverviewItem::columnLeft() const
{
    return margin() + columns_.first + 2 * margin();
}

QSize OverviewItem::rowSizeHint(bool hasText) const
{
    const int lines = columns_.second == 0 && hasText ? 2 : 1;
    return {columnLeft() + fontMetrics().averageCharWidth() * 10, lines * fontMetrics().height() + rowGap()};
}

QColor OverviewItem::quietColor() const
{
    return mixed(palette().color(QPalette::WindowText), palette().color(QPalette::Window), 0.35);
}

OverviewItem::Row OverviewItem::rowIn(const QRect& area, bool isTextFirst) const
{
    Row row;
    const int lineHeight = fontMetrics().height();
    const int top = area.top() + rowGap() / 2;
    row.name = QRect(area.left(), top, columns_.first, lineHeight);
    row.picture = QRect(columnLeft(), top, columns_.second, lineHeight);
    if (columns_.second == 0) {
        row.picture.setRight(area.right());
        row.text = row.picture;
        (isTextFirst ? row.picture : row.text).translate(0, lineHeight);
    } else {
        const int left = row.picture.right() + 1 + 2 * margin();
        row.text = QRect(left, top, std::max(area.right() + 1 - left, 0), lineHeight);
    }
    return row;
}

void OverviewItem::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (underMouse() || isDown()) {
        QColor hover = palette().color(QPalette::Highlight);
        hover.setAlpha(isDown() ? 60 : 30);
        painter.setPen(Qt::NoPen);
        painter.setBrush(hover);
        painter.drawRoundedRect(rect(), cornerRadius, cornerRadius);
    }
    const int side = margin();
    painter.setPen(palette().color(QPalette::WindowText));
    painter.setBrush(Qt::NoBrush);
    paintItem(painter, rect().adjusted(side, 0, -side, 0));
    // Those who use the mouse alone know where they are.
    if (hasFocus() && window()->testAttribute(Qt::WA_KeyboardFocusChange)) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(rect().adjusted(1, 1, -1, -1), cornerRadius, cornerRadius);
    }
}

void OverviewItem::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter: click(); return;
    case Qt::Key_Down:
    case Qt::Key_Right: emit neighbourWanted(1); return;
    case Qt::Key_Up:
    case Qt::Key_Left: emit neighbourWanted(-1); return;
    default: QAbstractButton::keyPressEvent(event);
    }
}

void OverviewItem::focusInEvent(QFocusEvent* event)
{
    QAbstractButton::focusInEvent(event);
    emit focused();
}

bool OverviewItem::event(QEvent* event)
{
    if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverLeave) {
        update();
    }
    return QAbstractButton::event(event);
}

// Title and facts

TitleItem::TitleItem(const QString& title, const QString& path) : OverviewItem(title, path), title_(title)
{
    setFont(scaledFont(font(), 1.8));
}

QSize TitleItem::sizeHint() const
{
    return {fontMetrics().averageCharWidth() * 10, fontMetrics().height() * 5 / 4};
}

void TitleItem::paintItem(QPainter& painter, const QRect& area)
{
    drawElided(painter, area, title_);
}

FactItem::FactItem(const Overview::Fact& fact)
    : OverviewItem(words({fact.label, fact.value}), fact.path), fact_(fact)
{
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

RowColumns FactItem::wantedColumns() const
{
    RowColumns wanted;
    wanted.first = textWidth(fontMetrics(), fact_.label);
    return wanted;
}

QSize FactItem::sizeHint() const
{
    return rowSizeHint(false);
}

/// Words stay whole where they fit into a line.
/// @return the height; with a painter it is painted
int FactItem::layOutValue(int width, QPainter* painter, const QPointF& place) const
{
    QTextLayout layout(fact_.value, font());
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    int height = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(std::max(width, 1));
        line.setPosition(QPointF(0, height));
        height += fontMetrics().height();
    }
    layout.endLayout();
    if (painter != nullptr) {
        layout.draw(painter, place);
    }
    return height;
}

int FactItem::heightForWidth(int width) const
{
    return layOutValue(width - margin() - columnLeft(), nullptr, QPointF()) + rowGap();
}

void FactItem::paintItem(QPainter& painter, const QRect& area)
{
    const QRect label = rowIn(area, true).name;
    painter.setPen(quietColor());
    drawElided(painter, label, fact_.label);
    painter.setPen(palette().color(QPalette::WindowText));
    layOutValue(area.right() + 1 - columnLeft(), &painter, QPointF(columnLeft(), label.top()));
}

// Volumes

VolumeItem::VolumeItem(const Overview::Volume& volume)
    : OverviewItem(words({volume.name, volume.space, volume.details}), volume.path), volume_(volume)
{}

RowColumns VolumeItem::wantedColumns() const
{
    RowColumns wanted;
    wanted.first = textWidth(fontMetrics(), volume_.name);
    wanted.third = textWidth(fontMetrics(), volume_.space);
    return wanted;
}

QSize VolumeItem::sizeHint() const
{
    return rowSizeHint(true);
}

void VolumeItem::paintItem(QPainter& painter, const QRect& area)
{
    const Row row = rowIn(area, true);
    const QRect& bar = row.picture;
    drawElided(painter, row.name, volume_.name, Qt::AlignLeft, Qt::ElideMiddle);
    painter.setPen(quietColor());
    drawElided(painter, row.text, volume_.space);

    const int height = fontMetrics().ascent() * 3 / 4;
    const int top = bar.center().y() - height / 2;
    const QRectF frame = QRectF(bar.left(), top, bar.width(), height).adjusted(0.5, 0.5, -0.5, -0.5);
    const QColor line = mixed(palette().color(QPalette::Window), palette().color(QPalette::WindowText), 0.4);
    if (!volume_.isSizeKnown) {
        painter.setPen(QPen(line, 1, Qt::DashLine));
        painter.drawRect(frame);
        return;
    }
    painter.fillRect(frame, palette().color(QPalette::Base));
    QRectF used = frame;
    used.setWidth(frame.width() * volume_.used);
    painter.fillRect(used, palette().color(QPalette::Highlight));
    QRectF reservedPart = frame;
    reservedPart.setLeft(used.right());
    reservedPart.setWidth(frame.width() * volume_.reserved);
    painter.fillRect(reservedPart,
                     mixed(palette().color(QPalette::Base), palette().color(QPalette::Highlight), 0.4));
    painter.setPen(line);
    painter.drawRect(frame);
}

// Screens

ScreenItem::ScreenItem(const Overview::Screen& screen, const QSize& pictureSize)
    : OverviewItem(words({screen.name, screen.details, screen.isPrimary ? tr("primary screen") : QString()}),
                   screen.path),
      screen_(screen), pictureSize_(pictureSize)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize ScreenItem::sizeHint() const
{
    const int longest = fontMetrics().averageCharWidth() * 30;
    const int caption = std::min(
        std::max(textWidth(fontMetrics(), screen_.name), textWidth(fontMetrics(), screen_.details)), longest);
    return {std::max(pictureSize_.width(), caption) + 2 * margin(),
            pictureSize_.height() + 2 * fontMetrics().height() + 3 * margin()};
}

void ScreenItem::paintItem(QPainter& painter, const QRect& area)
{
    const int top = area.top() + margin();
    const QRectF frame =
        QRectF(area.left(), top, pictureSize_.width(), pictureSize_.height()).adjusted(1, 1, -1, -1);
    const QColor line = mixed(palette().color(QPalette::Window), palette().color(QPalette::WindowText), 0.5);
    painter.setBrush(palette().color(QPalette::Base));
    if (!screen_.size.isValid()) {
        painter.setPen(QPen(line, 1, Qt::DashLine));
    } else {
        painter.setPen(screen_.isPrimary ? QPen(palette().color(QPalette::Highlight), 2) : QPen(line, 1));
    }
    painter.drawRoundedRect(frame, cornerRadius, cornerRadius);
    if (screen_.isPrimary) {
        painter.setPen(quietColor());
        const QString text = tr("primary");
        if (textWidth(fontMetrics(), text) < frame.width() && fontMetrics().height() < frame.height()) {
            painter.drawText(frame, Qt::AlignCenter, text);
        }
    }
    const int lineHeight = fontMetrics().height();
    QRect caption(area.left(), area.top() + 2 * margin() + pictureSize_.height(), area.width(), lineHeight);
    painter.setPen(palette().color(QPalette::WindowText));
    drawElided(painter, caption, screen_.name, Qt::AlignLeft, Qt::ElideMiddle);
    caption.translate(0, lineHeight);
    painter.setPen(quietColor());
    drawElided(painter, caption, screen_.details);
}

QVector<QSize> screenPictureSizes(const QVector<Overview::Screen>& screens, const QSize& largest,
                                  int smallestSide)
{
    int width = 1;
    int height = 1;
    for (const Overview::Screen& screen : screens) {
        width = std::max(width, screen.size.width());
        height = std::max(height, screen.size.height());
    }
    const double scale = std::min(double(largest.width()) / width, double(largest.height()) / height);
    QVector<QSize> sizes;
    sizes.reserve(screens.size());
    for (const Overview::Screen& screen : screens) {
        // Of a screen whose size is not known only the place is drawn.
        const QSize size = screen.size.isValid() ? screen.size * scale : largest / 2;
        sizes.append(size.expandedTo(QSize(smallestSide, smallestSide)));
    }
    return sizes;
}

// Network interfaces

InterfaceItem::InterfaceItem(const Overview::Interface& interface)
    : OverviewItem(words({interface.name, stateText(interface.state), interface.kind, interface.addresses}),
                   interface.path),
      interface_(interface)
{}

RowColumns InterfaceItem::wantedColumns() const
{
    RowColumns wanted;
    wanted.first = textWidth(fontMetrics(), interface_.name);
    return wanted;
}

QSize InterfaceItem::sizeHint() const
{
    return rowSizeHint(!interface_.addresses.isEmpty());
}

void InterfaceItem::paintItem(QPainter& painter, const QRect& area)
{
    const Row row = rowIn(area, false);
    drawElided(painter, row.name, interface_.name, Qt::AlignLeft, Qt::ElideMiddle);

    // Shape and text show the state as well, for those who cannot tell the colours apart.
    QRect state = row.picture;
    const double diameter = fontMetrics().ascent() * 0.6;
    const QRectF dot(state.left(), state.center().y() - diameter / 2 + 0.5, diameter, diameter);
    const bool isUp = interface_.state == Overview::Interface::Up;
    const QColor quiet = quietColor();
    painter.setPen(QPen(isUp ? palette().color(QPalette::Highlight) : quiet, 1.2,
                        interface_.state == Overview::Interface::Unknown ? Qt::DotLine : Qt::SolidLine));
    painter.setBrush(isUp ? palette().brush(QPalette::Highlight) : QBrush(Qt::NoBrush));
    painter.drawEllipse(dot);
    state.setLeft(state.left() + static_cast<int>(diameter) + margin());
    const int stateWidth = fontMetrics().averageCharWidth() * 10;
    painter.setPen(isUp ? palette().color(QPalette::WindowText) : quiet);
    drawElided(painter, QRect(state.left(), state.top(), stateWidth, state.height()),
               stateText(interface_.state));
    state.setLeft(state.left() + stateWidth);
    painter.setPen(quiet);
    drawElided(painter, state, interface_.kind);
    painter.setPen(palette().color(QPalette::WindowText));
    drawElided(painter, row.text, interface_.addresses);
}

// FlowLayout

FlowLayout::FlowLayout(QWidget* parent) : QLayout(parent)
{
    setContentsMargins(0, 0, 0, 0);
}

FlowLayout::~FlowLayout()
{
    qDeleteAll(items_);
}

QLayoutItem* FlowLayout::takeAt(int index)
{
    return index >= 0 && index < items_.size() ? items_.takeAt(index) : nullptr;
}

int FlowLayout::heightForWidth(int width) const
{
    return arrange(QRect(0, 0, width, 0), false);
}

QSize FlowLayout::minimumSize() const
{
    QSize size;
    for (const QLayoutItem* const item : items_) {
        size = size.expandedTo(item->minimumSize());
    }
    return size;
}

void FlowLayout::setGeometry(const QRect& rect)
{
    QLayout::setGeometry(rect);
    arrange(rect, true);
}

/// Behind the last item of the row that an item begins.
int FlowLayout::rowEnd(int first, int width) const
{
    int end = first + 1;
    int reached = items_.at(first)->sizeHint().width();
    while (end < items_.size()) {
        reached += std::max(spacing(), 0) + items_.at(end)->sizeHint().width();
        if (reached > width) {
            break;
        }
        ++end;
    }
    return end;
}

int FlowLayout::arrange(const QRect& rect, bool moves) const
{
    const int gap = std::max(spacing(), 0);
    const QSize most(std::max(rect.width(), 1), QLAYOUTSIZE_MAX);
    int y = rect.top();
    for (int first = 0; first < items_.size();) {
        const int end = rowEnd(first, rect.width());
        int height = 0;
        for (int i = first; i < end; ++i) {
            height = std::max(height, items_.at(i)->sizeHint().height());
        }
        int x = rect.left();
        for (; first < end; ++first) {
            const QSize size = items_.at(first)->sizeHint().boundedTo(most);
            if (moves) {
                items_.at(first)->setGeometry(QRect(QPoint(x, y + height - size.height()), size));
            }
            x += size.width() + gap;
        }
        y += height + gap;
    }
    return y - rect.top();
}

} // namespace Viewer
} // namespace norvex
