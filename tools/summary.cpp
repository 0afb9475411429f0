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

QString fact(const CReportBlock& block, const char* label)
{
    return fact(block.entry(QLatin1String(label)).value());
}

/// What a report tells. It looks for the sections once, since each look at all of them makes a list.
class Facts
{
public:
    explicit Facts(const CReport& report);

    bool isOfWindows() const { return isOfWindows_; }
    bool hasSection(const char* section) const { return sections_.contains(QLatin1String(section)); }
    QString value(const char* section, const char* label) const;
    QVector<CReportBlock> blocks(const char* section) const;
    /// The first value in the Windows half whose label has this in it.
    QString windowsValue(const char* partOfLabel) const;

private:
    QHash<QString, CReportSection> sections_; // the first ones of their names
    QVector<CReportSection> windowsSections_;
    bool isOfWindows_ = false;
};

Facts::Facts(const CReport& report)
{
    const QVector<CReportItem> items = report.content();
    for (const CReportItem& item : items) {
        if (item.type() == CReportItem::Banner) {
            isOfWindows_ = isOfWindows_ || item.text().contains(QLatin1String("Windows"));
        }
        const CReportSection section = item.toSection();
        if (section.isNull()) {
            continue;
        }
        const QString name = section.name();
        if (!sections_.contains(name)) {
            sections_.insert(name, section);
        }
        if (section.half() == QLatin1String("windows")) {
            windowsSections_ += section;
        }
    }
}

QString Facts::value(const char* section, const char* label) const
{
    return fact(sections_.value(QLatin1String(section)).entry(QLatin1String(label)).value());
}

QVector<CReportBlock> Facts::blocks(const char* section) const
{
    return sections_.value(QLatin1String(section)).blocks();
}

QString Facts::windowsValue(const char* partOfLabel) const
{
    for (const CReportSection& section : windowsSections_) {
        const QVector<CReportItem> items = section.content();
        for (const CReportItem& item : items) {
            const CReportEntry entry = item.toEntry();
            if (entry.label().contains(QLatin1String(partOfLabel), Qt::CaseInsensitive)) {
                return fact(entry.value());
            }
        }
    }
    return QString();
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

/// The labels of the Windows counterpart are its own.
QString windowsSystem(const Facts& facts)
{
    const QLatin1String name("Windows");
    const QString version = facts.windowsValue("version");
    return version.startsWith(name) ? version : (name + QLatin1Char(' ') + version).trimmed();
}

/// On Linux the build says nothing that a reader wants, and the kernel's version names who built it.
QString system(const Facts& facts)
{
    if (facts.isOfWindows()) {
        return windowsSystem(facts);
    }
    const bool isLinux = facts.value("kernelInfo", "Version").startsWith(QLatin1String("Linux"));
    const QString version = facts.value("osVersion", "MacOS version");
    const QString build = facts.value("kernelInfo", "Build");
    const QString details = joined({isLinux || build.isEmpty() ? QString() : QStringLiteral("build ") + build,
                                    facts.value("kernelInfo", "Kernel Arch.")});
    if (version.isEmpty() && details.isEmpty()) {
        return QString();
    }
    const QString name = isLinux ? QStringLiteral("Linux ") : QStringLiteral("macOS ");
    return joined({(name + version).trimmed(), details});
}

QString model(const Facts& facts)
{
    return facts.value("macModel", "Model");
}

QString processor(const Facts& facts)
{
    QString name = facts.value("cpuInfo", "CPU brand name");
    if (name.isEmpty()) {
        name = facts.value("architecture", "Mac System Architecture");
    }
    if (name.isEmpty()) {
        name = facts.value("Processor information", "Processor architecture");
    }
    const QString speed =
        name.contains(QLatin1String("Hz")) ? QString() : facts.value("cpuInfo", "Processor clock speed");
    const QString cores = facts.value("cpuInfo", "Number of physical cores");
    const QString threads = facts.value("cpuInfo", "Number of virtual cores");
    return joined(
        {name, speed, numbered(cores, "core", "cores"),
         cores == threads ? QString() : numbered(threads, "thread", "threads"),
         numbered(facts.value("Processor information", "Number of processors"), "processor", "processors")});
}

QString sizeUnlessUnknown(const QString& size)
{
    return size == QLatin1String("0 Byte") ? QString() : size;
}

QString memory(const Facts& facts)
{
    return sizeUnlessUnknown(facts.value("memoryInfo", "Physical RAM size"));
}

QString graphics(const Facts& facts)
{
    QStringList cards;
    const QVector<CReportBlock> blocks = facts.blocks("ioKitGraphicsCards");
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

QString disks(const Facts& facts)
{
    QStringList disks;
    const QVector<CReportBlock> ahciDisks = facts.blocks("ioKitSataDiskDevices");
    for (const CReportBlock& disk : ahciDisks) {
        disks += described(fact(disk, "Model"), "unnamed disk", {fact(disk, "Size"), mediumType(disk)});
    }
    const QVector<CReportBlock> nvmeDisks = facts.blocks("ioKitNVMExpressDevices");
    for (const CReportBlock& disk : nvmeDisks) {
        disks += described(fact(disk, "Model"), "unnamed disk", {fact(disk, "Size"), QStringLiteral("NVMe")});
    }
    return counted(disks);
}

QString screens(const Facts& facts)
{
    QStringList screens;
    const QVector<CReportBlock> blocks = facts.blocks("qtScreens");
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

QString qt(const Facts& facts)
{
    const QString runs = facts.value("qtGlobal", "Qt version currently used for execution");
    const QString linked = facts.value("qtGlobal", "Qt version this object was linked against");
    return described(
        runs, "unknown version",
        {linked == runs || linked.isEmpty() ? QString() : QStringLiteral("built with ") + linked});
}

QString openGL(const Facts& facts)
{
    if (!facts.hasSection("openGL")) {
        return QString();
    }
    const QString driver = joined({facts.value("openGL", "glGetString(GL_VERSION)"),
                                   facts.value("openGL", "glGetString(GL_RENDERER)")});
    return driver.isEmpty() ? QStringLiteral("not available") : driver;
}

const struct
{
    const char* label;
    QString (*value)(const Facts& facts);
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
    const Facts facts(report);
    QStringList labels;
    QStringList values;
    int width = 0;
    for (const auto& row : rows) {
        const QString value = row.value(facts);
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
