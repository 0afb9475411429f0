// Paper and PDF files, without private data unless the user wants it.

#include "viewer/machineReport.h"
#include "viewer/mainWindow.h"
#include "viewer/reportPrinting.h"
#include "viewer/statePages.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QPrintDialog>
#include <QPrinter>
#include <QProgressBar>
#include <QStandardPaths>
#include <QTabWidget>
#include <QTimer>

namespace norvex {
namespace Viewer {

/// The title of what leaves the window: a file may be called after a person.
QString MainWindow::titleToShare(const ReportTab& tab) const
{
    return sharesRedacted() ? tr("System Information") : tab.document()->title();
}

bool MainWindow::canStartWork()
{
    if (working_ != nullptr) {
        say(tr("Wait until the work before is done."));
    }
    return working_ == nullptr;
}

/// Runs work beside the window, with progress and a cancel button.
void MainWindow::startWork(const QString& note, const Job::Work& work, const std::function<void(bool)>& done)
{
    workingNote_ = note;
    working_ = new Job(this, work, [this, done](bool isOutOfMemory) {
        working_.clear();
        updateBusyness();
        done(isOutOfMemory);
    });
    connect(working_, &Job::progressed, workProgress_, &QProgressBar::setValue);
    updateBusyness();
    workProgress_->setValue(0);
}

/// Runs work on the text of the tab in front.
void MainWindow::startPrinting(const QString& note,
                               const std::function<QString(const TextLines&, const JobControl&)>& work,
                               const QString& doneNote, const QString& failedNote)
{
    if (!canStartWork()) {
        return;
    }
    withReport([=](ReportTab& tab, bool isRedacted) {
        const ShownReport& report = isRedacted ? tab.document()->redacted() : tab.document()->original();
        const std::shared_ptr<const TextLines> lines = report.lines;
        const auto reason = std::make_shared<QString>();
        startWork(
            note, [=](const JobControl& control) { *reason = work(*lines, control); },
            [=](bool isOutOfMemory) {
                const QString why = isOutOfMemory ? tr("There is not enough memory.") : *reason;
                if (why.isEmpty()) {
                    say(doneNote);
                } else {
                    showFailure(failedNote, why);
                }
            });
    });
}

void MainWindow::choosePdfName()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString chosen =
        QFileDialog::getSaveFileName(this,
                                     sharesRedacted() ? tr("Export With Placeholders for Private Data")
                                                      : tr("Export, Private Data Included"),
                                     folder + QStringLiteral("/system-information.pdf"), tr("PDF (*.pdf)"));
    const QString name = withEnding(chosen, QStringLiteral(".pdf"));
    if (!name.isEmpty()) {
        exportPdf(name);
    }
}

void MainWindow::exportPdf(const QString& fileName)
{
    const ReportTab* const tab = currentTab();
    if (tab == nullptr || !canReplace(fileName, tr("The report is not exported."))) {
        return;
    }
    const QString title = titleToShare(*tab);
    startPrinting(
        tr("Exporting…"),
        [=](const TextLines& lines, const JobControl& control) {
            const QString reason = Viewer::exportPdf(lines, title, fileName, control);
            return reason.isEmpty() ? reason
                                    : QDir::toNativeSeparators(fileName) + QStringLiteral(": ") + reason;
        },
        tr("Exported as %1.").arg(QFileInfo(fileName).fileName()), tr("The report is not exported."));
}

/// Shows the dialog when the print server answers: Qt's dialog keeps the window waiting for minutes if it does not.
void MainWindow::print()
{
    const QPointer<ReportTab> tab = currentTab();
    if (tab == nullptr || printers_ != nullptr) {
        return;
    }
    printers_ = new SectionProcess(this, MachineReport::printerSection, MachineReport::printerPatienceMs);
    connect(printers_, &SectionProcess::ended, this, [this, tab] {
        const bool isAnswered = printers_->outcome() == SectionProcess::Outcome::Answered;
        printers_->deleteLater();
        printers_.clear();
        updateBusyness();
        if (!isAnswered) {
            showFailure(tr("The report is not printed."),
                        tr("The print server does not answer. You can export the report as PDF."));
        } else if (tab != nullptr) {
            tabs_->setCurrentWidget(tab);
            showPrintDialog();
        }
    });
    printers_->start();
    QTimer::singleShot(patienceMs, this, &MainWindow::updateBusyness);
}

void MainWindow::showPrintDialog()
{
    const ReportTab* const tab = currentTab();
    const auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    const QString title = titleToShare(*tab);
    printer->setDocName(title);
    QPrintDialog dialog(printer.get(), this);
    dialog.setWindowTitle(sharesRedacted() ? tr("Print With Placeholders for Private Data")
                                           : tr("Print, Private Data Included"));
    if (dialog.exec() != QDialog::Accepted) {
        return;
    }
    startPrinting(
        tr("Printing…"),
        [=](const TextLines& lines, const JobControl& control) {
            return printText(lines, title, *printer, control);
        },
        tr("Printed."), tr("The report is not printed."));
}

} // namespace Viewer
} // namespace norvex
