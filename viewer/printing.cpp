// Paper and PDF files, without private data unless the user wants it.

#include "viewer/mainWindow.h"
#include "viewer/reportPrinting.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QProgressBar>
#include <QStandardPaths>
#include <QStatusBar>

namespace norvex {
namespace Viewer {

namespace {

const int messageMs = 6000;

} // namespace

/// Runs work on the text of the tab in front beside the window, with progress and a cancel button.
void MainWindow::startPrinting(const QString& note,
                               const std::function<QString(const TextLines&, const JobControl&)>& work,
                               const QString& doneNote, const QString& failedNote)
{
    if (printing_ != nullptr) {
        statusBar()->showMessage(tr("Wait until the report before is printed."), messageMs);
        return;
    }
    withReport([=](ReportTab& tab, bool isRedacted) {
        const ShownReport& report = isRedacted ? tab.document()->redacted() : tab.document()->original();
        const std::shared_ptr<const TextLines> lines = report.lines;
        const auto reason = std::make_shared<QString>();
        printingNote_ = note;
        printing_ = new Job(
            this, [=](const JobControl& control) { *reason = work(*lines, control); },
            [=](bool isOutOfMemory) {
                printing_.clear();
                updateBusyness();
                const QString why = isOutOfMemory ? tr("There is not enough memory.") : *reason;
                if (why.isEmpty()) {
                    statusBar()->showMessage(doneNote, messageMs);
                    return;
                }
                auto* const message = new QMessageBox(QMessageBox::Warning, tr("System Information"),
                                                      failedNote, QMessageBox::Ok, this);
                message->setAttribute(Qt::WA_DeleteOnClose);
                message->setTextFormat(Qt::PlainText);
                message->setInformativeText(why);
                message->open();
            });
        connect(printing_, &Job::progressed, workProgress_, &QProgressBar::setValue);
        updateBusyness();
        workProgress_->setValue(0);
    });
}

void MainWindow::choosePdfName()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString name =
        QFileDialog::getSaveFileName(this,
                                     sharesRedacted() ? tr("Export With Placeholders for Private Data")
                                                      : tr("Export, Private Data Included"),
                                     folder + QStringLiteral("/system-information.pdf"), tr("PDF (*.pdf)"));
    if (!name.isEmpty()) {
        exportPdf(name);
    }
}

void MainWindow::exportPdf(const QString& fileName)
{
    const ReportTab* const tab = currentTab();
    if (tab == nullptr) {
        return;
    }
    const QString title = tab->document()->title();
    startPrinting(
        tr("Exporting…"),
        [=](const TextLines& lines, const JobControl& control) {
            const QString reason = Viewer::exportPdf(lines, title, fileName, control);
            return reason.isEmpty() ? reason
                                    : QDir::toNativeSeparators(fileName) + QStringLiteral(": ") + reason;
        },
        tr("Exported as %1.").arg(QFileInfo(fileName).fileName()), tr("The report is not exported."));
}

void MainWindow::print()
{
    const ReportTab* const tab = currentTab();
    if (tab == nullptr) {
        return;
    }
    const auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    const QString title = tab->document()->title();
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
