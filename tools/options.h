#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace norvex::Tool {

/// A section that the command line names.
struct GivenSection
{
    QString option; ///< that names it, as messages show it: "--section cpu", "--no-opengl"
    QString name;   ///< to be looked up, see Selection
};

/// What the command line asks for. File names are bytes as they were given; "-" is standard input or output.
struct Options
{
    enum class Action { PrintReport, Compare, Identify, Record, ListSections, ShowHelp, ShowVersion };
    enum class Form { Text, Json, Summary };

    Action action = Action::PrintReport;
    Form form = Form::Text;
    std::vector<GivenSection> sections; ///< in the order of the output; empty for all
    std::vector<GivenSection> without;
    std::optional<QByteArray> reportFile; ///< read instead of asking this machine
    std::optional<QByteArray> recording;  ///< of the machine that the Macintosh section describes
    std::optional<QByteArray> oldFile;    ///< of Action::Compare
    std::optional<QByteArray> newFile;    ///< of Action::Compare; absent: this machine
    std::optional<QByteArray> outputFile; ///< absent: standard output
    std::optional<QByteArray> recordFile; ///< receives the recording of Action::Record
    bool redact = false;
    bool withVolatile = false; ///< Action::Compare shows differences that always are, too
    bool anonymous = false;
    bool skipBraced = false;

    /// Whether the sections of this machine, or of the recorded one, are asked.
    bool asksMachine() const { return !reportFile && !newFile; }
};

/// Reads the command line. Wrong usage gives nothing, and a message on standard error.
std::optional<Options> parseOptions(int argc, char* argv[]);

/// Tells of wrong usage on standard error.
void printUsageError(const QString& error);

/// What --help prints.
QString helpText();

} // namespace norvex::Tool
