#pragma once

/// @file
/// An I/O registry as data: what a Machine answers when its registry is asked.

#include "systeminfo/mac/platform/cfObjects.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace norvex {

/// Failures that a recording injects into the calls on one entry. 0 and false: the call succeeds.
struct EntryFaults
{
    std::int32_t createProperties = 0; ///< IORegistryEntryCreateCFProperties
    std::int32_t getName = 0;          ///< IORegistryEntryGetName
    std::int32_t getParent = 0;        ///< IORegistryEntryGetParentEntry
    bool copyClass = false;            ///< IOObjectCopyClass
};

/// An entry of the registry. Entries lie in one array, depth first, a parent before its children: the entries
/// below entry i are those from i + 1 up to, not including, i's `end`.
struct RegistryEntry
{
    static constexpr std::uint32_t none = 0xffffffffu;

    std::string name;
    std::uint32_t classes = 0;             ///< index of a class chain of the registry
    std::uint32_t parent = none;           ///< index of the parent entry
    std::uint32_t end = none;              ///< one past the last entry of the subtree
    ObjectRef<CFDictionaryRef> properties; ///< null stands for none
    std::unique_ptr<EntryFaults> faults;   ///< null: none
};

/// A tree of entries; immutable once it is handed out.
class Registry
{
public:
    /// A class name, then its superclasses.
    using ClassChain = std::vector<std::string>;

    Registry();

    /// Begins an entry below the one that was begun last and not yet ended.
    RegistryEntry& beginEntry();
    /// Ends the entry that was begun last.
    void endEntry();

    /// The index of a class chain; equal chains share one.
    std::uint32_t internClasses(ClassChain chain);

    /// A part of a registry: what is missing in it hangs below the root as well.
    void markAsPart() { isPart_ = true; }
    bool isPart() const { return isPart_; }

    std::uint32_t size() const { return std::uint32_t(entries_.size()); }
    RegistryEntry& entry(std::uint32_t index) { return entries_[index]; }
    const RegistryEntry& entry(std::uint32_t index) const { return entries_[index]; }
    std::uint32_t openEntry() const { return open_; }

    const ClassChain& classesOf(std::uint32_t index) const { return chains_[entries_[index].classes]; }
    bool conformsTo(std::uint32_t index, std::string_view className) const;
    /// For every chain, whether the class is in it.
    std::vector<bool> chainsWith(std::string_view className) const;
    /// The class above a class, null when the registry does not tell.
    const std::string* superclassOf(std::string_view className) const;

private:
    std::deque<RegistryEntry> entries_;
    std::vector<ClassChain> chains_;
    std::unordered_map<std::string, std::uint32_t> chainIndex_;
    std::uint32_t open_ = RegistryEntry::none;
    bool isPart_ = false;
};

using RegistryPtr = std::shared_ptr<const Registry>;

} // namespace norvex
