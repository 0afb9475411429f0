#pragma once

#include "viewer/job.h"
#include "viewer/overview.h"

#include <QPointer>
#include <QScrollArea>

#include <memory>

class QLabel;
class QVBoxLayout;

namespace norvex {
namespace Viewer {

class OverviewItem;

/// A report at a glance. Each picture leads to its lines.
class OverviewPage : public QScrollArea
{
    Q_OBJECT

public:
    explicit OverviewPage(QWidget* parent = nullptr);

    /// Looks through a report beside the window, then shows it.
    void setReport(const SystemInfo::CReport& report);

signals:
    /// The user asks for the lines of an item, see CReport::item().
    void activated(const QString& path);
    /// The report that was set last is shown.
    void shown();

protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    using Items = QVector<OverviewItem*>;

    void showWaiting();
    void showOverview(const Overview& overview);
    void showOutOfMemory();
    void showMessage(const QString& title, const QString& text);
    QVBoxLayout* startContent();
    void addGroup(QVBoxLayout& layout, const QString& title, const QString& emptyText, const Items& items,
                  bool inRows);
    template <typename Thing>
    void addThings(QVBoxLayout& layout, const QString& title, const Overview::Things<Thing>& things,
                   Items items, const QString& notDescribed, const QString& none, bool inRows);
    void addScreens(QVBoxLayout& layout, const Overview& overview);
    void connectGroup(const Items& items);
    void alignColumns();

    QPointer<Job> job_;
    Overview overview_;
    bool hasOverview_ = false;
    Items rows_;
};

} // namespace Viewer
} // namespace norvex
