// "Copy system information for a bug report": shows the report, copies and saves it.

#include <systeminfo/norvexSystemInfo.h>

#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFontDatabase>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSaveFile>
#include <QVBoxLayout>

static void save(QWidget* parent, const QString& report)
{
    const QString name = QFileDialog::getSaveFileName(parent, QString(), QStringLiteral("system.txt"));
    if (name.isEmpty()) {
        return;
    }
    QSaveFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(report.toUtf8()) < 0 || !file.commit()) {
        QMessageBox::warning(parent, QString(), name + QStringLiteral(": ") + file.errorString());
    }
}

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    const QString report = norvex::SystemInfo::allInfos(false);

    QDialog dialog;
    dialog.setWindowTitle(QStringLiteral("System information"));
    auto* notice = new QLabel(QStringLiteral(
        "Read this before you send it: the report holds the environment variables of this application, "
        "serial\n"
        "numbers, hardware addresses, and the names of this computer, its user and its networks."));
    auto* text = new QPlainTextEdit(report);
    text->setReadOnly(true);
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    QPushButton* copyButton = buttons->addButton(QStringLiteral("Copy"), QDialogButtonBox::ActionRole);
    QPushButton* saveButton = buttons->addButton(QStringLiteral("Save…"), QDialogButtonBox::ActionRole);
    QObject::connect(copyButton, &QPushButton::clicked,
                     [&] { QGuiApplication::clipboard()->setText(report); });
    QObject::connect(saveButton, &QPushButton::clicked, [&] { save(&dialog, report); });
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);

    auto* layout = new QVBoxLayout(&dialog);
    for (QWidget* widget :
         {static_cast<QWidget*>(notice), static_cast<QWidget*>(text), static_cast<QWidget*>(buttons)})
        layout->addWidget(widget);
    dialog.resize(900, 700);
    return dialog.exec();
}
