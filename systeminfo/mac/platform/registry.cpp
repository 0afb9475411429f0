#include "systeminfo/mac/platform/registry.h"

#include <algorithm>

namespace norvex {

Registry::Registry()
{
    internClasses({});
}

RegistryEntry& Registry::beginEntry()
{
    entries_.emplace_back();
    entries_.back().parent = open_;
    entries_.back().id = nextId_++;
    open_ = size() - 1;
    return entries_.back();
}

void Registry::endEntry()
{
    RegistryEntry& ended = entries_[open_];
    ended.end = size();
    open_ = ended.parent;
}

std::uint32_t Registry::internClasses(ClassChain chain)
{
    std::string joined;
    for (const std::string& name : chain) {
        joined += name;
        joined += '\0'; // ends a name, and is part of none
    }
    const auto [found, isNew] = chainIndex_.emplace(std::move(joined), std::uint32_t(chains_.size()));
    if (isNew) {
        chains_.push_back(std::move(chain));
        indexClasses(found->second);
    }
    return found->second;
}

void Registry::indexClasses(std::uint32_t chain)
{
    const ClassChain& names = chains_[chain];
    for (std::size_t i = 0; i < names.size(); ++i) {
        ClassUse& use = classes_[names[i]];
        if (use.chains.empty() || use.chains.back() != chain) {
            use.chains.push_back(chain);
        }
        if (use.superclass == nullptr && i + 1 < names.size()) {
            use.superclass = &names[i + 1];
        }
    }
}

bool Registry::conformsTo(std::uint32_t index, std::string_view className) const
{
    const auto use = classes_.find(className);
    return use != classes_.end() &&
           std::binary_search(use->second.chains.begin(), use->second.chains.end(), entries_[index].classes);
}

std::vector<bool> Registry::chainsWith(std::string_view className) const
{
    std::vector<bool> contains(chains_.size());
    const auto use = classes_.find(className);
    for (const std::uint32_t chain :
         use == classes_.end() ? std::vector<std::uint32_t>() : use->second.chains) {
        contains[chain] = true;
    }
    return contains;
}

const std::string* Registry::superclassOf(std::string_view className) const
{
    const auto use = classes_.find(className);
    return use == classes_.end() ? nullptr : use->second.superclass;
}

} // namespace norvex
