#include "viewer/overviewPage.h"

#include "viewer/overviewItems.h"
#include "viewer/statePages.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QProgressBar>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

namespace norvex {
namespace Viewer {

using SystemInfo::CReport;

namespace {

/// The page is no wider: nobody follows a line across a wide window.
const int widestCharacters = 130;
const int narrowestNameCharacters = 10;
const int widestNameCharacters = 26;
const int pictureCharacters = 44;
const int narrowestPictureCharacters = 16;
const int screenLines = 9;

QLabel* titleLabel(const QString& text, double scale)
{
    QLabel* const label = wrappedLabel(text);
    label->setFont(scaledFont(label->font(), scale));
    return label;
}

} // namespace

OverviewPage::OverviewPage(QWidget* parent) : QScrollArea(parent)
{
    setObjectName(QStringLiteral("overview"));
    setAccessibleName(tr("Overview"));
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    startContent();
}

void OverviewPage::setReport(const CReport& report)
{
    delete job_;
    const auto made = std::make_shared<Overview>();
    job_ = new Job(
        this, [made, report](const JobControl&) { *made = Overview::of(report); },
        [this, made](bool isOutOfMemory) {
            if (isOutOfMemory) {
                showOutOfMemory();
            } else {
                showOverview(*made);
            }
            emit shown();
        });
    QTimer::singleShot(patienceMs, job_.data(), [this] { showWaiting(); });
}

void OverviewPage::showWaiting()
{
    startContent()->addWidget(centred({wrappedLabel(tr("Looking through the report…")), busyBar()}));
}

void OverviewPage::changeEvent(QEvent* event)
{
    QScrollArea::changeEvent(event);
    // Pictures and columns are as large as the font says.
    if (event->type() == QEvent::FontChange && hasOverview_) {
        showOverview(Overview(overview_));
    }
}

void OverviewPage::resizeEvent(QResizeEvent* event)
{
    QScrollArea::resizeEvent(event);
    alignColumns();
}

/// The layout of an empty page, which takes the place of what was shown.
QVBoxLayout* OverviewPage::startContent()
{
    rows_.clear();
    hasOverview_ = false;
    auto* const column = new QWidget;
    column->setMaximumWidth(fontMetrics().averageCharWidth() * widestCharacters);
    auto* const layout = new QVBoxLayout(column);
    const int margin = fontMetrics().height();
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(0);
    auto* const page = new QWidget;
    auto* const pageLayout = new QHBoxLayout(page);
    pageLayout->setContentsMargins(0, 0, 0, 0);
    pageLayout->addWidget(column, 1);
    pageLayout->addStretch(0);
    setWidget(page);
    return layout;
}

void OverviewPage::showOutOfMemory()
{
    showMessage(tr("There is no overview"), tr("There is not enough memory to look through this report."));
}

void OverviewPage::showMessage(const QString& title, const QString& text)
{
    startContent()->addWidget(centred({boldLabel(title), wrappedLabel(text)}));
}

void OverviewPage::showOverview(const Overview& overview)
{
    if (overview.isEmpty()) {
        showMessage(
            tr("Nothing is known of a machine"),
            tr("This text has none of the sections that the overview draws. It can be read as text."));
        return;
    }
    const bool hadFocus = isAncestorOf(QApplication::focusWidget());
    QVBoxLayout& layout = *startContent();
    overview_ = overview;
    hasOverview_ = true;
    auto* const title =
        new TitleItem(overview.title.isEmpty() ? tr("Unnamed machine") : overview.title, overview.titlePath);
    layout.addWidget(title);
    connectGroup({title});
    // Who gives the focus to the page, gives it to its first picture.
    setFocusProxy(title);
    if (hadFocus) {
        title->setFocus();
    }

    Items facts;
    for (const Overview::Fact& fact : overview.facts) {
        facts.append(new FactItem(fact));
    }
    addGroup(layout, QString(), tr("The report says nothing about the machine."), facts, true);

    Items volumes;
    for (const Overview::Volume& volume : overview.volumes.shown) {
        volumes.append(new VolumeItem(volume));
    }
    addThings(layout, tr("Volumes"), overview.volumes, volumes, tr("The report does not describe volumes."),
              tr("No volume is mounted."), true);
    addScreens(layout, overview);

    Items interfaces;
    for (const Overview::Interface& interface : overview.interfaces.shown) {
        interfaces.append(new InterfaceItem(interface));
    }
    addThings(layout, tr("Network"), overview.interfaces, interfaces,
              tr("The report does not describe network interfaces."),
              tr("The machine has no network interface."), true);
    layout.addStretch(1);
    alignColumns();
}

void OverviewPage::addScreens(QVBoxLayout& layout, const Overview& overview)
{
    const QSize largest(fontMetrics().averageCharWidth() * pictureCharacters,
                        fontMetrics().height() * screenLines);
    const QVector<QSize> sizes = screenPictureSizes(overview.screens.shown, largest, fontMetrics().height());
    Items screens;
    for (int i = 0; i < sizes.size(); ++i) {
        screens.append(new ScreenItem(overview.screens.shown.at(i), sizes.at(i)));
    }
    addThings(layout, tr("Screens"), overview.screens, screens, tr("The report does not describe screens."),
              tr("No screen is attached."), false);
}

template <typename Thing>
void OverviewPage::addThings(QVBoxLayout& layout, const QString& title, const Overview::Things<Thing>& things,
                             Items items, const QString& notDescribed, const QString& none, bool inRows)
{
    if (things.others > 0) {
        items.append(new FactItem({QString(), tr("%1 more in the report").arg(things.others), things.path}));
    }
    addGroup(layout, title, things.isDescribed ? none : notDescribed, items, inRows);
}

void OverviewPage::addGroup(QVBoxLayout& layout, const QString& title, const QString& emptyText,
                            const Items& items, bool inRows)
{
    const int indent = fontMetrics().averageCharWidth();
    if (!title.isEmpty()) {
        QLabel* const heading = titleLabel(title, 1.15);
        heading->setContentsMargins(indent, fontMetrics().height() * 5 / 4, indent,
                                    fontMetrics().height() / 3);
        layout.addWidget(heading);
    }
    if (items.isEmpty()) {
        QLabel* const label = wrappedLabel(emptyText);
        label->setContentsMargins(indent, 0, indent, 0);
        layout.addWidget(label);
        return;
    }
    auto* const group = new QWidget;
    group->setAccessibleName(title);
    QLayout* const groupLayout =
        inRows ? static_cast<QLayout*>(new QVBoxLayout(group)) : new FlowLayout(group);
    groupLayout->setContentsMargins(0, 0, 0, 0);
    groupLayout->setSpacing(inRows ? 0 : indent);
    for (OverviewItem* const item : items) {
        groupLayout->addWidget(item);
    }
    layout.addWidget(group);
    connectGroup(items);
    if (inRows) {
        rows_ += items;
    }
}

/// The tabulator goes from group to group, the arrows within one.
void OverviewPage::connectGroup(const Items& items)
{
    for (int i = 0; i < items.size(); ++i) {
        OverviewItem* const item = items.at(i);
        item->setFocusPolicy(i == 0 ? Qt::StrongFocus : Qt::ClickFocus);
        connect(item, &QAbstractButton::clicked, this, [this, item] { emit activated(item->path()); });
        connect(item, &OverviewItem::neighbourWanted, this, [items, i](int step) {
            if (OverviewItem* const neighbour = items.value(i + step)) {
                neighbour->setFocus(Qt::OtherFocusReason);
            }
        });
        connect(item, &OverviewItem::focused, this, [this, items, item] {
            for (OverviewItem* const other : items) {
                other->setFocusPolicy(other == item ? Qt::StrongFocus : Qt::ClickFocus);
            }
            ensureWidgetVisible(item);
        });
    }
}

/// All rows of the page have the same columns.
void OverviewPage::alignColumns()
{
    const int unit = fontMetrics().averageCharWidth();
    const int width = std::min(viewport()->width(), unit * widestCharacters) - 2 * fontMetrics().height();
    RowColumns columns;
    for (const OverviewItem* const row : rows_) {
        const RowColumns wanted = row->wantedColumns();
        columns.first = std::max(columns.first, wanted.first);
        columns.third = std::max(columns.third, wanted.third);
    }
    const int widestName = std::min(widestNameCharacters * unit, width / 3);
    columns.first = std::min(std::max(columns.first, narrowestNameCharacters * unit), widestName);
    const int gaps = 6 * unit;
    const int left = width - columns.first - columns.third - gaps;
    columns.second = left < narrowestPictureCharacters * unit ? 0 : std::min(left, pictureCharacters * unit);
    for (OverviewItem* const row : rows_) {
        row->setColumns(columns);
    }
}

} // namespace Viewer
} // namespace norvex
