#include "tools/sections.h"

#include "systeminfo/mac/norvexSystemInfoMac.h"

#include <algorithm>

namespace norvex::Tool {

using namespace SystemInfo;

const QVector<SectionInfo>& namedSections()
{
    static const SectionInfo macintosh = {"macintosh",
                                          ReportHalf::Macintosh,
                                          0,
                                          "all sections of this half",
                                          {},
                                          SectionThread::Any,
                                          SectionApplication::None,
                                          MacSysInfo::allInfos};
    static const QVector<SectionInfo> named = QVector<SectionInfo>{macintosh} + sections();
    return named;
}

const SectionInfo* findSection(const QByteArray& name)
{
    const QVector<SectionInfo>& named = namedSections();
    const auto found = std::find_if(named.begin(), named.end(),
                                    [&name](const SectionInfo& section) { return name == section.name; });
    return found == named.end() ? nullptr : &*found;
}

} // namespace norvex::Tool
