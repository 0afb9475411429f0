#include "tools/silentFolders.h"

namespace norvex::Tool {

bool avoidSilentFolders(bool, QString&)
{
    return true;
}

TrueEnvironment::TrueEnvironment() = default;
TrueEnvironment::~TrueEnvironment() = default;

SectionFunction inTrueEnvironment(SectionFunction section)
{
    return section;
}

} // namespace norvex::Tool
