#pragma once

#include "tools/options.h"
#include "tools/output.h"

namespace norvex::Tool {

/// Prints a report, what identifies a machine, or what differs between two reports: reads files or asks this machine,
/// selects sections, and gives the result its form.
/// @return an exit status; standard error has a message unless it is a success, or reports that differ
int printReports(const Options& options, const Output& output, char* programName);

/// Lets the Macintosh section describe the machine that the options name, if any.
/// @param[out] errorMessage receives file, line and reason when that fails
bool chooseMachine(const Options& options, QString& errorMessage);

} // namespace norvex::Tool
