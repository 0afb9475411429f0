#pragma once

#include "machelpers/applicationServices.h"

/// @file
/// Starts a tool as administrator on Linux.

namespace norvex {

struct PrivilegedTool
{
    const char* launcher;   ///< asks the user, then becomes the tool; null when the process has the rights
    const char* path;       ///< absolute
    char* const* arguments; ///< null-terminated, without the path
    ToolUse use;
};

/// Starts a tool and returns when it runs, or when it is clear that it does not.
/// @return 0 when the tool runs, otherwise an error number (EACCES when the launcher refuses)
///
/// The tool gets the standard streams and no other descriptor, no blocked signal, and default actions for all
/// signals. An awaited tool is a child of this process; a refusal of the launcher is its exit code. A detached tool
/// is no child of this process: its end raises no SIGCHLD, and no wait finds it.
///
/// A launcher must become the tool in the same process, must keep other descriptors than the standard streams
/// open until then, and must report a refusal by its exit code 126 or 127. pkexec does so.
///
/// Throws std::bad_alloc only before it starts anything.
int startPrivilegedTool(const PrivilegedTool& tool);

/// The path of polkit's pkexec, null when it is not installed.
const char* privilegedLauncher();

} // namespace norvex
