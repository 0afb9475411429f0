#include "tools/printers.h"

#include "tools/output.h"

#include "systeminfo/qtSectionParts.h"

namespace norvex::Tool {

namespace {

QString askedPrinterSection()
{
    QString section;
    QString errorMessage;
    if (readPrinterSection(section, errorMessage)) {
        return section;
    }
    printMessage(errorMessage + QStringLiteral("; the report names no printer"));
    return SystemInfo::Internal::printerSection({});
}

} // namespace

QString printerSection()
{
    static const QString section = askedPrinterSection();
    return section;
}

} // namespace norvex::Tool
