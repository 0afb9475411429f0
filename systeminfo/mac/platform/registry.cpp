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
        joined += '\0'; // no name contains one
    }
    const auto [found, isNew] = chainIndex_.emplace(std::move(joined), std::uint32_t(chains_.size()));
    if (isNew) {
        chains_.push_back(std::move(chain));
    }
    return found->second;
}

bool Registry::conformsTo(std::uint32_t index, std::string_view className) const
{
    const ClassChain& chain = classesOf(index);
    return std::find(chain.begin(), chain.end(), className) != chain.end();
}

std::vector<bool> Registry::chainsWith(std::string_view className) const
{
    std::vector<bool> contains;
    contains.reserve(chains_.size());
    for (const ClassChain& chain : chains_) {
        contains.push_back(std::find(chain.begin(), chain.end(), className) != chain.end());
    }
    return contains;
}

const std::string* Registry::superclassOf(std::string_view className) const
{
    for (const ClassChain& chain : chains_) {
        const auto found = std::find(chain.begin(), chain.end(), className);
        if (found != chain.end() && found + 1 != chain.end()) {
            return &*(found + 1);
        }
    }
    return nullptr;
}

} // namespace norvex
