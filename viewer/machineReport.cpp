#include "viewer/machineReport.h"

#include "viewer/recordings.h"

#include "systeminfo/norvexSystemInfo.h"

#include <QCoreApplication>
#include <QMutex>
#include <QMutexLocker>

#include <cstdio>
#include <cstring>

namespace norvex {
namespace Viewer {

using namespace SystemInfo;

namespace {

const char sectionOption[] = "--print-section";
const char printerSection[] = "qtPrinterInfo";

// The first lines of the halves, as every report has them.
const char macintoshBanner[] = "############ Macintosh specific section ###########";
const char qtBanner[] = "###### System informations retrieved using Qt #######";

const SectionInfo* sectionNamed(const char* name)
{
    for (const SectionInfo& section : sections()) {
        if (std::strcmp(section.name, name) == 0) {
            return &section;
        }
    }
    return nullptr;
}

bool isPrinters(const SectionInfo& section)
{
    return std::strcmp(section.name, printerSection) == 0;
}

} // namespace

/// The sections that are made, by their place in the table; two threads fill them in.
class MachineReport::Results
{
public:
    Results() : texts_(sections().size()) {}

    void set(int index, const QString& text)
    {
        const QMutexLocker lock(&mutex_);
        // A section that says nothing is there all the same.
        texts_[index] = text.isNull() ? QString(QLatin1String("")) : text;
    }

    QVector<QString> texts() const
    {
        const QMutexLocker lock(&mutex_);
        return texts_;
    }

private:
    mutable QMutex mutex_;
    QVector<QString> texts_; // null while a section is not made
};

MachineReport::MachineReport(QObject* parent) : QObject(parent), results_(std::make_shared<Results>())
{
    printerLimit_.setSingleShot(true);
    limit_.setSingleShot(true);
    connect(&step_, &QTimer::timeout, this, &MachineReport::makeNextOnGuiThread);
    connect(&printerLimit_, &QTimer::timeout, this,
            [this] { endPrinters(tr("The print server does not answer: the report names no printer.")); });
    connect(&limit_, &QTimer::timeout, this, [this] {
        delete job_;
        isAsking_ = false;
        finishIfDone();
    });
}

MachineReport::~MachineReport()
{
    printers_.disconnect(this);
    if (printers_.state() != QProcess::NotRunning) {
        printers_.kill();
        printers_.waitForFinished(1000);
    }
}

void MachineReport::start()
{
    startPrinters();
    startSections();
    step_.start(0);
}

void MachineReport::startSections()
{
    QVector<int> elsewhere;
    for (int i = 0; i < sections().size(); ++i) {
        if (!isPrinters(sections().at(i))) {
            (sections().at(i).thread == SectionThread::Any ? elsewhere : guiSections_).append(i);
        }
    }
    const auto work = [results = results_, elsewhere](const JobControl& control) {
        askThisMachine([&] {
            for (int i = 0; i < elsewhere.size() && !control.isCancelled(); ++i) {
                results->set(elsewhere.at(i), sections().at(elsewhere.at(i)).text());
                control.setProgress(i + 1);
            }
        });
    };
    isAsking_ = true;
    job_ = new Job(this, work, [this](bool isOutOfMemory) {
        if (isOutOfMemory) {
            notices_ += tr("There was not enough memory for the whole report.");
        }
        isAsking_ = false;
        finishIfDone();
    });
    connect(job_, &Job::progressed, this, &MachineReport::takeProgress);
    limit_.start(patienceMs);
}

void MachineReport::startPrinters()
{
    isAskingPrinters_ = true;
    connect(&printers_, static_cast<void (QProcess::*)(int, QProcess::ExitStatus)>(&QProcess::finished), this,
            [this](int exitCode, QProcess::ExitStatus status) {
                const bool isAnswered = status == QProcess::NormalExit && exitCode == 0;
                if (isAnswered) {
                    for (int i = 0; i < sections().size(); ++i) {
                        if (isPrinters(sections().at(i))) {
                            results_->set(i, QString::fromUtf8(printers_.readAllStandardOutput()));
                        }
                    }
                }
                endPrinters(isAnswered ? QString()
                                       : tr("The printers could not be asked: the report names none."));
            });
    connect(&printers_, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            endPrinters(tr("No process can be started to ask for the printers: the report names none."));
        }
    });
    printers_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    printerLimit_.start(printerPatienceMs);
    printers_.start(QCoreApplication::applicationFilePath(),
                    {QLatin1String(sectionOption), QLatin1String(printerSection)});
}

void MachineReport::endPrinters(const QString& reason)
{
    printerLimit_.stop();
    if (!isAskingPrinters_) {
        return;
    }
    isAskingPrinters_ = false;
    if (!reason.isEmpty()) {
        notices_ += reason;
        printers_.kill();
    }
    takeProgress();
    finishIfDone();
}

void MachineReport::makeNextOnGuiThread()
{
    if (guiSections_.isEmpty()) {
        step_.stop();
        finishIfDone();
        return;
    }
    const int section = guiSections_.takeFirst();
    results_->set(section, sections().at(section).text());
    takeProgress();
}

void MachineReport::takeProgress()
{
    const QVector<QString> texts = results_->texts();
    int made = 0;
    for (const QString& text : texts) {
        made += text.isNull() ? 0 : 1;
    }
    emit progressed(100 * made / texts.size());
}

void MachineReport::finishIfDone()
{
    if (isAsking_ || isAskingPrinters_ || step_.isActive() || isFinished_) {
        return;
    }
    isFinished_ = true;
    limit_.stop();
    const QVector<QString> texts = results_->texts();
    QStringList missing;
    for (int i = 0; i < texts.size(); ++i) {
        if (texts.at(i).isNull() && !isPrinters(sections().at(i))) {
            missing += QLatin1String(sections().at(i).name);
        }
    }
    if (!missing.isEmpty()) {
        notices_ +=
            tr("The system does not answer; the report lacks: %1.").arg(missing.join(QStringLiteral(", ")));
    }
    emit finished(assembled(), notices_);
}

QString MachineReport::assembled() const
{
    const QVector<QString> texts = results_->texts();
    QString report;
    const SectionInfo* previous = nullptr;
    for (int i = 0; i < texts.size(); ++i) {
        const SectionInfo& section = sections().at(i);
        const bool beginsHalf = previous == nullptr || previous->half != section.half;
        if (previous != nullptr && (beginsHalf || previous->group != section.group)) {
            report += separator();
        }
        if (beginsHalf) {
            report +=
                QLatin1String(section.half == ReportHalf::Macintosh ? macintoshBanner : qtBanner) + sNewLine;
        }
        report += texts.at(i);
        previous = &section;
    }
    return report + separator();
}

bool answersSection(int argc, char* argv[])
{
    const int arguments = 3;
    if (argc != arguments || std::strcmp(argv[1], sectionOption) != 0) {
        return false;
    }
    const QCoreApplication application(argc, argv);
    if (const SectionInfo* const section = sectionNamed(argv[2])) {
        const QByteArray text = section->text().toUtf8();
        std::fwrite(text.constData(), 1, static_cast<size_t>(text.size()), stdout);
    }
    return true;
}

} // namespace Viewer
} // namespace norvex
