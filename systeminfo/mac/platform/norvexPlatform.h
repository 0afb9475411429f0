#pragma once

/// @file
/// The interface of the layer that stands in for macOS on other hosts: it chooses the machine that answers, and has the
/// few functions that users of an exported iterator need. It does not exist on macOS: there the system answers, and
/// IOKit has IOIteratorNext and IOObjectRelease.

#include "../../norvexExport.h"

#include <QString>

#include <cstdint>
#include <memory>

namespace norvex {

/// A machine that answers the system calls behind the Macintosh section: this host, or a recording.
class Machine;

/// Reads the recording of a machine.
/// @param fileName an XML property list in the format of docs/recording-format.md
/// @param errorMessage receives "FILE:LINE: reason" on failure, or "FILE: reason" when no line is to blame; untouched on
///        success; may be null. The reason is a line of at most 120 characters, all of which print.
/// @return the machine, or null on failure. Any thread.
NORVEX_SYSTEMINFO_EXPORT std::shared_ptr<const Machine> loadRecording(const QString& fileName,
                                                                      QString* errorMessage);

/// Chooses the machine that answers from now on, for the whole process.
/// @param machine null for this host, which also answers when this function was never called
///
/// Any thread. A section that another thread produces at the same time may ask both machines.
NORVEX_SYSTEMINFO_EXPORT void setMachine(std::shared_ptr<const Machine> machine);

/// The next object of an iterator.
/// @param iterator a handle from an exported iterator function; it stays the caller's
/// @return a handle that the caller releases; 0 at the end, and for a handle that is not an iterator
NORVEX_SYSTEMINFO_EXPORT unsigned int nextObject(unsigned int iterator);

/// Releases an entry or an iterator.
/// @param object its handle; 0 and handles that are not alive are ignored
NORVEX_SYSTEMINFO_EXPORT void releaseObject(unsigned int object);

/// The numbers of references to objects that callers of the layer hold, by kind.
struct LiveCounts
{
    std::int64_t strings = 0;      ///< CFString
    std::int64_t numbers = 0;      ///< CFNumber
    std::int64_t booleans = 0;     ///< CFBoolean
    std::int64_t data = 0;         ///< CFData
    std::int64_t dictionaries = 0; ///< CFDictionary
    std::int64_t arrays = 0;       ///< CFArray
    std::int64_t urls = 0;         ///< CFURL
    std::int64_t entries = 0;      ///< handles of registry entries
    std::int64_t iterators = 0;    ///< handles of registry iterators

    /// Whether callers hold no reference.
    bool isZero() const
    {
        return (strings | numbers | booleans | data | dictionaries | arrays | urls | entries | iterators) ==
               0;
    }
};

/// The live counts of the process. No section changes them: what it opens, it releases.
NORVEX_SYSTEMINFO_EXPORT LiveCounts liveCounts();

/// The description of a file system from `statfs`: the fields of macOS's record that the library uses, under macOS's
/// names.
struct MacStatfs
{
    std::uint32_t f_bsize = 0;     ///< bytes in a block
    std::uint64_t f_blocks = 0;    ///< all blocks
    std::uint64_t f_bfree = 0;     ///< free blocks
    std::uint64_t f_bavail = 0;    ///< blocks available to unprivileged users
    std::uint64_t f_files = 0;     ///< all file nodes
    std::uint64_t f_ffree = 0;     ///< free file nodes
    char f_fstypename[16] = {};    ///< type name, zero-terminated
    char f_mntonname[1024] = {};   ///< mount point, zero-terminated
    char f_mntfromname[1024] = {}; ///< what is mounted, zero-terminated
};

} // namespace norvex
