#pragma once

#include "viewer/job.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace norvex {
namespace Viewer {

/// What opening a file gives.
struct FileContent
{
    QString text;         ///< the report, or whatever else can be read
    QStringList notices;  ///< what a reader of the text has to know
    QString errorMessage; ///< why there is nothing to read; empty otherwise
    bool isRecording = false;
};

/// Reads a file: text in UTF-8 or, with a byte-order mark, in UTF-16, the JSON of a report, or the recording of a machine,
/// of which it makes the Macintosh half. What only passes for JSON or a recording is text, with a notice. A byte-order
/// mark is no part of the text, and U+FFFD stands for bytes that are none. Any thread.
FileContent readReportFile(const QString& fileName, const JobControl& control);

/// Text of bytes, as readReportFile() decodes them.
/// @param[out] hasBadBytes whether U+FFFD stands for bytes that are no text
QString decodeText(const QByteArray& bytes, bool& hasBadBytes);

} // namespace Viewer
} // namespace norvex
