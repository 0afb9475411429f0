#pragma once

#include "machelpers/applicationServices.h"

/// @file
/// Starting a tool as administrator on Linux.

namespace norvex {

struct PrivilegedTool
{
    const char* launcher;   ///< asks the user and then becomes the tool; null when the process has the rights
    const char* path;       ///< absolute
    char* const* arguments; ///< null-terminated, without the path
    ToolUse use;
};

/// Starts a tool and returns once it runs, or once it is clear that it does not.
/// @return 0 when it was started, otherwise an error number (EACCES when the launcher refused)
///
/// The tool gets the standard streams and no other descriptor, no blocked signal and default actions for all.
/// An awaited tool is a child of this process, and its refusal by the launcher is left to whoever waits for
/// it. A detached one is nobody's child, and neither it nor anything else that this function does raises
/// SIGCHLD or can be waited for.
///
/// Of a launcher it is expected that it becomes the tool in the same process, that it closes other
/// descriptors than the standard streams only then, and that its exit codes 126 and 127 mean a refusal:
/// pkexec does so.
int startPrivilegedTool(const PrivilegedTool& tool);

/// The path of polkit's pkexec, null where it is not installed.
const char* privilegedLauncher();

} // namespace norvex
