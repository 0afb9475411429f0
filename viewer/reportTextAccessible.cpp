#include "viewer/reportTextAccessible.h"

#include "viewer/reportTextView.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QTextBoundaryFinder>

#include <algorithm>

namespace norvex {
namespace Viewer {

namespace {

/// More than a screen reader asks for at once; a text has millions of characters.
const int longestAnswer = 1 << 20;

class ReportTextAccessible : public QAccessibleWidget, public QAccessibleTextInterface
{
public:
    explicit ReportTextAccessible(ReportTextView* view) : QAccessibleWidget(view, QAccessible::EditableText)
    {}

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface*>(this)
                                                  : QAccessibleWidget::interface_cast(type);
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.readOnly = true;
        state.multiLine = true;
        state.selectableText = true;
        return state;
    }

    /// The value is the line of the cursor.
    QString text(QAccessible::Text type) const override
    {
        if (type != QAccessible::Value) {
            return QAccessibleWidget::text(type);
        }
        const int line = lines().lineAt(view().cursor());
        return text(lines().begin(line), lines().end(line));
    }

    int selectionCount() const override { return view().hasSelection() ? 1 : 0; }

    void selection(int index, int* begin, int* end) const override
    {
        *begin = index == 0 ? view().selectionBegin() : 0;
        *end = index == 0 ? view().selectionEnd() : 0;
    }

    void addSelection(int begin, int end) override { setSelection(0, begin, end); }
    void removeSelection(int /*index*/) override { view().setCursorAt(view().cursor(), false); }

    void setSelection(int /*index*/, int begin, int end) override
    {
        view().setCursorAt(begin, false);
        view().setCursorAt(end, true);
    }

    int cursorPosition() const override { return view().cursor(); }
    void setCursorPosition(int position) override { view().setCursorAt(position, false); }
    int characterCount() const override { return lines().text().size(); }

    QString text(int begin, int end) const override
    {
        const int from = std::max(begin, 0);
        const int to = end < 0 ? characterCount() : end;
        return lines().text().mid(from, std::max(0, std::min(to - from, longestAnswer)));
    }

    QString textAtOffset(int offset, QAccessible::TextBoundaryType type, int* begin, int* end) const override;
    QString textBeforeOffset(int offset, QAccessible::TextBoundaryType type, int* begin,
                             int* end) const override;
    QString textAfterOffset(int offset, QAccessible::TextBoundaryType type, int* begin,
                            int* end) const override;

    QRect characterRect(int offset) const override
    {
        const QRect rect = view().characterRect(offset);
        return QRect(view().viewport()->mapToGlobal(rect.topLeft()), rect.size());
    }

    int offsetAtPoint(const QPoint& point) const override
    {
        const QPoint inside = view().viewport()->mapFromGlobal(point);
        return view().viewport()->rect().contains(inside) ? view().offsetAt(inside) : -1;
    }

    void scrollToSubstring(int begin, int end) override { view().select(begin, end); }

    QString attributes(int /*offset*/, int* begin, int* end) const override
    {
        *begin = 0;
        *end = characterCount();
        return QString();
    }

private:
    ReportTextView& view() const { return *static_cast<ReportTextView*>(widget()); }
    const TextLines& lines() const { return view().lines(); }
    int placeOf(int offset) const;
    QString lineText(int line, int* begin, int* end) const;
    QString byBoundary(int offset, QAccessible::TextBoundaryType type, int* begin, int* end, int step) const;
};

int ReportTextAccessible::placeOf(int offset) const
{
    const int place = offset == -1 ? characterCount() : offset == -2 ? view().cursor() : offset;
    return std::max(0, std::min(place, characterCount()));
}

QString ReportTextAccessible::lineText(int line, int* begin, int* end) const
{
    if (line < 0 || line >= lines().count()) {
        *begin = *end = -1;
        return QString();
    }
    *begin = lines().begin(line);
    *end = line + 1 < lines().count() ? lines().begin(line + 1) : characterCount();
    return text(*begin, *end);
}

/// The piece of that kind at a place, in front of it or behind it. What is smaller than a line is looked for in the line.
QString ReportTextAccessible::byBoundary(int offset, QAccessible::TextBoundaryType type, int* begin, int* end,
                                         int step) const
{
    const int place = placeOf(offset);
    const int line = lines().lineAt(place);
    if (type == QAccessible::LineBoundary || type == QAccessible::ParagraphBoundary ||
        type == QAccessible::NoBoundary) {
        return lineText(line + step, begin, end);
    }
    int lineBegin = 0;
    int lineEnd = 0;
    const QString whole = lineText(line, &lineBegin, &lineEnd);
    const int inLine = std::min(place - lineBegin, whole.size());
    QTextBoundaryFinder finder(type == QAccessible::CharBoundary   ? QTextBoundaryFinder::Grapheme
                               : type == QAccessible::WordBoundary ? QTextBoundaryFinder::Word
                                                                   : QTextBoundaryFinder::Sentence,
                               whole);
    finder.setPosition(inLine);
    int from = finder.isAtBoundary() ? inLine : std::max(finder.toPreviousBoundary(), 0);
    finder.setPosition(from);
    int to = finder.toNextBoundary();
    if (step > 0 && to != -1) {
        from = to;
        to = finder.toNextBoundary();
    } else if (step < 0) {
        finder.setPosition(from);
        to = from;
        from = finder.toPreviousBoundary();
    }
    if (from == -1 || to == -1) {
        *begin = *end = -1;
        return QString();
    }
    *begin = lineBegin + from;
    *end = lineBegin + to;
    return whole.mid(from, to - from);
}

QString ReportTextAccessible::textAtOffset(int offset, QAccessible::TextBoundaryType type, int* begin,
                                           int* end) const
{
    return byBoundary(offset, type, begin, end, 0);
}

QString ReportTextAccessible::textBeforeOffset(int offset, QAccessible::TextBoundaryType type, int* begin,
                                               int* end) const
{
    return byBoundary(offset, type, begin, end, -1);
}

QString ReportTextAccessible::textAfterOffset(int offset, QAccessible::TextBoundaryType type, int* begin,
                                              int* end) const
{
    return byBoundary(offset, type, begin, end, 1);
}

QAccessibleInterface* makeAccessible(const QString& /*className*/, QObject* object)
{
    auto* const view = qobject_cast<ReportTextView*>(object);
    return view == nullptr ? nullptr : new ReportTextAccessible(view);
}

} // namespace

void installReportTextAccessible()
{
    static const bool isInstalled = [] {
        QAccessible::installFactory(makeAccessible);
        return true;
    }();
    Q_UNUSED(isInstalled)
}

void tellAccessibleCursor(ReportTextView* view)
{
    if (!QAccessible::isActive()) {
        return;
    }
    QAccessibleTextSelectionEvent selection(view, view->selectionBegin(), view->selectionEnd());
    selection.setCursorPosition(view->cursor());
    QAccessible::updateAccessibility(&selection);
}

} // namespace Viewer
} // namespace norvex
