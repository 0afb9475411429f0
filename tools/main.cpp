#include "tools/anonymise/anonymiser.h"
#include "tools/exitStatus.h"
#include "tools/guiPlatform.h"
#include "tools/identify.h"
#include "tools/options.h"
#include "tools/output.h"
#include "tools/printers.h"
#include "tools/record/recorder.h"
#include "tools/record/recordingWriter.h"
#include "tools/recordings.h"
#include "tools/sectionList.h"
#include "tools/sections.h"

#include "systeminfo/norvexSystemInfo.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QSysInfo>

#include <algorithm>
#include <clocale>
#include <memory>
#include <new>
#include <unistd.h>

namespace norvex::Tool {

namespace {

using Action = Options::Action;
using SystemInfo::SectionApplication;
using SystemInfo::SectionInfo;

SectionApplication neededApplication(const Options& options)
{
    if (options.action != Action::PrintReport) {
        return SectionApplication::None;
    }
    if (options.sections.empty()) {
        return SectionApplication::Widgets;
    }
    SectionApplication needed = SectionApplication::None;
    for (const SectionInfo* section : options.sections) {
        needed = std::max(needed, section->application);
    }
    return needed;
}

bool asksFor(const Options& options, const char* section)
{
    return std::count(options.sections.begin(), options.sections.end(), findSection(section)) > 0;
}

bool usesOpenGL(const Options& options)
{
    if (options.sections.empty()) {
        return options.action == Action::PrintReport && !options.skipOpenGL;
    }
    return asksFor(options, "openGL");
}

bool usesPrinters(const Options& options)
{
    return options.action == Action::PrintReport &&
           (options.sections.empty() || asksFor(options, "qtPrinterInfo"));
}

/// The application object that the work needs, with the arguments that it refers to. It does not see the program's own
/// arguments: Qt would take its options out of them.
class Application
{
public:
    Application(const Options& options, char* programName)
        : arguments_{programName, nullptr, nullptr, nullptr}
    {
        QCoreApplication::setApplicationName(QStringLiteral("norvex-systeminfo"));
        QCoreApplication::setApplicationVersion(SystemInfo::libVersionString());
        const SectionApplication needed = neededApplication(options);
        if (needed == SectionApplication::None) {
            application_ = std::make_unique<QCoreApplication>(count_, arguments_);
            return;
        }
        GuiPlatform platform = chooseGuiPlatform(usesOpenGL(options));
        if (!platform.notice.isEmpty()) {
            printMessage(platform.notice);
        }
        platformName_ = platform.name;
        if (!platformName_.isEmpty()) {
            arguments_[count_++] = platformOption_;
            arguments_[count_++] = platformName_.data();
        }
        if (needed == SectionApplication::Gui) {
            application_ = std::make_unique<QGuiApplication>(count_, arguments_);
        } else {
            application_ = std::make_unique<QApplication>(count_, arguments_);
        }
    }

private:
    int count_ = 1;
    char platformOption_[10] = "-platform";
    QByteArray platformName_;
    char* arguments_[4];
    std::unique_ptr<QCoreApplication> application_;
};

/// Descriptions are for a person who reads them on a terminal.
ListStyle listStyle(const Options& options)
{
    const bool isRead = !options.outputFile && isatty(STDOUT_FILENO) == 1;
    if (!isRead) {
        return ListStyle::Names;
    }
    const QByteArray terminal = qgetenv("TERM");
    const bool hasBold = qEnvironmentVariableIsEmpty("NO_COLOR") && !terminal.isEmpty() && terminal != "dumb";
    return hasBold ? ListStyle::BoldNames : ListStyle::Descriptions;
}

QString report(const Options& options)
{
    if (options.sections.empty()) {
        return wholeReport(options.skipOpenGL);
    }
    QString text;
    for (const SectionInfo* section : options.sections) {
        text += section->text();
    }
    return text;
}

bool identification(const Options& options, QByteArray& text, QString& errorMessage)
{
    QString source;
    if (!options.reportFile) {
        source = identifyingReport();
    } else if (!readReport(*options.reportFile, source, errorMessage)) {
        return false;
    }
    if (!identify(source, options.skipBraced, options.asJson, text, errorMessage)) {
        if (options.reportFile) {
            errorMessage.prepend(shownName(*options.reportFile) + QStringLiteral(": "));
        }
        return false;
    }
    return true;
}

QByteArray recording(const Options& options)
{
    RecordedValue machine = recordMachine();
    if (options.anonymous) {
        // The host of a recording is another one, and so is its user.
        anonymise(machine, options.recording ? QString() : QSysInfo::machineHostName(),
                  options.recording ? QString() : QDir::home().dirName());
    }
    return recordingText(machine);
}

/// Makes what the options ask for. An application object exists.
bool produce(const Options& options, QByteArray& text, QString& errorMessage)
{
    if (options.action == Action::Identify) {
        return identification(options, text, errorMessage);
    }
    if (options.action == Action::Record) {
        text = recording(options);
        return true;
    }
    text = report(options).toUtf8();
    return true;
}

int fail(const QString& errorMessage)
{
    printMessage(errorMessage);
    return exitFailure;
}

int run(const Options& options, Output& output, char* programName)
{
    if (!output.open(options.action == Action::Record ? options.recordFile : options.outputFile)) {
        return exitFailure;
    }
    QByteArray text;
    QString errorMessage;
    std::unique_ptr<Application> application;
    if (options.action == Action::ShowHelp) {
        text = helpText().toUtf8();
    } else if (options.action == Action::ShowVersion) {
        text = "norvex-systeminfo " + SystemInfo::libVersionString().toUtf8() + '\n';
    } else if (options.action == Action::ListSections) {
        text = sectionList(listStyle(options)).toUtf8();
    } else {
        if (options.recording && !answerFromRecording(QFile::decodeName(*options.recording), errorMessage)) {
            return fail(errorMessage);
        }
        if (usesPrinters(options)) {
            startToAskForPrinters();
        }
        application = std::make_unique<Application>(options, programName);
        if (!produce(options, text, errorMessage)) {
            return fail(errorMessage);
        }
    }
    return output.write(text);
}

} // namespace

} // namespace norvex::Tool

int main(int argc, char* argv[])
{
    using namespace norvex::Tool;
    // As Qt does later, but before the first file name is decoded.
    setlocale(LC_ALL, "");
    Output output;
    try {
        const std::optional<Options> options = parseOptions(argc, argv);
        return options ? run(*options, output, argv[0]) : exitUsage;
    } catch (const std::bad_alloc&) {
        printMessage(QStringLiteral("out of memory"));
        return exitFailure;
    }
}
