#pragma once

#include "viewer/overview.h"

#include <QAbstractButton>
#include <QLayout>

namespace norvex {
namespace Viewer {

/// The columns that the rows of a page share.
struct RowColumns
{
    int first = 0;  ///< the width of the names
    int second = 0; ///< the width of the pictures behind them; 0 where the text stands below the picture
    int third = 0;  ///< the width that the text needs
};

/// A bold font for titles and headings.
QFont scaledFont(const QFont& font, double scale);

/// A picture of something in a report. A click, or Enter, leads to its lines.
class OverviewItem : public QAbstractButton
{
    Q_OBJECT

public:
    /// @param words what the picture says, for those who do not see it
    OverviewItem(const QString& words, const QString& path);

    const QString& path() const { return path_; }
    /// What its own columns need.
    virtual RowColumns wantedColumns() const { return RowColumns(); }
    void setColumns(const RowColumns& columns);

signals:
    /// An arrow key asks for a neighbour.
    void neighbourWanted(int step);
    void focused();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    bool event(QEvent* event) override;

    /// Paints into what the margins leave.
    virtual void paintItem(QPainter& painter, const QRect& area) = 0;

    /// The parts of a row: side by side or, where there is little room, the picture and the text below each other.
    struct Row
    {
        QRect name;
        QRect picture;
        QRect text;
    };
    Row rowIn(const QRect& area, bool isTextFirst) const;
    int columnLeft() const;
    QColor quietColor() const;
    QSize rowSizeHint(bool hasText) const;
    /// Beside a picture; the same for all of a page.
    int margin() const;
    /// Between the text of two rows.
    int rowGap() const { return fontMetrics().height() * 3 / 5; }

private:
    const QString path_;
    RowColumns columns_;
};

/// What the page is about.
class TitleItem : public OverviewItem
{
    Q_OBJECT

public:
    TitleItem(const QString& title, const QString& path);

    QSize sizeHint() const override;

protected:
    void paintItem(QPainter& painter, const QRect& area) override;

private:
    const QString title_;
};

/// A name and a value, in as many lines as it needs.
class FactItem : public OverviewItem
{
    Q_OBJECT

public:
    explicit FactItem(const Overview::Fact& fact);

    RowColumns wantedColumns() const override;
    QSize sizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    void paintItem(QPainter& painter, const QRect& area) override;

private:
    int layOutValue(int width, QPainter* painter, const QPointF& place) const;

    const Overview::Fact fact_;
};

/// A volume as a bar of what is used, reserved and available.
class VolumeItem : public OverviewItem
{
    Q_OBJECT

public:
    explicit VolumeItem(const Overview::Volume& volume);

    RowColumns wantedColumns() const override;
    QSize sizeHint() const override;

protected:
    void paintItem(QPainter& painter, const QRect& area) override;

private:
    const Overview::Volume volume_;
};

/// A screen in the scale that all screens of the page have.
class ScreenItem : public OverviewItem
{
    Q_OBJECT

public:
    ScreenItem(const Overview::Screen& screen, const QSize& pictureSize);

    QSize sizeHint() const override;

protected:
    void paintItem(QPainter& painter, const QRect& area) override;

private:
    const Overview::Screen screen_;
    const QSize pictureSize_;
};

/// The sizes in which screens are drawn: to one scale, so that the largest fits, and none too small to be hit.
QVector<QSize> screenPictureSizes(const QVector<Overview::Screen>& screens, const QSize& largest,
                                  int smallestSide);

/// A network interface with its state.
class InterfaceItem : public OverviewItem
{
    Q_OBJECT

public:
    explicit InterfaceItem(const Overview::Interface& interface);

    RowColumns wantedColumns() const override;
    QSize sizeHint() const override;

protected:
    void paintItem(QPainter& painter, const QRect& area) override;

private:
    const Overview::Interface interface_;
};

/// Items beside one another, in as many rows as they need. The items of a row stand on one line.
class FlowLayout : public QLayout
{
    Q_OBJECT

public:
    explicit FlowLayout(QWidget* parent);
    ~FlowLayout() override;

    void addItem(QLayoutItem* item) override { items_.append(item); }
    int count() const override { return items_.size(); }
    QLayoutItem* itemAt(int index) const override { return items_.value(index); }
    QLayoutItem* takeAt(int index) override;
    Qt::Orientations expandingDirections() const override { return {}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override { return minimumSize(); }
    QSize minimumSize() const override;
    void setGeometry(const QRect& rect) override;

private:
    int arrange(const QRect& rect, bool moves) const;
    int rowEnd(int first, int width) const;

    QVector<QLayoutItem*> items_;
};

} // namespace Viewer
} // namespace norvex
