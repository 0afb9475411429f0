#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace norvex::Tool {

/// Writes the tool's result, and prepares the process for that.
class Output
{
public:
    /// Make it first in main(): it keeps other files off the numbers of closed standard streams, and remembers the
    /// process's action for closed pipes before libraries change it.
    Output();

    /// Says where write() writes. Call it before the program opens files of its own: a name such as "/dev/stderr" or
    /// "/dev/fd/3" stands for a descriptor that the caller has opened.
    /// @param fileName "-" for standard output, as is none
    /// @return false when there is no such descriptor; standard error then has a message
    bool open(const std::optional<QByteArray>& fileName);

    /// Whether write() writes to a terminal, for a person to read. Call it after open().
    bool isTerminal() const;

    /// Writes to standard output or to a descriptor. Replaces or creates a regular file: whole, or it stays as it was.
    /// Writes to anything else, such as a device or a pipe. Call it once.
    /// @return an exit status. Standard error gets a message about a failure, but not about a closed pipe.
    int write(const QByteArray& text) const;

private:
    int writeAndClose(int descriptor, const QByteArray& text) const;
    int replaceFile(const QByteArray& text) const;

    int descriptor_ = 1; ///< -1: the file of that name
    QByteArray fileName_;
    QString shownName_ = QStringLiteral("standard output");
    void (*pipeSignalAction_)(int);
};

/// Prints a message on standard error, behind the tool's name: a line of at most 200 characters, all of which print.
void printMessage(const QString& message);

} // namespace norvex::Tool
