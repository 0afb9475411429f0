#include "tools/silentFolders.h"

namespace norvex::Tool {

bool avoidSilentFolders(bool, QString&)
{
    return true;
}

void inTrueEnvironment(const std::function<void()>& work)
{
    work();
}

SectionFunction sectionInTrueEnvironment(SectionFunction section)
{
    return section;
}

} // namespace norvex::Tool
