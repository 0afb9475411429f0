// What leaves the window: copies and files, without private data unless the user wants it.

#include "viewer/mainWindow.h"

#include "viewer/comparisonPage.h"
#include "viewer/reportTextView.h"
#include "viewer/sectionProcess.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QJsonDocument>
#include <QMessageBox>
#include <QSaveFile>
#include <QStandardPaths>

namespace norvex {
namespace Viewer {

using SystemInfo::CReport;

namespace {

/// Other programs get a longer selection when it is copied, not while it is made.
const int longestOffer = 1 << 20;

/// Writes all or fails with a reason: a disk that becomes full takes a part first, and says why when it gets the rest.
bool writeAll(QIODevice& device, const QByteArray& bytes)
{
    qint64 written = 0;
    while (written < bytes.size()) {
        const qint64 more = device.write(bytes.constData() + written, bytes.size() - written);
        if (more <= 0) {
            return false;
        }
        written += more;
    }
    return true;
}

/// @return the reason of a failure; empty on success
QString saveReport(const CReport& report, const QString& fileName)
{
    QString reason;
    QByteArray bytes;
    if (fileName.endsWith(QLatin1String(".json"), Qt::CaseInsensitive)) {
        const QJsonDocument json = report.toJson(&reason);
        if (json.isNull()) {
            return reason;
        }
        bytes = json.toJson();
    } else {
        bytes = report.text().toUtf8();
    }
    // Unbuffered, because only then QSaveFile notices a write that a full disk cuts short.
    QSaveFile file(fileName);
    const bool isSaved =
        file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && writeAll(file, bytes) && file.commit();
    return isSaved ? QString() : file.errorString();
}

} // namespace

bool MainWindow::sharesRedacted() const
{
    return sharesRedacted_->isChecked() || showsRedacted_->isChecked();
}

/// Calls back with the tab in front as soon as there is what may leave it.
void MainWindow::withReport(const std::function<void(ReportTab& tab, bool isRedacted)>& act)
{
    ReportTab* const tab = currentTab();
    if (tab == nullptr || tab->shown().isNull()) {
        return;
    }
    if (!sharesRedacted()) {
        act(*tab, false);
        return;
    }
    sharing_ = tab->document();
    tab->document()->makeRedacted(tab, [this, tab, act](bool isMade) {
        sharing_.clear();
        updateBusyness();
        if (isMade) {
            act(*tab, true);
        } else {
            say(tr("There is not enough memory to replace private data."));
        }
    });
    updateBusyness();
}

void MainWindow::copy(const QString& text, bool isRedacted)
{
    if (text.isEmpty()) {
        say(tr("Nothing is selected."));
        return;
    }
    QApplication::clipboard()->setText(text);
    say(isRedacted ? tr("Copied, with placeholders for private data.")
                   : tr("Copied, private data included."));
}

void MainWindow::copySelection()
{
    const ReportTab* const front = currentTab();
    if (front != nullptr && front->page() == ReportTab::ComparisonPageNumber) {
        copyDifferences(); // the selection of the text is not in sight
        return;
    }
    withReport([this](ReportTab& tab, bool isRedacted) { copy(tab.selectedText(isRedacted), isRedacted); });
}

/// Gives the selection to systems on which selecting is copying.
void MainWindow::offerSelection()
{
    ReportTab* const tab = currentTab();
    const bool isShort = tab != nullptr && tab->view()->hasSelection() &&
                         tab->view()->selectionEnd() - tab->view()->selectionBegin() <= longestOffer;
    const bool canOffer = isShort && (!sharesRedacted() || !tab->document()->redacted().isNull());
    if (canOffer && QApplication::clipboard()->supportsSelection()) {
        QApplication::clipboard()->setText(tab->selectedText(sharesRedacted()), QClipboard::Selection);
    }
}

void MainWindow::copySection()
{
    withReport([this](ReportTab& tab, bool isRedacted) {
        int firstLine = 0;
        int lineCount = 0;
        tab.currentSection(firstLine, lineCount);
        copy(tab.textOfLines(firstLine, lineCount, isRedacted), isRedacted);
    });
}

void MainWindow::copyAll()
{
    withReport([this](ReportTab& tab, bool isRedacted) {
        copy((isRedacted ? tab.document()->redacted() : tab.document()->original()).lines->text(),
             isRedacted);
    });
}

void MainWindow::copyDifferences()
{
    const ReportTab* const tab = currentTab();
    const bool isRedacted = sharesRedacted();
    const auto make = tab == nullptr ? nullptr : tab->comparison()->textMaker(isRedacted);
    if (!make || !canStartWork()) {
        return;
    }
    const auto text = std::make_shared<QString>();
    startWork(
        isRedacted ? tr("Replacing private data…") : tr("Copying…"),
        [text, make](const JobControl& control) { *text = make(control); },
        [this, text, isRedacted](bool isOutOfMemory) {
            if (isOutOfMemory) {
                say(tr("There is not enough memory."));
            } else {
                copy(*text, isRedacted);
            }
        });
}

void MainWindow::chooseSaveName()
{
    const ReportTab* const tab = currentTab();
    if (tab == nullptr) {
        return;
    }
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString text = tr("Text (*.txt)");
    const QString json = tr("JSON (*.json)");
    QString filter = text;
    QString name = QFileDialog::getSaveFileName(
        this,
        sharesRedacted() ? tr("Save With Placeholders for Private Data") : tr("Save, Private Data Included"),
        folder + QStringLiteral("/system-information.txt"), text + QStringLiteral(";;") + json, &filter);
    if (filter == json) {
        name = withEnding(name, QStringLiteral(".json"));
    }
    if (!name.isEmpty()) {
        save(name);
    }
}

/// A chosen name with the ending of its kind of file, which the dialog leaves to us. The dialog has not asked about a file
/// of the longer name.
/// @return empty if the user chose nothing or keeps that file
QString MainWindow::withEnding(const QString& name, const QString& ending)
{
    if (name.isEmpty() || name.endsWith(ending, Qt::CaseInsensitive)) {
        return name;
    }
    const QString text = QStringLiteral(".txt");
    const QString stem =
        name.endsWith(text, Qt::CaseInsensitive) ? name.left(name.size() - text.size()) : name;
    QString ended = stem + ending;
    if (!QFileInfo::exists(ended)) {
        return ended;
    }
    const QString question = tr("%1 already exists. Do you want to replace it?");
    return isConfirmed(question.arg(QFileInfo(ended).fileName())) ? ended : QString();
}

bool MainWindow::isConfirmed(const QString& question)
{
    QMessageBox box(QMessageBox::Question, tr("System Information"), question,
                    QMessageBox::Yes | QMessageBox::No, this);
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

/// A pipe or a device would be replaced by a file, and be lost.
bool MainWindow::canReplace(const QString& fileName, const QString& failedNote)
{
    const QFileInfo info(fileName);
    if (info.exists() && !info.isFile()) {
        showFailure(failedNote, QDir::toNativeSeparators(fileName) + QStringLiteral(": ") +
                                    tr("This is no regular file."));
        return false;
    }
    return true;
}

void MainWindow::save(const QString& fileName)
{
    if (!canReplace(fileName, tr("The report is not saved."))) {
        return;
    }
    withReport([this, fileName](ReportTab& tab, bool isRedacted) {
        const ShownReport& report = isRedacted ? tab.document()->redacted() : tab.document()->original();
        startSaving(report.report.isNull() ? CReport::fromText(report.lines->text()) : report.report,
                    fileName);
    });
}

void MainWindow::startSaving(const CReport& report, const QString& fileName)
{
    const auto reason = std::make_shared<QString>();
    const auto work = [report, fileName, reason](const JobControl&) {
        *reason = saveReport(report, fileName);
    };
    saving_ = new Job(this, work, [this, fileName, reason](bool isOutOfMemory) {
        saving_.clear();
        updateBusyness();
        if (isOutOfMemory) {
            *reason = tr("There is not enough memory.");
        }
        if (reason->isEmpty()) {
            say(tr("Saved as %1.").arg(QFileInfo(fileName).fileName()));
            return;
        }
        showFailure(tr("The report is not saved."),
                    QDir::toNativeSeparators(fileName) + QStringLiteral(": ") + *reason);
    });
    updateBusyness();
}

void MainWindow::showFailure(const QString& text, const QString& reason)
{
    auto* const message =
        new QMessageBox(QMessageBox::Warning, tr("System Information"), text, QMessageBox::Ok, this);
    message->setAttribute(Qt::WA_DeleteOnClose);
    message->setTextFormat(Qt::PlainText);
    message->setInformativeText(reason);
    message->open();
}

void MainWindow::cancelWork()
{
    if (sharing_ != nullptr) {
        sharing_->cancelRedaction();
        sharing_.clear();
        say(tr("Cancelled: nothing is copied or saved."));
    } else if (working_ != nullptr) {
        delete working_;
        say(tr("Cancelled: nothing is printed or copied."));
    } else if (printers_ != nullptr) {
        delete printers_;
        say(tr("Cancelled: nothing is printed or copied."));
    } else if (ReportTab* const tab = currentTab()) {
        tab->document()->cancel();
    }
    updateBusyness();
}

} // namespace Viewer
} // namespace norvex
