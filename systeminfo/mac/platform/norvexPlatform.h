#pragma once

/// @file
/// The layer that stands in for macOS on other systems: a choice of the machine that answers, and what a caller needs
/// to use the iterators that the library hands out. This header does not exist on macOS. There the system itself
/// answers, and IOKit has IOIteratorNext and IOObjectRelease.
///
/// You may call all functions on any thread, on several at once, and without an application object. std::bad_alloc
/// passes through; nothing else is thrown.

#include "../../norvexExport.h"

#include <QString>

#include <cstdint>
#include <memory>

namespace norvex {

/// A machine that answers the system calls behind the Macintosh section: this host, or one that was recorded.
class Machine;

/// Reads the recording of a machine.
/// @param fileName the path of an XML property list in the format of docs/recording-format.md
/// @param errorMessage receives "FILE:LINE: reason" on failure, or "FILE: reason" where no line is at fault; untouched
///        on success; may be null. The reason is one line of at most 120 characters, all of them printable.
/// @return the machine, which never changes; null when the file cannot be read or is no valid recording
///
/// The time is proportional to the size of the file, 10 to 20 ms for a megabyte. The file is read to its end, so a pipe
/// that nobody closes keeps the call waiting.
NORVEX_SYSTEMINFO_EXPORT std::shared_ptr<const Machine> loadRecording(const QString& fileName,
                                                                      QString* errorMessage);

/// Chooses the machine that answers from now on, for the whole process.
/// @param machine a machine of loadRecording(), which the layer shares; null for this host, the choice at the start
///
/// A section that another thread makes during the call may ask the machine before it for some lines and the new one for
/// others. Objects that were handed out stay valid: they belong to the machine that they came from.
NORVEX_SYSTEMINFO_EXPORT void setMachine(std::shared_ptr<const Machine> machine);

/// The next entry of an iterator.
/// @param iterator a handle from ioKitGetUsbDevIterator() or ioKitGetSerialBsdDevicesIterator(); it stays yours
/// @return a handle that you release with releaseObject(); 0 at the end, and for anything but an iterator
NORVEX_SYSTEMINFO_EXPORT unsigned int nextObject(unsigned int iterator);

/// Releases an iterator or an entry.
/// @param object its handle, not valid after the call; 0 and handles that are not valid are ignored
NORVEX_SYSTEMINFO_EXPORT void releaseObject(unsigned int object);

/// How many references to objects of the layer its callers hold, by kind: what has been handed out and not released.
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

/// The counts of the whole process at this moment. Each section releases all that it opens, so tests find leaks by
/// them.
NORVEX_SYSTEMINFO_EXPORT LiveCounts liveCounts();

/// What `statfs` says of a file system: those fields of macOS's `struct statfs` that the library uses, by their names
/// there. All ones in a number mean "unknown".
struct MacStatfs
{
    std::uint32_t f_bsize = 0;     ///< bytes in a block, the unit of the next three
    std::uint64_t f_blocks = 0;    ///< all blocks
    std::uint64_t f_bfree = 0;     ///< free blocks
    std::uint64_t f_bavail = 0;    ///< blocks available to unprivileged users
    std::uint64_t f_files = 0;     ///< all file nodes
    std::uint64_t f_ffree = 0;     ///< free file nodes
    char f_fstypename[16] = {};    ///< name of its type, such as "apfs"; zero-terminated UTF-8
    char f_mntonname[1024] = {};   ///< mount point; zero-terminated UTF-8
    char f_mntfromname[1024] = {}; ///< what is mounted, such as a device file; zero-terminated UTF-8
};

} // namespace norvex
