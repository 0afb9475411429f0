#pragma once

/// @file
/// An I/O registry as data, as a Machine returns it.

#include "systeminfo/mac/platform/cfObjects.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace norvex {

/// Failures that a recording injects into the calls on one entry. With 0 and false the call succeeds.
struct EntryFaults
{
    std::int32_t createProperties = 0; ///< IORegistryEntryCreateCFProperties
    std::int32_t getName = 0;          ///< IORegistryEntryGetName
    std::int32_t getParent = 0;        ///< IORegistryEntryGetParentEntry
    bool copyClass = false;            ///< IOObjectCopyClass
};

/// An entry of the registry. The entries form one array in depth-first order, a parent before its children: the
/// descendants of entry i are the entries from i + 1 up to, but not including, its `end`.
struct RegistryEntry
{
    static constexpr std::uint32_t none = 0xffffffffu;

    std::uint64_t id = 0; ///< the same in every registry that the machine returns
    std::string name;
    std::uint32_t classes = 0;             ///< index of a class chain of the registry
    std::uint32_t parent = none;           ///< index of the parent entry
    std::uint32_t end = none;              ///< one past the last descendant
    ObjectRef<CFDictionaryRef> properties; ///< null when there are none
    std::unique_ptr<EntryFaults> faults;   ///< null when there are none
};

/// A tree of entries. Nothing changes it once it is shared.
class Registry
{
public:
    /// A class name, then its superclasses.
    using ClassChain = std::vector<std::string>;

    Registry();

    /// Begins an entry. Its parent is the open entry: the last one begun and not yet ended. Its identifier is one more
    /// than that of the entry begun before.
    RegistryEntry& beginEntry();
    /// Ends the open entry.
    void endEntry();

    /// Sets the identifier of the entry that is begun next. With it, the entries of a partial registry have the same
    /// identifiers as in the whole one.
    void numberFrom(std::uint64_t id) { nextId_ = id; }

    /// The index of a class chain; equal chains share one.
    std::uint32_t internClasses(ClassChain chain);

    /// Declares that this is a partial registry: its root lacks some of its descendants.
    void markAsPart() { isPart_ = true; }
    bool isPart() const { return isPart_; }

    std::uint32_t size() const { return std::uint32_t(entries_.size()); }
    RegistryEntry& entry(std::uint32_t index) { return entries_[index]; }
    const RegistryEntry& entry(std::uint32_t index) const { return entries_[index]; }
    std::uint32_t openEntry() const { return open_; }

    const ClassChain& classesOf(std::uint32_t index) const { return chains_[entries_[index].classes]; }
    bool conformsTo(std::uint32_t index, std::string_view className) const;
    /// For each class chain, whether it contains the class.
    std::vector<bool> chainsWith(std::string_view className) const;
    /// The superclass of a class; null when no chain contains one.
    const std::string* superclassOf(std::string_view className) const;

private:
    /// The class chains that contain a class.
    struct ClassUse
    {
        std::vector<std::uint32_t> chains; ///< their indices, ascending
        const std::string* superclass =
            nullptr; ///< what follows the class in the first chain where anything does
    };

    void indexClasses(std::uint32_t chain);

    std::deque<RegistryEntry> entries_;
    std::vector<ClassChain> chains_;
    std::unordered_map<std::string, std::uint32_t> chainIndex_;
    std::unordered_map<std::string_view, ClassUse> classes_; ///< the names are those in chains_
    std::uint64_t nextId_ = 1;
    std::uint32_t open_ = RegistryEntry::none;
    bool isPart_ = false;
};

using RegistryPtr = std::shared_ptr<const Registry>;

} // namespace norvex
