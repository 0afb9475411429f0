#include "tools/sections.h"

#include "tools/printers.h"

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
    }
    return table;
}

const QVector<SectionInfo>& reportSections()
{
    static const QVector<SectionInfo> table = makeReportSections();
    return table;
}

} // namespace

const QVector<SectionInfo>& namedSections()
{
    static const SectionInfo macintosh = {"macintosh",
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

QString wholeReport(bool skipOpenGL)
{
    QString report = MacSysInfo::allInfos();
    report += Internal::reportHalf(ReportHalf::Qt, {Internal::qtBanner, sNewLine, separator()}, !skipOpenGL,
                                   reportSections());
    return report;
}

QString identifyingReport()
{
    const QString lineEnd = sNewLine;
    return QLatin1String(Internal::macintoshBanner) + lineEnd + MacSysInfo::cpuInfo() +
           QLatin1String(Internal::qtBanner) + lineEnd + NetworkInfo::allInfos();
}

const SectionInfo* findSection(const QByteArray& name)
{
    const QVector<SectionInfo>& named = namedSections();
    const auto found = std::find_if(named.begin(), named.end(),
                                    [&name](const SectionInfo& section) { return name == section.name; });
    return found == named.end() ? nullptr : &*found;
}

} // namespace norvex::Tool
