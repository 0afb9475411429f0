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
    helpOption = 'h',
    outputOption = 'o',
    versionOption = 'v',
    noOpenGLOption = 256,
    sectionOption,
    listSectionsOption,
    machineOption,
    identifyOption,
    skipBracedOption,
    jsonOption,
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
    {noOpenGLOption, "no-opengl", nullptr, "leave out the OpenGL section"},
    {sectionOption, "section", "NAME",
     "print this section only; given several times, the sections\n"
     "in that order, with nothing between them"},
    {listSectionsOption, "list-sections", nullptr,
     "print the names of all sections; on a terminal also what\n"
     "they hold"},
    {machineOption, "machine", "FILE",
     "let the Macintosh section describe the machine that was\n"
     "recorded in FILE; all others describe the machine at hand"},
    {outputOption, "output", "FILE",
     "write to FILE, whole or not at all, instead of to standard\n"
     "output (-); a file that exists is replaced; /dev/stderr or\n"
     "/dev/fd/3 is that descriptor"},
    {identifyOption, "identify", "[FILE]",
     "print what identifies a machine: a line for every MAC address,\n"
     "the number of processors, the processor revision. They are\n"
     "read from the report in FILE (-: from standard input), without\n"
     "FILE asked of this machine"},
    {skipBracedOption, "skip-braced", nullptr,
     "with --identify: ignore network interfaces with a name\n"
     "in braces"},
    {jsonOption, "json", nullptr, "with --identify: print one JSON object"},
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

bool isOffered(const OptionRow& row)
{
    return row.id != machineOption || supportsRecordings();
}

bool hasLetter(const OptionRow& row)
{
    return row.id < noOpenGLOption;
}

/// Takes one option after the other, then judges them together.
class CommandLine
{
public:
    bool accept(int id, const char* argument);
    bool acceptFile(const char* fileName);
    bool acceptCombination();

    const Options& options() const { return options_; }
    const QString& error() const { return error_; }

private:
    bool fail(const QString& error);
    bool acceptAction(Options::Action action);
    bool acceptSection(const QByteArray& name);
    bool acceptOnce(std::optional<QByteArray>& value, const char* option, const QByteArray& argument);

    Options options_;
    QString error_;
};

bool CommandLine::fail(const QString& error)
{
    error_ = error;
    return false;
}

bool CommandLine::acceptAction(Options::Action action)
{
    if (options_.action != Options::Action::PrintReport && options_.action != action) {
        return fail(QStringLiteral("--identify, --list-sections and --record exclude each other"));
    }
    options_.action = action;
    return true;
}

bool CommandLine::acceptSection(const QByteArray& name)
{
    const SystemInfo::SectionInfo* section = findSection(name);
    if (!section) {
        return fail(QStringLiteral("unknown section '%1' (--list-sections prints the names)")
                        .arg(QFile::decodeName(name)));
    }
    options_.sections.push_back(section);
    return true;
}

bool CommandLine::acceptOnce(std::optional<QByteArray>& value, const char* option, const QByteArray& argument)
{
    if (value) {
        return fail(QStringLiteral("more than one file for %1").arg(QLatin1String(option)));
    }
    if (argument.isEmpty()) {
        return fail(QStringLiteral("the name of the file for %1 is empty").arg(QLatin1String(option)));
    }
    value = argument;
    return true;
}

bool CommandLine::acceptFile(const char* fileName)
{
    if (options_.action != Options::Action::Identify) {
        return fail(QStringLiteral("unexpected argument '%1'").arg(QFile::decodeName(fileName)));
    }
    return acceptOnce(options_.reportFile, "--identify", fileName);
}

bool CommandLine::accept(int id, const char* argument)
{
    switch (id) {
    case noOpenGLOption: options_.skipOpenGL = true; return true;
    case sectionOption: return acceptSection(argument);
    case listSectionsOption: return acceptAction(Options::Action::ListSections);
    case machineOption: return acceptOnce(options_.recording, "--machine", argument);
    case outputOption: return acceptOnce(options_.outputFile, "--output", argument);
    case identifyOption:
        return acceptAction(Options::Action::Identify) &&
               (!argument || acceptOnce(options_.reportFile, "--identify", argument));
    case skipBracedOption: options_.skipBraced = true; return true;
    case jsonOption: options_.asJson = true; return true;
    case recordOption:
        return acceptAction(Options::Action::Record) && acceptOnce(options_.recordFile, "--record", argument);
    case anonymousOption: options_.anonymous = true; return true;
    default: return false;
    }
}

bool CommandLine::acceptCombination()
{
    const Options& o = options_;
    const bool identifies = o.action == Options::Action::Identify;
    const bool lists = o.action == Options::Action::ListSections;
    const bool records = o.action == Options::Action::Record;
    bool asksForOpenGL = false;
    for (const SystemInfo::SectionInfo* section : o.sections) {
        asksForOpenGL = asksForOpenGL || section == findSection("openGL");
    }
    const struct
    {
        bool isBroken;
        const char* rule;
    } rules[] = {
        {o.skipBraced && !identifies, "--skip-braced goes with --identify only"},
        {o.asJson && !identifies, "--json goes with --identify only"},
        {identifies && !o.sections.empty(), "--identify and --section exclude each other"},
        {identifies && o.recording, "--identify and --machine exclude each other"},
        {o.reportFile && o.skipOpenGL, "--no-opengl has no influence on what --identify reads from a file"},
        {asksForOpenGL && o.skipOpenGL, "--section openGL and --no-opengl exclude each other"},
        {o.anonymous && !records, "--anonymous goes with --record only"},
        {records && (!o.sections.empty() || o.skipOpenGL), "--record holds the Macintosh section only"},
        {records && o.outputFile, "--record and --output exclude each other"},
        {lists && (!o.sections.empty() || o.skipOpenGL || o.recording),
         "--list-sections goes with --output only"},
    };
    for (const auto& row : rules) {
        if (row.isBroken) {
            return fail(QString::fromLatin1(row.rule));
        }
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
    printMessage(error);
    printMessage(QStringLiteral("see --help for the usage"));
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
    const int width = 25;
    const QString indentation = QLatin1Char('\n') + QString(width, QLatin1Char(' '));
    return left.leftJustified(width) + QString::fromLatin1(row.help).replace(QLatin1Char('\n'), indentation) +
           QLatin1Char('\n');
}

} // namespace

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
        if (!line.accept(id, optarg)) {
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
                       "       norvex-systeminfo --identify [FILE] [OPTION]...\n"
                       "       norvex-systeminfo --record FILE [OPTION]...\n"
                       "Prints a report on this machine: the system, its hardware, Qt and OpenGL.\n\n");
    for (const OptionRow& row : optionRows) {
        if (isOffered(row)) {
            text += helpOfOption(row);
        }
    }
    return text +
           QStringLiteral("\n"
                          "A report holds environment variables, serial numbers, host and network names, a\n"
                          "recording that is not anonymous all but the environment: look them through\n"
                          "before you send them to anyone.\n\n"
                          "Exit status: 0 when all is done; 1 when something could not be read or written,\n"
                          "or a report has no identification; 2 when the options are wrong. Options that\n"
                          "contradict each other are wrong, and so is a second file for the same option.\n"
                          "A closed pipe ends the program without a message.\n");
}

} // namespace norvex::Tool
