#include "systeminfo/mac/platform/handles.h"

#include <mutex>
#include <utility>
#include <variant>

namespace norvex {

EntryIterator::EntryIterator(RegistryPtr registry, std::string_view className)
    : overChildren_(false), registry_(std::move(registry))
{
    if (registry_ != nullptr) {
        chains_ = registry_->chainsWith(className);
        end_ = registry_->size();
    }
}

EntryIterator::EntryIterator(const EntryReference& parent)
    : overChildren_(true), registry_(parent.registry), position_(parent.index + 1), end_(parent.entry().end)
{}

std::optional<EntryReference> EntryIterator::next()
{
    if (overChildren_) {
        if (position_ >= end_) {
            return std::nullopt;
        }
        const std::uint32_t found = std::exchange(position_, registry_->entry(position_).end);
        return EntryReference{registry_, found};
    }
    while (position_ < end_) {
        const std::uint32_t candidate = position_++;
        if (chains_[registry_->entry(candidate).classes]) {
            return EntryReference{registry_, candidate};
        }
    }
    return std::nullopt;
}

namespace {

struct Handle
{
    std::variant<std::monostate, EntryReference, EntryIterator> object;
    std::uint32_t references = 0;
    std::uint8_t generation = 0;
};

/// A handle is the index of its slot in the table plus one, with the slot's generation in the highest bits. So a
/// handle that was released stays invalid until its slot has been reused 255 times.
constexpr unsigned slotBits = 24;
constexpr std::uint32_t slotMask = (1u << slotBits) - 1;

class HandleTable
{
public:
    static HandleTable& instance()
    {
        static HandleTable table;
        return table;
    }

    template <typename T>
    io_object_t open(T object)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (free_.empty()) {
            if (handles_.size() == slotMask) {
                return IO_OBJECT_NULL;
            }
            handles_.emplace_back();
            free_.reserve(handles_.capacity()); // so that releasing a handle allocates nothing
            free_.push_back(std::uint32_t(handles_.size() - 1));
        }
        const std::uint32_t slot = free_.back();
        free_.pop_back();
        handles_[slot].object = std::move(object);
        handles_[slot].references = 1;
        return ((std::uint32_t(handles_[slot].generation) << slotBits) | slot) + 1;
    }

    /// Runs an action on a handle under the lock; false when the handle is not alive.
    template <typename Action>
    bool with(io_object_t handle, Action action)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        Handle* found = find(handle);
        if (found != nullptr) {
            action(*found);
        }
        return found != nullptr;
    }

    bool release(io_object_t handle)
    {
        // Destroyed after the lock is gone: it may be the last owner of a registry, which takes time to destroy.
        decltype(Handle::object) dying;
        return with(handle, [&](Handle& found) {
            if (--found.references > 0) {
                return;
            }
            std::swap(found.object, dying);
            ++found.generation;
            free_.push_back(std::uint32_t(&found - handles_.data()));
        });
    }

    void addTo(LiveCounts& counts)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        for (const Handle& handle : handles_) {
            counts.entries += std::holds_alternative<EntryReference>(handle.object) ? handle.references : 0;
            counts.iterators += std::holds_alternative<EntryIterator>(handle.object) ? handle.references : 0;
        }
    }

private:
    Handle* find(io_object_t handle)
    {
        const std::uint32_t slot = (handle - 1) & slotMask;
        if (handle == IO_OBJECT_NULL || slot >= handles_.size()) {
            return nullptr;
        }
        Handle& candidate = handles_[slot];
        const bool isAlive = candidate.references > 0 && candidate.generation == (handle - 1) >> slotBits;
        return isAlive ? &candidate : nullptr;
    }

    std::mutex mutex_;
    std::vector<Handle> handles_;
    std::vector<std::uint32_t> free_;
};

} // namespace

io_object_t openHandle(EntryReference entry)
{
    return HandleTable::instance().open(std::move(entry));
}

io_object_t openHandle(EntryIterator iterator)
{
    return HandleTable::instance().open(std::move(iterator));
}

std::optional<EntryReference> entryOf(io_object_t handle)
{
    std::optional<EntryReference> reference;
    HandleTable::instance().with(handle, [&](const Handle& found) {
        if (const auto* entry = std::get_if<EntryReference>(&found.object)) {
            reference = *entry;
        }
    });
    return reference;
}

std::optional<EntryReference> nextEntry(io_object_t iterator)
{
    std::optional<EntryReference> reference;
    HandleTable::instance().with(iterator, [&](Handle& found) {
        if (auto* entries = std::get_if<EntryIterator>(&found.object)) {
            reference = entries->next();
        }
    });
    return reference;
}

bool retainHandle(io_object_t handle)
{
    return HandleTable::instance().with(handle, [](Handle& found) { ++found.references; });
}

bool releaseHandle(io_object_t handle)
{
    return HandleTable::instance().release(handle);
}

void addLiveHandles(LiveCounts& counts)
{
    HandleTable::instance().addTo(counts);
}

} // namespace norvex
