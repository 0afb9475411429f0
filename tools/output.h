#pragma once

#include <QByteArray>
#include <QString>

namespace norvex::Tool {

/// Where the tool's result goes, and what its process must be prepared for before anything else runs.
class Output
{
public:
    /// To be made first in main(): keeps closed standard streams from being taken by other files, and
    /// remembers how the process was told to treat a closed pipe, before libraries change that.
    Output();

    /// @return an exit status; failures are said on standard error, a closed pipe is not.
    int writeToStandardOutput(const QByteArray& text) const;

    /// Replaces or creates a file; one that could not be written whole stays as it was. What is no regular
    /// file, such as a device or a pipe, is written to.
    /// @return an exit status; failures are said on standard error, a closed pipe is not.
    int writeToFile(const QByteArray& fileName, const QByteArray& text) const;

private:
    int writeAndClose(int descriptor, const QString& shownName, const QByteArray& text) const;

    void (*pipeSignalAction_)(int);
};

/// Says something on standard error, behind the tool's name.
void printMessage(const QString& message);

} // namespace norvex::Tool
