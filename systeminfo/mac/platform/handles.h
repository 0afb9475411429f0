#pragma once

/// @file
/// The handles behind io_object_t: entries and iterators of a registry, counted by their callers.

#include "systeminfo/mac/platform/ioKit.h"
#include "systeminfo/mac/platform/norvexPlatform.h"
#include "systeminfo/mac/platform/registry.h"

#include <optional>
#include <vector>

namespace norvex {

/// Where an entry is. It keeps its registry alive.
struct EntryPlace
{
    RegistryPtr registry;
    std::uint32_t index = 0;

    const RegistryEntry& entry() const { return registry->entry(index); }
};

/// Walks over the entries of a class, or over the children of an entry.
class EntryIterator
{
public:
    /// Over all entries with the class in their chain; a null registry has none.
    EntryIterator(RegistryPtr registry, std::string_view className);
    /// Over the children of an entry.
    explicit EntryIterator(const EntryPlace& parent);

    std::optional<EntryPlace> next();

private:
    bool overChildren_;
    RegistryPtr registry_;
    std::vector<bool> chains_;
    std::uint32_t position_ = 0;
    std::uint32_t end_ = 0;
};

io_object_t openHandle(EntryPlace place);
io_object_t openHandle(EntryIterator iterator);

/// The entry behind a handle; nothing for 0, an iterator or a handle that is not alive.
std::optional<EntryPlace> placeOf(io_object_t handle);
/// The next entry of an iterator; nothing at its end and for anything but an iterator.
std::optional<EntryPlace> nextPlace(io_object_t iterator);

/// Changes a handle's count of references. False when it is not alive.
bool retainHandle(io_object_t handle);
bool releaseHandle(io_object_t handle);

/// Adds the references to live handles.
void addLiveHandles(LiveCounts& counts);

} // namespace norvex
