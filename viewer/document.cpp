#include "viewer/document.h"

#include "viewer/machineReport.h"
#include "viewer/reportReading.h"

#include "systeminfo/norvexSystemInfo.h"

#include <QFileInfo>

namespace norvex {
namespace Viewer {

using SystemInfo::CReport;

namespace {

/// A shorter text is looked through before it is first shown, and its private data replaced before anybody asks for it:
/// nobody notices the time.
const int shortText = 1 << 20;

ShownReport redactedReport(const CReport& report, const JobControl& control)
{
    ShownReport shown;
    shown.report = report.redacted(nullptr, [&control](int percent) {
        control.setProgress(percent);
        return !control.isCancelled();
    });
    shown.lines = std::make_shared<TextLines>(shown.report.text());
    shown.outline = std::make_shared<Outline>(
        Outline::of(shown.report, *shown.lines, [&control](int) { return !control.isCancelled(); }));
    return shown;
}

Identification identify(const QString& text, bool skipsBraced)
{
    Identification found;
    unsigned char processors = 0;
    unsigned short revision = 0;
    if (SystemInfo::extractAccessKeyValues(text, skipsBraced, found.macAddresses, processors, revision,
                                           found.errorMessage)) {
        found.errorMessage.clear();
        found.processors = processors;
        found.revision = revision;
    }
    return found;
}

} // namespace

/// What the work beside the window makes of a text, and what it found while it read it.
struct Document::Analysis
{
    ShownReport shown;
    Identification identifications[2];
    QString errorMessage;
    QStringList notices;

    void takeLines(const QString& text) { shown.lines = std::make_shared<TextLines>(text); }

    void analyse(const JobControl& control)
    {
        const QString text = shown.lines->text();
        shown.report = CReport::fromText(text);
        shown.outline = std::make_shared<Outline>(Outline::of(shown.report, *shown.lines, [&](int percent) {
            control.setProgress(percent);
            return !control.isCancelled();
        }));
        for (const bool skipsBraced : {false, true}) {
            identifications[skipsBraced ? 1 : 0] = identify(text, skipsBraced);
        }
    }
};

Document::Document(QObject* parent) : QObject(parent), origin_(Origin::ThisMachine) {}

Document::Document(QObject* parent, const QString& fileName)
    : QObject(parent), origin_(Origin::File), fileName_(QFileInfo(fileName).absoluteFilePath())
{}

Document::~Document() = default;

QString Document::title() const
{
    return origin_ == Origin::ThisMachine ? tr("This machine") : QFileInfo(fileName_).fileName();
}

void Document::setBusy(bool isBusy)
{
    busy_ = isBusy;
    emit changed();
}

void Document::load()
{
    cancel();
    if (original_.isNull()) {
        state_ = State::Loading;
    }
    if (origin_ == Origin::ThisMachine) {
        askMachine();
    } else {
        readFile();
    }
    setBusy(true);
}

void Document::cancel()
{
    if (!busy_) {
        return;
    }
    delete loading_;
    delete asking_;
    if (original_.isNull()) {
        fail(tr("You cancelled it."));
    } else {
        setBusy(false);
    }
}

void Document::fail(const QString& message)
{
    errorMessage_ = message;
    if (original_.isNull()) {
        state_ = State::Failed;
    } else {
        notices_ = QStringList(message);
    }
    setBusy(false);
}

void Document::readFile()
{
    const auto analysis = std::make_shared<Analysis>();
    const auto work = [analysis, fileName = fileName_](const JobControl& control) {
        const FileContent content = readReportFile(fileName, control);
        analysis->errorMessage = content.errorMessage;
        analysis->notices = content.notices;
        if (!content.errorMessage.isEmpty() || control.isCancelled()) {
            return;
        }
        analysis->takeLines(content.text);
        if (content.text.size() <= shortText) {
            analysis->analyse(control);
        }
    };
    loading_ = new Job(this, work, [this, analysis](bool isOutOfMemory) {
        if (isOutOfMemory) {
            fail(tr("There is not enough memory for this file."));
        } else if (!analysis->errorMessage.isEmpty()) {
            fail(analysis->errorMessage);
        } else {
            takeText(analysis);
        }
    });
    connect(loading_, &Job::progressed, this, &Document::progressed);
}

void Document::askMachine()
{
    asking_ = new MachineReport(this);
    connect(asking_, &MachineReport::progressed, this, &Document::progressed);
    connect(asking_, &MachineReport::finished, this, [this](const QString& text, const QStringList& notices) {
        asking_->deleteLater();
        asking_.clear();
        const auto analysis = std::make_shared<Analysis>();
        analysis->notices = notices;
        loading_ = new Job(
            this,
            [analysis, text](const JobControl& control) {
                analysis->takeLines(text);
                analysis->analyse(control);
            },
            [this, analysis](bool isOutOfMemory) {
                if (isOutOfMemory) {
                    fail(tr("There is not enough memory for the report."));
                } else {
                    takeText(analysis);
                }
            });
    });
    asking_->start();
}

void Document::takeText(const std::shared_ptr<Analysis>& analysis)
{
    delete analysing_;
    delete redacting_;
    original_ = analysis->shown;
    redacted_ = ShownReport();
    isRedactionImpossible_ = false;
    notices_ = analysis->notices;
    errorMessage_.clear();
    state_ = State::Ready;
    busy_ = false;
    emit textChanged();
    if (original_.outline == nullptr) {
        analyse();
        emit changed();
    } else {
        takeAnalysis(analysis);
    }
}

void Document::analyse()
{
    const auto analysis = std::make_shared<Analysis>();
    analysis->shown = original_;
    analysing_ = new Job(
        this, [analysis](const JobControl& control) { analysis->analyse(control); },
        [this, analysis](bool isOutOfMemory) {
            analysing_.clear();
            if (isOutOfMemory) {
                notices_ += tr("There is not enough memory to look through the text: nothing is set off.");
            } else {
                takeAnalysis(analysis);
            }
            emit changed();
        });
    connect(analysing_, &Job::progressed, this, &Document::progressed);
}

void Document::takeAnalysis(const std::shared_ptr<Analysis>& analysis)
{
    original_ = analysis->shown;
    if (!original_.outline->isComplete()) {
        notices_ += tr("Not everything is set off: the text is too long.");
    }
    identifications_[0] = analysis->identifications[0];
    identifications_[1] = analysis->identifications[1];
    if (original_.lines->text().size() <= shortText || !waiting_.isEmpty()) {
        startRedaction();
    }
    emit changed();
}

void Document::makeRedacted(QObject* context, const std::function<void(bool)>& done)
{
    if (!redacted_.isNull() || isRedactionImpossible_) {
        done(!isRedactionImpossible_);
        return;
    }
    waiting_.append({context, done});
    if (redacting_ == nullptr && original_.outline != nullptr) {
        startRedaction();
    }
}

void Document::cancelRedaction()
{
    waiting_.clear();
    delete redacting_;
}

void Document::startRedaction()
{
    const auto redacted = std::make_shared<ShownReport>();
    const auto work = [redacted, report = original_.report](const JobControl& control) {
        *redacted = redactedReport(report, control);
    };
    redacting_ = new Job(this, work, [this, redacted](bool isOutOfMemory) {
        redacting_.clear();
        takeRedacted(isOutOfMemory ? ShownReport() : *redacted);
    });
    connect(redacting_, &Job::progressed, this, &Document::redactionProgressed);
}

void Document::takeRedacted(const ShownReport& redacted)
{
    redacted_ = redacted;
    isRedactionImpossible_ = redacted.isNull();
    const QVector<Waiting> waiting = waiting_;
    waiting_.clear();
    for (const Waiting& each : waiting) {
        if (each.context != nullptr) {
            each.done(!redacted_.isNull());
        }
    }
    emit changed();
}

} // namespace Viewer
} // namespace norvex
