#pragma once

#include <QByteArray>
#include <QString>

namespace norvex::Tool {

/// Writes the tool's result, and prepares the process for that.
class Output
{
public:
    /// Make it first in main(): it keeps other files off the numbers of closed standard streams, and remembers the
    /// process's action for closed pipes before libraries change it.
    Output();

    /// @return an exit status. Standard error gets a message about a failure, but not about a closed pipe.
    int writeToStandardOutput(const QByteArray& text) const;

    /// Replaces or creates a regular file: whole, or it stays as it was. Writes to anything else, such as a device or a
    /// pipe.
    /// @return an exit status. Standard error gets a message about a failure, but not about a closed pipe.
    int writeToFile(const QByteArray& fileName, const QByteArray& text) const;

private:
    int writeAndClose(int descriptor, const QString& shownName, const QByteArray& text) const;

    void (*pipeSignalAction_)(int);
};

/// Prints a message on standard error, behind the tool's name.
void printMessage(const QString& message);

} // namespace norvex::Tool
