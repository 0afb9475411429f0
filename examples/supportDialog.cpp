// "Copy system information for a bug report": shows the report without its private values, copies it and saves it. What
// is replaced is highlighted; with the private values in it, what would be.

#include <systeminfo/norvexReport.h>
#include <systeminfo/norvexSystemInfo.h>

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QDialog>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDatabase>
#include <QHelpEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSaveFile>
#include <QScreen>
#include <QScrollBar>
#include <QStandardPaths>
#include <QTextBlock>
#include <QTimer>
#include <QToolTip>
#include <QVBoxLayout>

#include <algorithm>

using norvex::SystemInfo::CReport;

namespace {

/// A piece of a line, and what stands for it in the other form of the report.
struct Replaced
{
    int line;
    int begin;
    int end;
    QString other;
};

/// The piece between what two texts have in common at their begins and ends: whole words, so that of two numbers not
/// some digits alone are highlighted.
Replaced replacedBetween(const QString& text, const QString& other)
{
    const int shorter = std::min(text.size(), other.size());
    int begin = 0;
    while (begin < shorter && text.at(begin) == other.at(begin)) {
        ++begin;
    }
    while (begin > 0 && text.at(begin - 1).isLetterOrNumber()) {
        --begin;
    }
    int common = 0;
    while (common < shorter - begin &&
           text.at(text.size() - 1 - common) == other.at(other.size() - 1 - common)) {
        ++common;
    }
    while (common > 0 && text.at(text.size() - common).isLetterOrNumber()) {
        --common;
    }
    return {0, begin, text.size() - common, other.mid(begin, other.size() - common - begin)};
}

/// The pieces of a line that differ: word by word where both have as many words, else one.
QVector<Replaced> replacedIn(int line, const QString& text, const QString& other)
{
    const QLatin1Char blank(' ');
    QStringList words = text.split(blank);
    QStringList otherWords = other.split(blank);
    if (words.size() != otherWords.size()) {
        words = QStringList(text);
        otherWords = QStringList(other);
    }
    QVector<Replaced> pieces;
    int begin = 0;
    for (int i = 0; i < words.size(); ++i) {
        if (words.at(i) != otherWords.at(i)) {
            Replaced piece = replacedBetween(words.at(i), otherWords.at(i));
            piece.line = line;
            piece.begin += begin;
            piece.end += begin;
            pieces.append(piece);
        }
        begin += words.at(i).size() + 1;
    }
    return pieces;
}

/// A report in which the pieces are highlighted that its other form has replaced. A tool tip says what stands there.
class ReportView : public QPlainTextEdit
{
public:
    ReportView();

    /// Both forms have the same number of lines.
    void showReport(const QString& report, const QString& other, const QColor& highlight);
    int replacedCount() const { return pieces_.size(); }
    /// Selects the first highlighted piece behind the cursor, after the last one the first.
    void showNext();

protected:
    bool viewportEvent(QEvent* event) override;

private:
    void markReplaced(const QStringList& lines, const QStringList& otherLines, const QColor& highlight);
    QTextCursor cursorOf(const Replaced& piece) const;

    QVector<Replaced> pieces_;
};

ReportView::ReportView()
{
    setReadOnly(true);
    setLineWrapMode(QPlainTextEdit::NoWrap);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

void ReportView::showReport(const QString& report, const QString& other, const QColor& highlight)
{
    // What the field takes for line ends besides line feeds would shift the lines.
    QString shown = report;
    for (const int lineEnd : {0x000d, 0x2029, 0xfdd0, 0xfdd1}) {
        shown.replace(QChar(lineEnd), QLatin1Char(' '));
    }
    const int line = textCursor().blockNumber();
    const int scrolled = verticalScrollBar()->value();
    setPlainText(shown);
    setTextCursor(QTextCursor(document()->findBlockByNumber(line)));
    verticalScrollBar()->setValue(scrolled);
    markReplaced(report.split(QLatin1Char('\n')), other.split(QLatin1Char('\n')), highlight);
}

void ReportView::markReplaced(const QStringList& lines, const QStringList& otherLines,
                              const QColor& highlight)
{
    pieces_.clear();
    for (int line = 0; line < lines.size(); ++line) {
        if (lines.at(line) != otherLines.value(line)) {
            pieces_ += replacedIn(line, lines.at(line), otherLines.value(line));
        }
    }
    QList<QTextEdit::ExtraSelection> selections;
    for (const Replaced& piece : pieces_) {
        QTextEdit::ExtraSelection selection;
        selection.cursor = cursorOf(piece);
        selection.format.setBackground(highlight);
        selections.append(selection);
    }
    setExtraSelections(selections);
}

QTextCursor ReportView::cursorOf(const Replaced& piece) const
{
    const int line = document()->findBlockByNumber(piece.line).position();
    QTextCursor cursor(document());
    cursor.setPosition(line + piece.begin);
    cursor.setPosition(line + piece.end, QTextCursor::KeepAnchor);
    return cursor;
}

void ReportView::showNext()
{
    const int position = textCursor().selectionEnd();
    const auto next = std::find_if(pieces_.begin(), pieces_.end(), [&](const Replaced& piece) {
        return cursorOf(piece).selectionStart() >= position && cursorOf(piece).selectionEnd() > position;
    });
    if (!pieces_.isEmpty()) {
        setTextCursor(cursorOf(next == pieces_.end() ? pieces_.first() : *next));
        centerCursor();
    }
}

bool ReportView::viewportEvent(QEvent* event)
{
    if (event->type() != QEvent::ToolTip) {
        return QPlainTextEdit::viewportEvent(event);
    }
    const QHelpEvent* help = static_cast<QHelpEvent*>(event);
    const QTextCursor cursor = cursorForPosition(help->pos());
    for (const Replaced& piece : pieces_) {
        const int column = cursor.positionInBlock();
        if (piece.line == cursor.blockNumber() && piece.begin <= column && column <= piece.end) {
            const int longest = 300;
            const QString text =
                piece.other.size() > longest ? piece.other.left(longest) + QStringLiteral("…") : piece.other;
            QToolTip::showText(help->globalPos(), QStringLiteral("<p>%1</p>").arg(text.toHtmlEscaped()),
                               viewport());
            return true;
        }
    }
    QToolTip::hideText();
    return true;
}

class SupportDialog : public QDialog
{
public:
    SupportDialog();

private:
    void makeReport();
    void showReport();
    QString report() const;
    void copy();
    void save();

    CReport original_; // and no text of the field, which gives some characters back as blanks
    CReport redacted_;
    QLabel* notice_ = new QLabel;
    ReportView* view_ = new ReportView;
    QCheckBox* includePrivate_ = new QCheckBox(QStringLiteral("Include &private data"));
    QPushButton* nextButton_ = new QPushButton(QStringLiteral("Show &next"));
    QLabel* status_ = new QLabel;
    QPushButton* copyButton_ = new QPushButton(QStringLiteral("&Copy"));
    QPushButton* saveButton_ = new QPushButton(QStringLiteral("&Save…"));
};

SupportDialog::SupportDialog()
{
    setWindowTitle(QStringLiteral("System information"));
    notice_->setWordWrap(true);
    status_->setTextFormat(Qt::PlainText); // a file name may look like HTML

    auto* closeButton = new QPushButton(QStringLiteral("C&lose"));
    connect(includePrivate_, &QCheckBox::toggled, this, &SupportDialog::showReport);
    connect(nextButton_, &QPushButton::clicked, this, [this] { view_->showNext(); });
    connect(copyButton_, &QPushButton::clicked, this, &SupportDialog::copy);
    connect(saveButton_, &QPushButton::clicked, this, &SupportDialog::save);
    connect(closeButton, &QPushButton::clicked, this, &QDialog::reject);
    copyButton_->setDefault(true);
    for (QWidget* widget : {static_cast<QWidget*>(includePrivate_), static_cast<QWidget*>(nextButton_),
                            static_cast<QWidget*>(copyButton_), static_cast<QWidget*>(saveButton_)}) {
        widget->setEnabled(false);
    }

    auto* top = new QHBoxLayout;
    top->addWidget(includePrivate_);
    top->addStretch();
    top->addWidget(nextButton_);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(status_, 1);
    bottom->addWidget(copyButton_);
    bottom->addWidget(saveButton_);
    bottom->addWidget(closeButton);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(notice_);
    layout->addLayout(top);
    layout->addWidget(view_);
    layout->addLayout(bottom);
    view_->setFocus();
    resize(QSize(900, 700).boundedTo(QGuiApplication::primaryScreen()->availableSize() * 0.85));

    // Later, so that the user sees the dialog while the system answers.
    status_->setText(QStringLiteral("Collecting the system information…"));
    QTimer::singleShot(100, this, [this] { makeReport(); });
}

void SupportDialog::makeReport()
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    original_ = CReport::fromText(norvex::SystemInfo::allInfos(false));
    redacted_ = original_.redacted();
    QApplication::restoreOverrideCursor();
    for (QWidget* widget : {static_cast<QWidget*>(includePrivate_), static_cast<QWidget*>(nextButton_),
                            static_cast<QWidget*>(copyButton_), static_cast<QWidget*>(saveButton_)}) {
        widget->setEnabled(true);
    }
    showReport();
}

void SupportDialog::showReport()
{
    // Transparent, so that the text can be read on light and on dark.
    const QColor hidden(255, 190, 0, 110);
    const QColor visible(255, 60, 60, 110);
    const bool isPrivate = includePrivate_->isChecked();
    view_->showReport(report(), isPrivate ? redacted_.text() : original_.text(),
                      isPrivate ? visible : hidden);
    const QString notice =
        isPrivate
            ? QStringLiteral("<b>Read this before you send it.</b> The report holds private values at %1 "
                             "highlighted places: environment variables, serial numbers, addresses, and "
                             "names of this computer, its user and its networks.")
            : QStringLiteral("Private values, such as serial numbers, addresses, names and environment "
                             "variables, are replaced at %1 highlighted places. Point at one of them to "
                             "see what is hidden.");
    notice_->setText(notice.arg(view_->replacedCount()));
    status_->clear();
}

/// As it is sent.
QString SupportDialog::report() const
{
    return (includePrivate_->isChecked() ? original_ : redacted_).text();
}

void SupportDialog::copy()
{
    QGuiApplication::clipboard()->setText(report());
    status_->setText(includePrivate_->isChecked()
                         ? QStringLiteral("Copied to the clipboard, with private data.")
                         : QStringLiteral("Copied to the clipboard, without private data."));
}

void SupportDialog::save()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString name =
        QFileDialog::getSaveFileName(this, QString(), folder + QStringLiteral("/system-information.txt"));
    if (name.isEmpty()) {
        return;
    }
    const QByteArray bytes = report().toUtf8();
    // Unbuffered, because only then QSaveFile notices a write that a full disk cuts short.
    QSaveFile file(name);
    if (file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write(bytes) == bytes.size() &&
        file.commit()) {
        status_->setText(QStringLiteral("Saved as %1.").arg(QFileInfo(name).fileName()));
        return;
    }
    status_->clear();
    QMessageBox message(QMessageBox::Warning, windowTitle(), QStringLiteral("The report is not saved."),
                        QMessageBox::Ok, this);
    message.setTextFormat(Qt::PlainText);
    message.setInformativeText(QDir::toNativeSeparators(name) + QStringLiteral(": ") + file.errorString());
    message.exec();
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    return SupportDialog().exec();
}
