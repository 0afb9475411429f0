#include "tools/anonymise/anonymiser.h"
#include "tools/application.h"
#include "tools/exitStatus.h"
#include "tools/options.h"
#include "tools/output.h"
#include "tools/record/recorder.h"
#include "tools/record/recordingWriter.h"
#include "tools/reportWork.h"
#include "tools/sectionList.h"
#include "tools/silentFolders.h"

#include "systeminfo/norvexSystemInfo.h"

#include <QDir>
#include <QSysInfo>

#include <clocale>
#include <new>

namespace norvex::Tool {

namespace {

using Action = Options::Action;

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

int record(const Options& options, const Output& output, char* programName)
{
    QString errorMessage;
    if (!chooseMachine(options, errorMessage) || !avoidSilentFolders(false, errorMessage)) {
        printMessage(errorMessage);
        return exitFailure;
    }
    const Application application({}, programName);
    QByteArray text;
    inTrueEnvironment([&] { text = recording(options); });
    return output.write(text);
}

int run(const Options& options, Output& output, char* programName)
{
    const bool records = options.action == Action::Record;
    if (!output.open(records ? options.recordFile : options.outputFile)) {
        return options.action == Action::Compare ? exitTrouble : exitFailure;
    }
    switch (options.action) {
    case Action::Record: return record(options, output, programName);
    case Action::ShowHelp: return output.write(helpText().toUtf8());
    case Action::ShowVersion:
        return output.write("norvex-systeminfo " + SystemInfo::libVersionString().toUtf8() + '\n');
    case Action::ListSections: {
        const QString list = output.isTerminal() ? describedSectionList(Painter(true)) : sectionList();
        return output.write(list.toUtf8());
    }
    default: return printReports(options, output, programName);
    }
}

} // namespace

} // namespace norvex::Tool

int main(int argc, char* argv[])
{
    using namespace norvex::Tool;
    // As Qt does later, but before the first file name is decoded.
    setlocale(LC_ALL, "");
    Output output;
    std::optional<Options> options;
    try {
        options = parseOptions(argc, argv);
        return options ? run(*options, output, argv[0]) : exitUsage;
    } catch (const std::bad_alloc&) {
        printMessage(QStringLiteral("out of memory"));
        return options && options->action == Options::Action::Compare ? exitTrouble : exitFailure;
    }
}
