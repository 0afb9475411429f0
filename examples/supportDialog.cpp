// "Copy system information for a bug report": shows the report, copies it and saves it.

#include <systeminfo/norvexSystemInfo.h>

#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDatabase>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSaveFile>
#include <QScreen>
#include <QStandardPaths>
#include <QTimer>
#include <QVBoxLayout>

namespace {

class SupportDialog : public QDialog
{
public:
    SupportDialog();

private:
    void makeReport();
    void copy();
    void save();

    QString report_; // because the text field gives some characters back as blanks
    QPlainTextEdit* text_ = new QPlainTextEdit;
    QLabel* status_ = new QLabel;
    QPushButton* copyButton_ = new QPushButton(QStringLiteral("&Copy"));
    QPushButton* saveButton_ = new QPushButton(QStringLiteral("&Save…"));
};

SupportDialog::SupportDialog()
{
    setWindowTitle(QStringLiteral("System information"));
    auto* notice = new QLabel(QStringLiteral(
        "Read this before you send it: the report holds the environment variables of this application, "
        "serial numbers, hardware addresses, and the names of this computer, its user and its networks."));
    notice->setWordWrap(true);
    text_->setReadOnly(true);
    text_->setLineWrapMode(QPlainTextEdit::NoWrap);
    text_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));

    auto* closeButton = new QPushButton(QStringLiteral("C&lose"));
    connect(copyButton_, &QPushButton::clicked, this, &SupportDialog::copy);
    connect(saveButton_, &QPushButton::clicked, this, &SupportDialog::save);
    connect(closeButton, &QPushButton::clicked, this, &QDialog::reject);
    copyButton_->setDefault(true);
    copyButton_->setEnabled(false);
    saveButton_->setEnabled(false);

    auto* bottom = new QHBoxLayout;
    bottom->addWidget(status_, 1);
    bottom->addWidget(copyButton_);
    bottom->addWidget(saveButton_);
    bottom->addWidget(closeButton);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(notice);
    layout->addWidget(text_);
    layout->addLayout(bottom);
    status_->setTextFormat(Qt::PlainText); // a file name may look like HTML
    text_->setFocus();
    resize(QSize(900, 700).boundedTo(QGuiApplication::primaryScreen()->availableSize() * 0.85));

    // Later, so that the user sees the dialog while the system answers.
    status_->setText(QStringLiteral("Collecting the system information…"));
    QTimer::singleShot(100, this, [this] { makeReport(); });
}

void SupportDialog::makeReport()
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    report_ = norvex::SystemInfo::allInfos(false);
    text_->setPlainText(report_);
    QApplication::restoreOverrideCursor();
    copyButton_->setEnabled(true);
    saveButton_->setEnabled(true);
    status_->clear();
}

void SupportDialog::copy()
{
    QGuiApplication::clipboard()->setText(report_);
    status_->setText(QStringLiteral("Copied to the clipboard."));
}

void SupportDialog::save()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString name =
        QFileDialog::getSaveFileName(this, QString(), folder + QStringLiteral("/system-information.txt"));
    if (name.isEmpty()) {
        return;
    }
    const QByteArray report = report_.toUtf8();
    // Unbuffered, because only then QSaveFile notices a write that a full disk cuts short.
    QSaveFile file(name);
    if (file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write(report) == report.size() &&
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
