#include "tools/sections.h"

#include "tools/printers.h"
#include "tools/silentFolders.h"

#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/norvexNetworkIfInfo.h"
#include "systeminfo/reportHalf.h"
#include "systeminfo/reportTexts.h"

#include <algorithm>

namespace norvex::Tool {

using namespace SystemInfo;

namespace {

QVector<SectionInfo> makeReportSections()
{
    QVector<SectionInfo> table = sections();
    for (SectionInfo& section : table) {
        if (section.text == qtPrinterInfo) {
            section.text = printerSection;
        }
        section.text = sectionInTrueEnvironment(section.text);
    }
    return table;
}

/// A half of the report, if one of the sections stands in it.
QString halfOf(ReportHalf half, const Internal::HalfFrame& frame, const QVector<SectionInfo>& sections)
{
    const bool isEmpty = std::none_of(sections.begin(), sections.end(),
                                      [half](const SectionInfo& section) { return section.half == half; });
    return isEmpty ? QString() : Internal::reportHalf(half, frame, sections);
}

} // namespace

const char macintoshName[] = "macintosh";

const QVector<SectionInfo>& reportSections()
{
    static const QVector<SectionInfo> table = makeReportSections();
    return table;
}

const QVector<SectionInfo>& namedSections()
{
    static const SectionInfo macintosh = {macintoshName,
                                          ReportHalf::Macintosh,
                                          0,
                                          "the whole Macintosh section, with its separators",
                                          {},
                                          SectionThread::Any,
                                          SectionApplication::None,
                                          MacSysInfo::allInfos};
    static const QVector<SectionInfo> named = QVector<SectionInfo>{macintosh} + reportSections();
    return named;
}

QString macintoshHalf(const QVector<SectionInfo>& sections)
{
    return halfOf(ReportHalf::Macintosh,
                  {Internal::macintoshBanner, MacSysInfo::sNewLine, MacSysInfo::separator()}, sections);
}

QString reportOf(const QVector<SectionInfo>& sections)
{
    return macintoshHalf(sections) +
           halfOf(ReportHalf::Qt, {Internal::qtBanner, sNewLine, separator()}, sections);
}

QString identifyingReport()
{
    const QString lineEnd = sNewLine;
    return QLatin1String(Internal::macintoshBanner) + lineEnd + MacSysInfo::cpuInfo() +
           QLatin1String(Internal::qtBanner) + lineEnd + NetworkInfo::allInfos();
}

} // namespace norvex::Tool
