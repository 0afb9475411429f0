#pragma once

/// @file
/// The door to the layer that stands in for macOS's interfaces on other hosts: which machine answers, and the
/// few calls that the user of an exported iterator needs. It does not exist on macOS, where the system
/// answers and IOIteratorNext and IOObjectRelease are IOKit's.

#include "../../norvexExport.h"

#include <QString>

#include <cstdint>
#include <memory>

namespace norvex {

/// One machine's answers to the system calls behind the Macintosh section: this host's, or a recording's.
class Machine;

/// Reads the recording of a machine.
/// @param fileName an XML property list in the format of docs/recording-format.md
/// @param errorMessage receives "FILE:LINE: reason" (without the line where there is none) on failure;
///        untouched otherwise; may be null
/// @return the machine, or null. Any thread.
NORVEX_SYSTEMINFO_EXPORT std::shared_ptr<const Machine> loadRecording(const QString& fileName,
                                                                      QString* errorMessage);

/// Decides which machine answers from now on, for the whole process.
/// @param machine null for this host, which also answers when this was never called
///
/// Any thread. A section that is being produced meanwhile may ask both machines.
NORVEX_SYSTEMINFO_EXPORT void setMachine(std::shared_ptr<const Machine> machine);

/// The next object of an iterator.
/// @param iterator a handle as the exported iterator functions open it; it stays the caller's
/// @return a handle that the caller releases, 0 at the end and for a handle that is no iterator
NORVEX_SYSTEMINFO_EXPORT unsigned int nextObject(unsigned int iterator);

/// Releases an entry or an iterator.
/// @param object its handle; 0 and handles that are not alive are ignored
NORVEX_SYSTEMINFO_EXPORT void releaseObject(unsigned int object);

/// How many references to objects are held by callers of the layer at this moment, by kind.
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

    /// Whether nothing is held.
    bool isZero() const
    {
        return (strings | numbers | booleans | data | dictionaries | arrays | urls | entries | iterators) ==
               0;
    }
};

/// The live counts of the process. After any section they are what they were before it.
NORVEX_SYSTEMINFO_EXPORT LiveCounts liveCounts();

/// What `statfs` says about a file system: the fields of macOS's record that the library uses, under their
/// names.
struct MacStatfs
{
    std::uint32_t f_bsize = 0;     ///< bytes a block
    std::uint64_t f_blocks = 0;    ///< blocks in all
    std::uint64_t f_bfree = 0;     ///< free blocks
    std::uint64_t f_bavail = 0;    ///< blocks that unprivileged users can have
    std::uint64_t f_files = 0;     ///< file nodes in all
    std::uint64_t f_ffree = 0;     ///< free file nodes
    char f_fstypename[16] = {};    ///< type name, zero-terminated
    char f_mntonname[1024] = {};   ///< mount point, zero-terminated
    char f_mntfromname[1024] = {}; ///< what is mounted, zero-terminated
};

} // namespace norvex
