#pragma once

/// @file
/// The handles that callers know as io_object_t: each refers to an entry or an iterator of a registry and counts its
/// references.

#include "systeminfo/mac/platform/ioKit.h"
#include "systeminfo/mac/platform/norvexPlatform.h"
#include "systeminfo/mac/platform/registry.h"

#include <optional>
#include <vector>

namespace norvex {

/// An entry of a registry. It keeps the registry alive.
struct EntryReference
{
    RegistryPtr registry;
    std::uint32_t index = 0;

    const RegistryEntry& entry() const { return registry->entry(index); }
};

/// Visits the entries of a class, or the children of an entry.
class EntryIterator
{
public:
    /// Visits all entries whose class chain contains the class; none for a null registry.
    EntryIterator(RegistryPtr registry, std::string_view className);
    /// Visits the children of an entry.
    explicit EntryIterator(const EntryReference& parent);

    /// The next entry, absent at the end.
    std::optional<EntryReference> next();

private:
    bool overChildren_;
    RegistryPtr registry_;
    std::vector<bool> chains_;
    std::uint32_t position_ = 0;
    std::uint32_t end_ = 0;
};

/// Opens a handle with one reference; 0 when the table of handles is full, at 16 million.
io_object_t openHandle(EntryReference entry);
io_object_t openHandle(EntryIterator iterator);

/// The entry behind a handle; absent for 0, for an iterator and for a handle that is not alive.
std::optional<EntryReference> entryOf(io_object_t handle);
/// The next entry of an iterator; absent at its end and for anything but an iterator.
std::optional<EntryReference> nextEntry(io_object_t iterator);

/// Add and release a reference to a handle; false when the handle is not alive. It dies with its last reference.
bool retainHandle(io_object_t handle);
bool releaseHandle(io_object_t handle);

/// Adds the numbers of references to live handles.
void addLiveHandles(LiveCounts& counts);

} // namespace norvex
