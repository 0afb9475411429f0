#pragma once

#include "tools/sections.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace norvex::Tool {

/// What the command line asks for. File names are bytes as they were given.
struct Options
{
    enum class Action { PrintReport, ListSections, Identify, Record, ShowHelp, ShowVersion };

    Action action = Action::PrintReport;
    bool skipOpenGL = false;
    std::vector<const SystemInfo::SectionInfo*> sections; ///< empty for the whole report
    std::optional<QByteArray> recording;  ///< answers the Macintosh section
    std::optional<QByteArray> outputFile; ///< absent: standard output
    std::optional<QByteArray>
        reportFile; ///< to identify a machine by, "-" is standard input; absent: this machine
    std::optional<QByteArray> recordFile; ///< receives the recording of Action::Record
    bool anonymous = false;
    bool skipBraced = false;
    bool asJson = false;
};

/// Reads the command line. Wrong usage is said on standard error and gives nothing.
std::optional<Options> parseOptions(int argc, char* argv[]);

/// What --help prints.
QString helpText();

} // namespace norvex::Tool
