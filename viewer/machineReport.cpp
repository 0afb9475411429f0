#include "viewer/machineReport.h"

#include "viewer/recordings.h"

#include "systeminfo/norvexSystemInfo.h"

#include <QGuiApplication>
#include <QMutex>
#include <QMutexLocker>

#include <algorithm>
#include <cstring>

namespace norvex {
namespace Viewer {

using namespace SystemInfo;

namespace {

const char openGLSection[] = "openGL";

// The first lines of the halves, as every report has them.
const char macintoshBanner[] = "############ Macintosh specific section ###########";
const char qtBanner[] = "###### System informations retrieved using Qt #######";

bool isNamed(const SectionInfo& section, const char* name)
{
    return std::strcmp(section.name, name) == 0;
}

} // namespace

const char* const MachineReport::printerSection = "qtPrinterInfo";

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
    addProcess(printerSection, printerPatienceMs);
    // Drivers are loaded with an X server's first window, or never; the viewer starts without them.
    if (QGuiApplication::platformName() == QLatin1String("xcb")) {
        addProcess(openGLSection, openGLPatienceMs);
    }
    limit_.setSingleShot(true);
    connect(&step_, &QTimer::timeout, this, &MachineReport::makeNextOnGuiThread);
    connect(&limit_, &QTimer::timeout, this, [this] {
        delete job_;
        isAsking_ = false;
        finishIfDone();
    });
}

MachineReport::~MachineReport() = default;

void MachineReport::addProcess(const char* section, int mostMs)
{
    auto* const process = new SectionProcess(this, section, mostMs);
    processes_.append(process);
    connect(process, &SectionProcess::ended, this, [this, process](const QString& text) {
        for (int i = 0; i < sections().size(); ++i) {
            if (process->outcome() == SectionProcess::Outcome::Answered &&
                isNamed(sections().at(i), process->section())) {
                results_->set(i, text);
            }
        }
        takeProgress();
        finishIfDone();
    });
}

bool MachineReport::hasProcess(const SectionInfo& section) const
{
    return std::any_of(processes_.begin(), processes_.end(), [&section](const SectionProcess* process) {
        return isNamed(section, process->section());
    });
}

void MachineReport::start()
{
    for (SectionProcess* const process : processes_) {
        process->start();
    }
    startSections();
    step_.start(0);
}

void MachineReport::startSections()
{
    QVector<int> elsewhere;
    for (int i = 0; i < sections().size(); ++i) {
        if (!hasProcess(sections().at(i))) {
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
    const bool isWaiting = std::any_of(processes_.begin(), processes_.end(),
                                       [](const SectionProcess* process) { return !process->hasEnded(); });
    if (isAsking_ || isWaiting || step_.isActive() || isFinished_) {
        return;
    }
    isFinished_ = true;
    limit_.stop();
    const QVector<QString> texts = results_->texts();
    QStringList missing;
    for (int i = 0; i < texts.size(); ++i) {
        if (texts.at(i).isNull() && !hasProcess(sections().at(i))) {
            missing += QLatin1String(sections().at(i).name);
        }
    }
    for (const SectionProcess* const process : processes_) {
        if (process->outcome() != SectionProcess::Outcome::Answered) {
            notices_ += noticeOf(*process);
        }
    }
    if (!missing.isEmpty()) {
        notices_ +=
            tr("The system does not answer; the report lacks: %1.").arg(missing.join(QStringLiteral(", ")));
    }
    emit finished(assembled(), notices_);
}

QString MachineReport::noticeOf(const SectionProcess& process)
{
    const bool isSilent = process.outcome() == SectionProcess::Outcome::Silent;
    if (std::strcmp(process.section(), printerSection) == 0) {
        return isSilent ? tr("The print server does not answer: the report names no printer.")
                        : tr("The printers could not be asked: the report names none.");
    }
    return isSilent ? tr("The graphics driver does not answer: the report says nothing about OpenGL.")
                    : tr("The graphics driver could not be asked: the report says nothing about OpenGL.");
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

} // namespace Viewer
} // namespace norvex
