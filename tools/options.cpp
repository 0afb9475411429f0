#include "tools/options.h"

#include "tools/output.h"
#include "tools/recordings.h"

#include <QFile>
#include <QStringList>

#include <algorithm>
#include <getopt.h>
#include <iterator>

namespace norvex::Tool {

namespace {

/// An option with a letter has it as its number.
enum OptionId {
    noOption = 0,
    helpOption = 'h',
    outputOption = 'o',
    versionOption = 'v',
    readOption = 256,
    machineOption,
    sectionOption,
    withoutOption,
    noOpenGLOption,
    listSectionsOption,
    jsonOption,
    summaryOption,
    redactOption,
    compareOption,
    allOption,
    identifyOption,
    skipBracedOption,
    recordOption,
    anonymousOption
};

struct OptionRow
{
    OptionId id;
    const char* name;
    const char* argument; // null: takes none; in brackets: optional
    const char* help;
};

const OptionRow optionRows[] = {
    {readOption, "read", "FILE",
     "take the report in FILE (-: standard input) instead of making\n"
     "one: text, or what --json printed. Alone it prints the file\n"
     "as it is"},
    {machineOption, "machine", "FILE",
     "let the Macintosh section describe the machine that was\n"
     "recorded in FILE; all others describe the machine at hand"},
    {sectionOption, "section", "NAME",
     "print this section only; given several times, the sections\n"
     "in that order, with nothing between them. NAME is a section,\n"
     "in any letter case, a topic (cpu, disks, network ...) for\n"
     "all its sections, or the beginning of one section's name"},
    {withoutOption, "without", "NAME", "leave this section out; may be given several times"},
    {noOpenGLOption, "no-opengl", nullptr, "leave out the OpenGL section, as --without openGL does"},
    {listSectionsOption, "list-sections", nullptr,
     "print the names of all sections; on a terminal also what\n"
     "they hold"},
    {jsonOption, "json", nullptr, "print JSON: the report, the differences or what identifies"},
    {summaryOption, "summary", nullptr, "print a few lines for a mail or a chat"},
    {redactOption, "redact", nullptr,
     "replace what is private: serial numbers, names, addresses,\n"
     "the environment; a message names what to look through"},
    {compareOption, "compare", "OLD [NEW]",
     "print what differs between the reports in two files (-:\n"
     "standard input), without NEW between OLD and this machine"},
    {allOption, "all", nullptr, "with --compare: show also what always differs, such as dates"},
    {identifyOption, "identify", "[FILE]",
     "print what identifies a machine: a line for every MAC address,\n"
     "the number of processors, the processor revision. They are\n"
     "read from the report in FILE (-: from standard input), without\n"
     "FILE asked of this machine"},
    {skipBracedOption, "skip-braced", nullptr,
     "with --identify: ignore network interfaces with a name\n"
     "in braces"},
    {outputOption, "output", "FILE",
     "write to FILE, whole or not at all, instead of to standard\n"
     "output (-); a file that exists is replaced; /dev/stderr or\n"
     "/dev/fd/3 is that descriptor"},
    {recordOption, "record", "FILE",
     "write to FILE (-: to standard output) what the machine\n"
     "answers to the queries behind the Macintosh section, and\n"
     "no report"},
    {anonymousOption, "anonymous", nullptr,
     "with --record: replace serial numbers, UUIDs, the names of\n"
     "networks, hosts, users, devices and volumes, and the device\n"
     "half of hardware addresses"},
    {helpOption, "help", nullptr, "print this help"},
    {versionOption, "version", nullptr, "print the version"},
};

/// Something that the tool does, the option that asks for it, and all that goes with it.
struct ModeRow
{
    Options::Action action;
    OptionId option; // none for the report
    OptionId others[9];
};

const ModeRow modeRows[] = {
    {Options::Action::PrintReport,
     noOption,
     {readOption, machineOption, sectionOption, withoutOption, noOpenGLOption, jsonOption, summaryOption,
      redactOption, outputOption}},
    {Options::Action::Compare,
     compareOption,
     {sectionOption, withoutOption, noOpenGLOption, jsonOption, redactOption, allOption, outputOption}},
    {Options::Action::Identify,
     identifyOption,
     {readOption, withoutOption, noOpenGLOption, jsonOption, skipBracedOption, outputOption}},
    {Options::Action::ListSections, listSectionsOption, {outputOption}},
    {Options::Action::Record, recordOption, {machineOption, anonymousOption}},
};

/// Those that go with the same mode, but not with each other.
const OptionId rivals[][2] = {{readOption, machineOption}, {jsonOption, summaryOption}};

bool isOffered(const OptionRow& row)
{
    return row.id != machineOption || supportsRecordings();
}

bool hasLetter(const OptionRow& row)
{
    return row.id < readOption;
}

QString shownOption(OptionId id)
{
    const auto* row = std::find_if(std::begin(optionRows), std::end(optionRows),
                                   [id](const OptionRow& each) { return each.id == id; });
    return QStringLiteral("--") + QLatin1String(row->name);
}

bool goesWith(const ModeRow& mode, OptionId id)
{
    return id == mode.option ||
           std::find(std::begin(mode.others), std::end(mode.others), id) != std::end(mode.others);
}

/// Takes one option after the other, then judges them together.
class CommandLine
{
public:
    bool accept(OptionId id, const char* argument);
    bool acceptFile(const char* fileName);
    bool acceptCombination();

    const Options& options() const { return options_; }
    const QString& error() const { return error_; }

private:
    bool fail(const QString& error);
    bool failAsExclusive(OptionId first, OptionId second);
    bool acceptFurtherOption(OptionId id);
    bool acceptOnce(std::optional<QByteArray>& value, OptionId option, const char* argument);
    bool isGiven(OptionId id) const;
    bool findMode();
    bool acceptInput();

    Options options_;
    std::vector<OptionId> given_;
    const ModeRow* mode_ = modeRows;
    std::optional<QByteArray> identifiedFile_;
    QString error_;
};

bool CommandLine::fail(const QString& error)
{
    error_ = error;
    return false;
}

bool CommandLine::failAsExclusive(OptionId first, OptionId second)
{
    return fail(QStringLiteral("%1 and %2 exclude each other").arg(shownOption(first), shownOption(second)));
}

bool CommandLine::acceptOnce(std::optional<QByteArray>& value, OptionId option, const char* argument)
{
    if (value) {
        return fail(QStringLiteral("more than one file for %1").arg(shownOption(option)));
    }
    value = argument;
    return !value->isEmpty() ||
           fail(QStringLiteral("the name of the file for %1 is empty").arg(shownOption(option)));
}

bool CommandLine::acceptFile(const char* fileName)
{
    if (isGiven(identifyOption)) {
        return acceptOnce(identifiedFile_, identifyOption, fileName);
    }
    if (!isGiven(compareOption)) {
        return fail(QStringLiteral("unexpected argument '%1'").arg(QFile::decodeName(fileName)));
    }
    return options_.newFile ? fail(QStringLiteral("more than two files for --compare"))
                            : acceptOnce(options_.newFile, compareOption, fileName);
}

bool CommandLine::accept(OptionId id, const char* argument)
{
    given_.push_back(id);
    const auto section = [&] {
        const QString name = QFile::decodeName(argument);
        return GivenSection{shownOption(id) + QLatin1Char(' ') + name, name};
    };
    switch (id) {
    case readOption: return acceptOnce(options_.reportFile, id, argument);
    case machineOption: return acceptOnce(options_.recording, id, argument);
    case compareOption: return acceptOnce(options_.oldFile, id, argument);
    case outputOption: return acceptOnce(options_.outputFile, id, argument);
    case recordOption: return acceptOnce(options_.recordFile, id, argument);
    case identifyOption: return argument == nullptr || acceptOnce(identifiedFile_, id, argument);
    case sectionOption: options_.sections.push_back(section()); break;
    case withoutOption: options_.without.push_back(section()); break;
    default: return acceptFurtherOption(id);
    }
    return true;
}

/// An option without an argument.
bool CommandLine::acceptFurtherOption(OptionId id)
{
    switch (id) {
    case noOpenGLOption: options_.without.push_back({shownOption(id), QStringLiteral("openGL")}); break;
    case jsonOption: options_.form = Options::Form::Json; break;
    case summaryOption: options_.form = Options::Form::Summary; break;
    case redactOption: options_.redact = true; break;
    case allOption: options_.withVolatile = true; break;
    case skipBracedOption: options_.skipBraced = true; break;
    case anonymousOption: options_.anonymous = true; break;
    default: break;
    }
    return true;
}

bool CommandLine::isGiven(OptionId id) const
{
    return std::find(given_.begin(), given_.end(), id) != given_.end();
}

bool CommandLine::findMode()
{
    for (const ModeRow& mode : modeRows) {
        if (!isGiven(mode.option)) {
            continue;
        }
        if (mode_->option != noOption) {
            return failAsExclusive(mode_->option, mode.option);
        }
        mode_ = &mode;
    }
    options_.action = mode_->action;
    return true;
}

bool CommandLine::acceptCombination()
{
    if (!findMode()) {
        return false;
    }
    for (const OptionId id : given_) {
        if (goesWith(*mode_, id)) {
            continue;
        }
        if (mode_->option != noOption) {
            return failAsExclusive(mode_->option, id);
        }
        const auto* owner = std::find_if(std::begin(modeRows), std::end(modeRows),
                                         [id](const ModeRow& mode) { return goesWith(mode, id); });
        return fail(QStringLiteral("%1 goes with %2 only").arg(shownOption(id), shownOption(owner->option)));
    }
    for (const auto& pair : rivals) {
        if (isGiven(pair[0]) && isGiven(pair[1])) {
            return failAsExclusive(pair[0], pair[1]);
        }
    }
    return acceptInput();
}

bool CommandLine::acceptInput()
{
    if (identifiedFile_) {
        if (options_.reportFile) {
            return fail(QStringLiteral("--read and a file for --identify exclude each other"));
        }
        options_.reportFile = identifiedFile_;
    }
    const QByteArray standardInput = "-";
    if (options_.oldFile == standardInput && options_.newFile == standardInput) {
        return fail(QStringLiteral("--compare can read only one report from standard input"));
    }
    return true;
}

/// The options as getopt_long takes them. QCommandLineParser would be the library for this, but it knows no optional
/// arguments (--identify [FILE]) and decodes file names, which are bytes.
struct SystemOptions
{
    SystemOptions()
    {
        for (const OptionRow& row : optionRows) {
            if (!isOffered(row)) {
                continue;
            }
            const bool isOptional = row.argument && row.argument[0] == '[';
            const int kind = !row.argument ? no_argument : isOptional ? optional_argument : required_argument;
            names.push_back({row.name, kind, nullptr, row.id});
            if (hasLetter(row)) {
                letters += static_cast<char>(row.id);
                letters += QByteArray(kind, ':');
            }
        }
        names.push_back({nullptr, 0, nullptr, 0});
    }

    std::vector<option> names;
    QByteArray letters = ":"; // tells a missing argument from an unknown option
};

bool isKnown(int id)
{
    return std::any_of(std::begin(optionRows), std::end(optionRows),
                       [id](const OptionRow& row) { return row.id == id; });
}

/// Why getopt_long refuses an option. Its own messages repeat any text.
/// @param id what it returned
/// @param option its optopt: 0 or a letter for what it does not know
QString refusal(int id, int option, const QByteArray& argument)
{
    const bool isLong = argument.startsWith("--");
    const QByteArray name =
        isLong ? argument.split('=').first() : QByteArray("-") + static_cast<char>(option);
    const QString shown = QFile::decodeName(name);
    if (id == ':') {
        return QStringLiteral("option '%1' requires an argument").arg(shown);
    }
    if (isLong && isKnown(option)) {
        return QStringLiteral("option '%1' takes no argument").arg(shown);
    }
    const auto isMeant = [&name](const OptionRow& row) {
        return QByteArray(row.name).startsWith(name.mid(2));
    };
    return isLong && std::any_of(std::begin(optionRows), std::end(optionRows), isMeant)
               ? QStringLiteral("option '%1' is ambiguous").arg(shown)
               : QStringLiteral("unknown option '%1'").arg(shown);
}

std::optional<Options> wrongUsage(const QString& error)
{
    printUsageError(error);
    return std::nullopt;
}

QString helpOfOption(const OptionRow& row)
{
    QString left = hasLetter(row) ? QStringLiteral("  -%1, --%2").arg(QLatin1Char(static_cast<char>(row.id)))
                                  : QStringLiteral("      --%2");
    left = left.replace(QStringLiteral("%2"), QLatin1String(row.name));
    if (row.argument) {
        left += QLatin1Char(' ') + QLatin1String(row.argument);
    }
    const int width = 27;
    const QString indentation = QLatin1Char('\n') + QString(width, QLatin1Char(' '));
    return left.leftJustified(width) + QString::fromLatin1(row.help).replace(QLatin1Char('\n'), indentation) +
           QLatin1Char('\n');
}

} // namespace

void printUsageError(const QString& error)
{
    printMessage(error);
    printMessage(QStringLiteral("see --help for the usage"));
}

std::optional<Options> parseOptions(int argc, char* argv[])
{
    // getopt_long names the program after its first argument, and sorts the others.
    char name[] = "norvex-systeminfo";
    std::vector<char*> arguments(argv, argv + argc);
    arguments.at(0) = name;
    arguments.push_back(nullptr);

    const SystemOptions system;
    CommandLine line;
    int id = 0;
    opterr = 0;
    while ((id = getopt_long(argc, arguments.data(), system.letters.constData(), system.names.data(),
                             nullptr)) != -1) {
        if (id == '?' || id == ':') {
            return wrongUsage(refusal(id, optopt, arguments[static_cast<size_t>(optind - 1)]));
        }
        if (id == helpOption || id == versionOption) {
            Options options;
            options.action = id == helpOption ? Options::Action::ShowHelp : Options::Action::ShowVersion;
            return options;
        }
        if (!line.accept(static_cast<OptionId>(id), optarg)) {
            return wrongUsage(line.error());
        }
    }
    for (int i = optind; i < argc; ++i) {
        if (!line.acceptFile(arguments[static_cast<size_t>(i)])) {
            return wrongUsage(line.error());
        }
    }
    return line.acceptCombination() ? std::optional<Options>(line.options()) : wrongUsage(line.error());
}

QString helpText()
{
    QString text =
        QStringLiteral("Usage: norvex-systeminfo [OPTION]...\n"
                       "       norvex-systeminfo --read FILE [OPTION]...\n"
                       "       norvex-systeminfo --compare OLD [NEW] [OPTION]...\n"
                       "       norvex-systeminfo --identify [FILE] [OPTION]...\n"
                       "       norvex-systeminfo --record FILE [OPTION]...\n"
                       "Prints a report on this machine: the system, its hardware, Qt and OpenGL. Or reads\n"
                       "reports: selects, converts, redacts and compares them.\n\n");
    for (const OptionRow& row : optionRows) {
        if (isOffered(row)) {
            text += helpOfOption(row);
        }
    }
    return text +
           QStringLiteral("\n"
                          "A report holds environment variables, serial numbers, host and network names, a\n"
                          "recording that is not anonymous all but the environment: look them through\n"
                          "before you send them to anyone, or use --redact.\n\n"
                          "Exit status: 0 when all is done; 1 when something could not be read or written,\n"
                          "or a report lacks a section, the identification or all that a summary tells; 2\n"
                          "when the options are wrong.\n"
                          "Options that contradict each other are wrong, and so is a second file for the\n"
                          "same option. Of --compare: 0 when nothing differs, 1 when something does, 2 for\n"
                          "trouble or wrong options. A closed pipe ends the program without a message.\n");
}

} // namespace norvex::Tool
