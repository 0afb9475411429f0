#include "viewer/findBar.h"

#include "viewer/statePages.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QStyle>
#include <QToolButton>

namespace norvex {
namespace Viewer {

namespace {

/// A longer text is no search.
const int longestSought = 1000;

QToolButton* button(const QString& text, const QString& name)
{
    auto* const made = new QToolButton;
    made->setText(text);
    made->setToolTip(name);
    made->setAccessibleName(name);
    made->setAutoRaise(true);
    made->setFocusPolicy(Qt::StrongFocus);
    return made;
}

} // namespace

FindBar::FindBar(QWidget* parent)
    : QWidget(parent), edit_(new QLineEdit), matchCase_(new QCheckBox(tr("Match c&ase"))),
      result_(new QLabel), progress_(new QProgressBar), stop_(button(tr("Stop"), tr("Stop counting")))
{
    auto* const label = new QLabel(tr("F&ind:"));
    label->setBuddy(edit_);
    edit_->setObjectName(QStringLiteral("find"));
    edit_->setAccessibleName(tr("Find"));
    edit_->setClearButtonEnabled(true);
    edit_->setMaxLength(longestSought);
    edit_->setMinimumWidth(fontMetrics().averageCharWidth() * 16);
    edit_->setMaximumWidth(fontMetrics().averageCharWidth() * 36);
    result_->setObjectName(QStringLiteral("findResult"));
    result_->setTextFormat(Qt::PlainText);
    // A longer result does not make the window wider.
    result_->setMinimumWidth(fontMetrics().averageCharWidth() * 10);
    stop_->setObjectName(QStringLiteral("stopCounting"));
    progress_->setMaximumWidth(fontMetrics().averageCharWidth() * 16);
    progress_->setAccessibleName(tr("Progress of counting"));
    QToolButton* const previous = button(tr("Previous"), tr("Previous hit (Shift+F3)"));
    QToolButton* const next = button(tr("Next"), tr("Next hit (F3)"));
    QToolButton* const close = button(QString(), tr("Close the find bar (Esc)"));
    close->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));

    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 4, 8, 4);
    for (QWidget* const widget :
         {static_cast<QWidget*>(label), static_cast<QWidget*>(edit_), static_cast<QWidget*>(previous),
          static_cast<QWidget*>(next), static_cast<QWidget*>(matchCase_)}) {
        layout->addWidget(widget, widget == edit_ ? 2 : 0);
    }
    layout->addSpacing(8);
    layout->addWidget(result_);
    layout->addWidget(progress_);
    layout->addWidget(stop_);
    layout->addStretch(1);
    layout->addWidget(close);
    showResult();
    patience_.setSingleShot(true);
    connect(&patience_, &QTimer::timeout, this, &FindBar::showResult);

    connect(edit_, &QLineEdit::textChanged, this, &FindBar::soughtChanged);
    connect(matchCase_, &QCheckBox::toggled, this, &FindBar::soughtChanged);
    connect(next, &QToolButton::clicked, this, &FindBar::nextRequested);
    connect(previous, &QToolButton::clicked, this, &FindBar::previousRequested);
    connect(stop_, &QToolButton::clicked, this, &FindBar::stopRequested);
    connect(close, &QToolButton::clicked, this, &FindBar::closed);
}

QString FindBar::sought() const
{
    return edit_->text();
}

Qt::CaseSensitivity FindBar::sensitivity() const
{
    return matchCase_->isChecked() ? Qt::CaseSensitive : Qt::CaseInsensitive;
}

void FindBar::open(const QString& sought)
{
    show();
    if (!sought.isEmpty()) {
        edit_->setText(sought);
    }
    edit_->selectAll();
    edit_->setFocus(Qt::ShortcutFocusReason);
}

void FindBar::setResult(const QString& result, bool isHit, int percent)
{
    text_ = result;
    isHit_ = isHit;
    percent_ = percent;
    if (percent == 100 || progress_->isVisible()) {
        showResult();
    } else if (!patience_.isActive()) {
        patience_.start(patienceMs);
    }
}

void FindBar::showResult()
{
    patience_.stop();
    result_->setText(text_);
    QFont font = result_->font();
    font.setBold(!isHit_);
    result_->setFont(font);
    progress_->setVisible(percent_ < 100);
    stop_->setVisible(percent_ < 100);
    progress_->setValue(percent_);
}

void FindBar::keyPressEvent(QKeyEvent* event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Escape) {
        emit closed();
    } else if (isReturn && edit_->hasFocus()) {
        if ((event->modifiers() & Qt::ShiftModifier) != 0) {
            emit previousRequested();
        } else {
            emit nextRequested();
        }
    } else {
        QWidget::keyPressEvent(event);
    }
}

} // namespace Viewer
} // namespace norvex
