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
    std::optional<QByteArray> recording;  ///< of the machine that the Macintosh section describes
    std::optional<QByteArray> outputFile; ///< absent: standard output
    /// Action::Identify reads it; "-" is standard input. Absent: this machine.
    std::optional<QByteArray> reportFile;
    std::optional<QByteArray> recordFile; ///< receives the recording of Action::Record
    bool anonymous = false;
    bool skipBraced = false;
    bool asJson = false;
};

/// Reads the command line. Wrong usage gives nothing, and a message on standard error.
std::optional<Options> parseOptions(int argc, char* argv[]);

/// What --help prints.
QString helpText();

} // namespace norvex::Tool
