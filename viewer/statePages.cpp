#include "viewer/statePages.h"

#include <QCoreApplication>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace norvex::Viewer {

QLabel* wrappedLabel(const QString& text)
{
    auto* const label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

QLabel* boldLabel(const QString& text)
{
    QLabel* const label = wrappedLabel(text);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    return label;
}

QProgressBar* busyBar()
{
    auto* const bar = new QProgressBar;
    bar->setRange(0, 0);
    bar->setAccessibleName(QCoreApplication::translate("norvex::Viewer::ReportTab", "Progress"));
    return bar;
}

QWidget* centred(const QVector<QWidget*>& widgets)
{
    auto* const column = new QWidget;
    column->setMaximumWidth(column->fontMetrics().averageCharWidth() * 70);
    auto* const columnLayout = new QVBoxLayout;
    column->setLayout(columnLayout);
    for (QWidget* const widget : widgets) {
        const bool isButton = qobject_cast<QPushButton*>(widget) != nullptr;
        columnLayout->addWidget(widget, 0, isButton ? Qt::AlignLeft : Qt::Alignment());
    }
    auto* const page = new QWidget;
    auto* const layout = new QVBoxLayout(page);
    layout->addStretch(1);
    auto* const row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(column, 4);
    row->addStretch(1);
    layout->addLayout(row);
    layout->addStretch(2);
    return page;
}

} // namespace norvex::Viewer
