#include "tools/summary.h"

#include "systeminfo/boundedText.h"
#include "systeminfo/norvexReport.h"

#include <QHash>

#include <algorithm>

namespace norvex::Tool {

using namespace SystemInfo;

namespace {

/// More than any device is called.
const int longestFact = 100;

/// A value as it stands in one line: drives and processors pad their names, and a report may hold anything.
QString fact(const QString& value)
{
    return Internal::boundedText(value.simplified(), longestFact);
}

QString fact(const CReport& report, const char* path)
{
    return fact(report.value(QLatin1String(path)));
}

QString fact(const CReportBlock& block, const char* label)
{
    return fact(block.entry(QLatin1String(label)).value());
}

QString joined(QStringList facts)
{
    facts.removeAll(QString());
    return facts.join(QStringLiteral(", "));
}

/// "NAME (DETAIL, DETAIL)"; nothing without a name or details.
QString described(const QString& name, const char* unnamed, const QStringList& details)
{
    const QString detail = joined(details);
    const QString shownName = name.isEmpty() && !detail.isEmpty() ? QLatin1String(unnamed) : name;
    return detail.isEmpty() ? shownName : QStringLiteral("%1 (%2)").arg(shownName, detail);
}

/// The items in their order, those that read the same as one.
QString counted(const QStringList& items)
{
    QStringList different;
    QHash<QString, int> counts;
    for (const QString& item : items) {
        if (!item.isEmpty() && ++counts[item] == 1) {
            different += item;
        }
    }
    for (QString& item : different) {
        const int count = counts.value(item);
        if (count > 1) {
            item = QStringLiteral("%1 x ").arg(count) + item;
        }
    }
    return joined(different);
}

QString numbered(const QString& number, const char* one, const char* several)
{
    if (number.isEmpty()) {
        return QString();
    }
    return number + QLatin1Char(' ') + QLatin1String(number == QLatin1String("1") ? one : several);
}

/// What the Windows counterpart says of its system; its labels are its own.
QString windowsSystem(const CReport& report)
{
    const QLatin1String name("Windows");
    QString version;
    const QVector<CReportSection> sections = report.sections();
    for (const CReportSection& section : sections) {
        if (section.half() != QLatin1String("windows")) {
            continue;
        }
        const QVector<CReportItem> items = section.content();
        for (const CReportItem& item : items) {
            const CReportEntry entry = item.toEntry();
            if (version.isEmpty() && entry.label().contains(QLatin1String("version"), Qt::CaseInsensitive)) {
                version = fact(entry.value());
            }
        }
    }
    return version.startsWith(name) ? version : (name + QLatin1Char(' ') + version).trimmed();
}

bool hasBanner(const CReport& report, const char* half)
{
    const QVector<CReportItem> items = report.content();
    return std::any_of(items.begin(), items.end(), [half](const CReportItem& item) {
        return item.type() == CReportItem::Banner && item.text().contains(QLatin1String(half));
    });
}

/// On Linux the build says nothing that a reader wants, and the kernel's version names who built it.
QString system(const CReport& report)
{
    if (hasBanner(report, "Windows")) {
        return windowsSystem(report);
    }
    const bool isLinux =
        report.value(QStringLiteral("kernelInfo/Version")).startsWith(QLatin1String("Linux"));
    const QString version = fact(report, "osVersion/MacOS version");
    const QString build = fact(report, "kernelInfo/Build");
    const QString details = joined({isLinux || build.isEmpty() ? QString() : QStringLiteral("build ") + build,
                                    fact(report, "kernelInfo/Kernel Arch.")});
    if (version.isEmpty() && details.isEmpty()) {
        return QString();
    }
    const QString name = isLinux ? QStringLiteral("Linux ") : QStringLiteral("macOS ");
    return joined({(name + version).trimmed(), details});
}

QString model(const CReport& report)
{
    return fact(report, "macModel/Model");
}

QString processor(const CReport& report)
{
    QString name = fact(report, "cpuInfo/CPU brand name");
    if (name.isEmpty()) {
        name = fact(report, "architecture/Mac System Architecture");
    }
    if (name.isEmpty()) {
        name = fact(report, "Processor information/Processor architecture");
    }
    const QString speed =
        name.contains(QLatin1String("Hz")) ? QString() : fact(report, "cpuInfo/Processor clock speed");
    const QString cores = fact(report, "cpuInfo/Number of physical cores");
    const QString threads = fact(report, "cpuInfo/Number of virtual cores");
    return joined(
        {name, speed, numbered(cores, "core", "cores"),
         cores == threads ? QString() : numbered(threads, "thread", "threads"),
         numbered(fact(report, "Processor information/Number of processors"), "processor", "processors")});
}

QString sizeUnlessUnknown(const QString& size)
{
    return size == QLatin1String("0 Byte") ? QString() : size;
}

QString memory(const CReport& report)
{
    return sizeUnlessUnknown(fact(report, "memoryInfo/Physical RAM size"));
}

QString graphics(const CReport& report)
{
    QStringList cards;
    const QVector<CReportBlock> blocks = report.section(QStringLiteral("ioKitGraphicsCards")).blocks();
    for (const CReportBlock& card : blocks) {
        QString name = fact(card, "Model");
        if (name == QLatin1String("???")) {
            name.clear();
        }
        cards += described(name, "unknown card", {sizeUnlessUnknown(fact(card, "VRAM total"))});
    }
    return counted(cards);
}

QString mediumType(const CReportBlock& disk)
{
    const QString type = fact(disk, "Medium Type");
    if (type == QLatin1String("Solid State")) {
        return QStringLiteral("SSD");
    }
    return type == QLatin1String("Rotational") ? QStringLiteral("HDD") : type;
}

QString disks(const CReport& report)
{
    QStringList disks;
    const QVector<CReportBlock> ahciDisks = report.section(QStringLiteral("ioKitSataDiskDevices")).blocks();
    for (const CReportBlock& disk : ahciDisks) {
        disks += described(fact(disk, "Model"), "unnamed disk", {fact(disk, "Size"), mediumType(disk)});
    }
    const QVector<CReportBlock> nvmeDisks = report.section(QStringLiteral("ioKitNVMExpressDevices")).blocks();
    for (const CReportBlock& disk : nvmeDisks) {
        disks += described(fact(disk, "Model"), "unnamed disk", {fact(disk, "Size"), QStringLiteral("NVMe")});
    }
    return counted(disks);
}

QString screens(const CReport& report)
{
    QStringList screens;
    const QVector<CReportBlock> blocks = report.section(QStringLiteral("qtScreens")).blocks();
    for (const CReportBlock& screen : blocks) {
        QString size = fact(screen, "Size (width x height)");
        const QString ratio = fact(screen, "devicePixelRatio");
        if (!ratio.isEmpty() && ratio != QLatin1String("1")) {
            size += QStringLiteral(" at %1x").arg(ratio);
        }
        // "416.203mm 16.3859inch", 0 for a screen of unknown size
        const double inches =
            fact(screen, "diagonal").section(QLatin1Char(' '), 1).remove(QLatin1String("inch")).toDouble();
        const QString diagonal =
            inches > 0 ? QString::number(inches, 'f', 1) + QStringLiteral(" inch") : QString();
        screens += described(fact(screen, "Name"), "unnamed screen", {size, diagonal});
    }
    return counted(screens);
}

QString qt(const CReport& report)
{
    const QString runs = fact(report, "qtGlobal/Qt version currently used for execution");
    const QString linked = fact(report, "qtGlobal/Qt version this object was linked against");
    return described(
        runs, "unknown version",
        {linked == runs || linked.isEmpty() ? QString() : QStringLiteral("built with ") + linked});
}

QString openGL(const CReport& report)
{
    if (report.section(QStringLiteral("openGL")).isNull()) {
        return QString();
    }
    const QString driver = joined(
        {fact(report, "openGL/glGetString(GL_VERSION)"), fact(report, "openGL/glGetString(GL_RENDERER)")});
    return driver.isEmpty() ? QStringLiteral("not available") : driver;
}

const struct
{
    const char* label;
    QString (*value)(const CReport& report);
    bool isOfMacintoshHalf;
} rows[] = {
    {"System", system, true},       {"Model", model, true},
    {"Processor", processor, true}, {"Memory", memory, true},
    {"Graphics", graphics, true},   {"Disks", disks, true},
    {"Screens", screens, false},    {"Qt", qt, false},
    {"OpenGL", openGL, false},
};

} // namespace

const QStringList& summarySections()
{
    static const QStringList names =
        QStringLiteral("osVersion kernelInfo macModel architecture cpuInfo memoryInfo "
                       "ioKitSataDiskDevices ioKitNVMExpressDevices "
                       "ioKitGraphicsCards qtGlobal qtScreens openGL")
            .split(QLatin1Char(' '));
    return names;
}

QString summaryOf(const CReport& report, bool hasOtherMachine)
{
    QStringList labels;
    QStringList values;
    int width = 0;
    for (const auto& row : rows) {
        const QString value = row.value(report);
        if (value.isEmpty()) {
            continue;
        }
        const bool isOfThisMachine = hasOtherMachine && !row.isOfMacintoshHalf;
        labels += QLatin1String(row.label) + QLatin1String(isOfThisMachine ? " (this machine):" : ":");
        values += value;
        width = std::max(width, labels.last().size());
    }
    QString text;
    for (int line = 0; line < labels.size(); ++line) {
        text += labels.at(line).leftJustified(width + 1) + values.at(line) + QLatin1Char('\n');
    }
    return text;
}

} // namespace norvex::Tool
