#pragma once

#include <QMap>
#include <QStringList>

/// @file
/// The Macintosh section of a report beside what macOS's own tools print.

namespace macTools {

/// What each command line printed.
using Outputs = QMap<QString, QByteArray>;

/// The command lines whose output the comparison of this report uses.
QStringList commands(const QString& report);

/// A transcript of several commands: "$ " and the command line, on the next lines its output.
Outputs readTranscript(const QByteArray& transcript);
QByteArray writeTranscript(const Outputs& outputs);

struct Comparison
{
    QStringList compared;    ///< the lines of the report that the tools confirm
    QStringList differences; ///< what only the report says, or only a tool
    QStringList notCompared; ///< the lines that no tool tells anything about
};

Comparison compare(const QString& report, const Outputs& outputs);

} // namespace macTools
