#include "tools/reportWork.h"

#include "tools/application.h"
#include "tools/differences.h"
#include "tools/exitStatus.h"
#include "tools/identify.h"
#include "tools/printers.h"
#include "tools/reading.h"
#include "tools/recordings.h"
#include "tools/redaction.h"
#include "tools/reportForms.h"
#include "tools/sections.h"
#include "tools/selection.h"
#include "tools/silentFolders.h"
#include "tools/summary.h"

#include "systeminfo/norvexSystemInfo.h"

#include <QFile>

#include <algorithm>
#include <functional>
#include <memory>

namespace norvex::Tool {

using SystemInfo::CReport;
using SystemInfo::SectionInfo;

namespace {

using Action = Options::Action;
using Form = Options::Form;

/// While this lives, nothing is printed about sections that nobody asked for.
class NoWarnings
{
public:
    NoWarnings()
        : before_(qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {}))
    {}
    NoWarnings(const NoWarnings&) = delete;
    NoWarnings& operator=(const NoWarnings&) = delete;
    ~NoWarnings() { qInstallMessageHandler(before_); }

private:
    const QtMessageHandler before_;
};

class ReportWork
{
public:
    ReportWork(const Options& options, char* programName) : options_(options), programName_(programName) {}

    int run(const Output& output);

private:
    bool isFileAsItIs() const;
    bool isMachineTextAsItIs() const;
    void collectPrivateValues();
    bool readReport(const std::optional<QByteArray>& fileName);
    bool findSelected();
    bool startMachine();
    QVector<SectionInfo> askedSections() const;
    QVector<SectionInfo> otherSections() const;
    QString machineReport() const;
    QString machineText() const;
    bool makeOutput(QByteArray& bytes);
    bool makeSummary(QByteArray& bytes);
    bool makeIdentification(QByteArray& bytes);
    bool failForFile();
    CReport redactedSelection(const CReport& report);
    int writeDifferences(const Output& output);
    int fail() const;

    const Options& options_;
    char* const programName_;
    Selection selection_;
    QVector<CReport> reports_; // to compare: the old one first
    SystemInfo::CRedactor redactor_;
    std::unique_ptr<Application> application_;
    QString errorMessage_;
};

int ReportWork::fail() const
{
    printMessage(errorMessage_);
    return options_.action == Action::Compare ? exitTrouble : exitFailure;
}

int ReportWork::run(const Output& output)
{
    QByteArray bytes;
    if (isFileAsItIs()) {
        return readFile(*options_.reportFile, bytes, errorMessage_) ? output.write(bytes) : fail();
    }
    if (!readReport(options_.reportFile) || !readReport(options_.oldFile) || !readReport(options_.newFile)) {
        return fail();
    }
    const std::optional<Selection> selection = Selection::make(options_, reports_, errorMessage_);
    if (!selection) {
        printUsageError(errorMessage_);
        return exitUsage;
    }
    selection_ = *selection;
    if (!findSelected() || !startMachine()) {
        return fail();
    }
    if (isMachineTextAsItIs()) {
        return output.write(toBytes(machineText()));
    }
    if (options_.asksMachine()) {
        reports_.append(CReport::fromText(machineReport()));
    }
    if (options_.redact) {
        collectPrivateValues();
    }
    if (options_.action == Action::Compare) {
        return writeDifferences(output);
    }
    return makeOutput(bytes) ? output.write(bytes) : fail();
}

/// From whole reports: what is left out may say what is private in the rest.
void ReportWork::collectPrivateValues()
{
    for (const CReport& report : reports_) {
        redactor_.collect(report);
    }
    if (options_.asksMachine()) {
        const NoWarnings noWarnings;
        redactor_.collect(CReport::fromText(reportOf(otherSections())));
    }
}

/// Whether what is printed is just what is in the file, be that a report or not.
bool ReportWork::isFileAsItIs() const
{
    return options_.action == Action::PrintReport && options_.reportFile && options_.form == Form::Text &&
           options_.sections.empty() && options_.without.empty() && !options_.redact;
}

/// Whether what is printed is just what the sections say, which then need not be found in a text.
bool ReportWork::isMachineTextAsItIs() const
{
    return options_.action == Action::PrintReport && options_.asksMachine() && options_.form == Form::Text &&
           !options_.redact;
}

bool ReportWork::readReport(const std::optional<QByteArray>& fileName)
{
    QByteArray bytes;
    CReport report;
    if (!fileName) {
        return true;
    }
    if (!readFile(*fileName, bytes, errorMessage_) || !parseReport(*fileName, bytes, report, errorMessage_)) {
        return false;
    }
    reports_.append(report);
    return true;
}

/// This machine has all sections, even where they say nothing.
bool ReportWork::findSelected()
{
    const QStringList missing = options_.asksMachine() ? QStringList() : selection_.missingIn(reports_);
    if (!missing.isEmpty()) {
        const QString whose = options_.action == Action::Compare
                                  ? QStringLiteral("neither report has")
                                  : shownName(*options_.reportFile) + QStringLiteral(" does not have");
        errorMessage_ =
            QStringLiteral("%1 the section '%2'").arg(whose, missing.join(QStringLiteral("', '")));
    }
    return missing.isEmpty();
}

/// Prepares the machine and this process for the sections that are asked for.
bool ReportWork::startMachine()
{
    const bool asksSections = options_.asksMachine() && options_.action != Action::Identify;
    const QVector<SectionInfo> sections = asksSections ? askedSections() : QVector<SectionInfo>();
    if (!chooseMachine(options_, errorMessage_)) {
        return false;
    }
    const bool asksPrinters = std::any_of(sections.begin(), sections.end(), [](const SectionInfo& section) {
        return section.text == printerSection;
    });
    const bool usesGui = std::any_of(sections.begin(), sections.end(), [](const SectionInfo& section) {
        return section.application >= SystemInfo::SectionApplication::Gui;
    });
    if (!sections.isEmpty() && !avoidSilentFolders(asksPrinters || usesGui, errorMessage_)) {
        return false;
    }
    if (asksPrinters) {
        startToAskForPrinters();
    }
    application_ = std::make_unique<Application>(sections, programName_);
    return true;
}

QVector<SectionInfo> ReportWork::askedSections() const
{
    QVector<SectionInfo> sections = selection_.wantedSections();
    if (options_.form == Form::Summary) {
        sections.erase(std::remove_if(sections.begin(), sections.end(),
                                      [](const SectionInfo& section) {
                                          return !summarySections().contains(QLatin1String(section.name));
                                      }),
                       sections.end());
    }
    return sections;
}

/// The sections that nobody asked for, but that may say what is private in the others. Not those that --without names,
/// because they may be what does not answer; but user and host are known without waiting.
QVector<SectionInfo> ReportWork::otherSections() const
{
    const QVector<SectionInfo> asked = askedSections();
    QVector<SectionInfo> others = reportSections();
    const auto isNeeded = [&](const SectionInfo& section) {
        const bool isAsked = std::any_of(asked.begin(), asked.end(), [&section](const SectionInfo& each) {
            return qstrcmp(each.name, section.name) == 0;
        });
        const QLatin1String name(section.name);
        const bool isKnownAtOnce =
            name == QLatin1String("qtSystemEnvironment") || name == QLatin1String("qtHostInfo");
        return !isAsked && section.thread == SystemInfo::SectionThread::Any &&
               (isKnownAtOnce || !selection_.leavesOut(section));
    };
    others.erase(std::remove_if(others.begin(), others.end(), std::not_fn(isNeeded)), others.end());
    return others;
}

QString ReportWork::machineReport() const
{
    return options_.action == Action::Identify ? identifyingReport() : reportOf(askedSections());
}

QString ReportWork::machineText() const
{
    const QVector<SectionInfo> sections = askedSections();
    if (!selection_.isOrdered()) {
        return reportOf(sections);
    }
    QString text;
    for (const QString& name : selection_.sections()) {
        if (name == QLatin1String(macintoshName)) {
            text += macintoshHalf(sections);
            continue;
        }
        const auto section = std::find_if(sections.begin(), sections.end(), [&name](const SectionInfo& each) {
            return name == QLatin1String(each.name);
        });
        text += section == sections.end() ? QString() : section->text();
    }
    return text;
}

bool ReportWork::makeOutput(QByteArray& bytes)
{
    const CReport& report = reports_.first();
    if (options_.action == Action::Identify) {
        return makeIdentification(bytes);
    }
    if (options_.form == Form::Summary) {
        return makeSummary(bytes);
    }
    SelectedReport selected = selectedSections(report, selection_);
    if (options_.redact) {
        if (!redact(selected, redactor_, errorMessage_)) {
            return failForFile();
        }
        printUnjudged(selected);
    }
    if (options_.form == Form::Json) {
        return jsonOf(selected, bytes, errorMessage_) || failForFile();
    }
    bytes = toBytes(textOf(selected));
    return true;
}

bool ReportWork::makeSummary(QByteArray& bytes)
{
    bytes = toBytes(summaryOf(redactedSelection(reports_.first()), options_.recording.has_value()));
    if (bytes.isEmpty()) {
        const QString source =
            options_.reportFile ? shownName(*options_.reportFile) : QStringLiteral("the selection");
        errorMessage_ = QStringLiteral("%1 has nothing that a summary tells").arg(source);
    }
    return !bytes.isEmpty();
}

/// The selected sections as a report, without private values if that is wanted.
CReport ReportWork::redactedSelection(const CReport& report)
{
    const CReport selected = selectedReport(report, selection_);
    return options_.redact ? selected.redacted(&redactor_) : selected;
}

bool ReportWork::makeIdentification(QByteArray& bytes)
{
    const QString report = selectedReport(reports_.first(), selection_).text();
    return identify(report, options_.skipBraced, options_.form == Form::Json, bytes, errorMessage_) ||
           failForFile();
}

/// Names the file that a reason is about.
/// @return false, as the functions do that fail
bool ReportWork::failForFile()
{
    if (options_.reportFile) {
        errorMessage_.prepend(shownName(*options_.reportFile) + QStringLiteral(": "));
    }
    return false;
}

int ReportWork::writeDifferences(const Output& output)
{
    const CReport older = redactedSelection(reports_.first());
    const CReport newer = redactedSelection(reports_.last());
    const Differences differences = differencesBetween(older, newer, options_.withVolatile);
    if (options_.redact) {
        printUnjudged({older, newer}, differences);
    }
    const QByteArray bytes = options_.form == Form::Json
                                 ? differencesJson(differences)
                                 : toBytes(differencesText(differences, Painter(output.isTerminal())));
    if (output.write(bytes) != exitSuccess) {
        return exitTrouble;
    }
    return differences.isEmpty() ? exitSuccess : exitDifferent;
}

} // namespace

int printReports(const Options& options, const Output& output, char* programName)
{
    return ReportWork(options, programName).run(output);
}

bool chooseMachine(const Options& options, QString& errorMessage)
{
    return !options.recording || answerFromRecording(QFile::decodeName(*options.recording), errorMessage);
}

} // namespace norvex::Tool
