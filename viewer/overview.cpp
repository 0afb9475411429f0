#include "viewer/overview.h"

#include "viewer/itemTitles.h"

#include <QHash>
#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <limits>

namespace norvex {
namespace Viewer {

using namespace SystemInfo;

namespace {

/// More than any device is called.
const int longestText = 120;
/// A longer section is not looked into: what it consists of takes many times its memory.
const int longestSection = 4 << 20;
/// More things of one kind are no overview.
const int mostThings = 200;
const int mostDevices = 8;
/// Of sections that are in no table.
const int mostUnknownSections = 1000;
/// In pixels. Anything else comes from a driver that does not know, and would make all other screens specks.
const int longestScreenSide = 32768;
const int longestScreenShape = 10; // times as wide as high, or as high as wide
const double mostInches = 10000;

QString valueOf(const CReportEntry& entry)
{
    return oneLine(entry.value(), longestText);
}

QString valueIn(const CReportBlock& block, const char* label)
{
    return valueOf(block.entry(QLatin1String(label)));
}

QString joined(QStringList parts)
{
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

/// @param several has a place for the number
QString counted(const QString& number, const QString& one, const QString& several)
{
    return number == QLatin1String("1") ? one : several.arg(number);
}

QString unlessZero(const QString& size)
{
    return size == QLatin1String("0 Byte") ? QString() : size;
}

/// A count of blocks or bytes; -1 where the system does not know it and where the report has something else.
double count(const QString& value, quint64 unknown)
{
    bool isNumber = false;
    const quint64 number = value.toULongLong(&isNumber);
    return isNumber && number != unknown ? static_cast<double>(number) : -1;
}

QSize screenSize(const QString& width, const QString& height)
{
    const QSize size(width.toInt(), height.toInt());
    const int longer = std::max(size.width(), size.height());
    const int shorter = std::min(size.width(), size.height());
    const bool isPossible =
        shorter > 0 && longer <= longestScreenSide && longer <= longestScreenShape * shorter;
    return isPossible ? size : QSize();
}

QString sizeText(const QSize& size)
{
    return QStringLiteral("%1 × %2").arg(size.width()).arg(size.height());
}

} // namespace

/// Looks for the sections once, since each look at all of them makes a list.
class OverviewBuilder
{
public:
    explicit OverviewBuilder(const CReport& report);

    Overview build();

private:
    using Fact = Overview::Fact;

    QString value(const char* section, const char* label) const;
    QString path(const char* section) const;
    QString path(const char* section, const char* label) const;
    QVector<CReportBlock> blocks(const char* section) const;
    void addFact(const QString& label, const QString& value, const QString& path);
    void addDevices(const QString& label, const QStringList& values, const QStringList& paths);
    QString system() const;
    void addMachine();
    void addProcessor();
    void addMemory();
    void addGraphics();
    void addDisks();
    QString windowsEntry(const char* partOfLabel, QString& path) const;
    void addVolumes();
    Overview::Volume volume(const CReportBlock& block) const;
    void addScreens();
    Overview::Screen screen(const CReportBlock& block) const;
    void addDesktopScreens();
    void addInterfaces();
    Overview::Interface interface(const CReportBlock& block) const;
    void addEthernetInterfaces();
    QString hardware(const CReportBlock& ethernet) const;

    QHash<QString, CReportSection> sections_; // the first ones of their names
    QVector<CReportSection> windowsSections_;
    QHash<QString, CReportBlock> ethernet_; // by BSD name
    Overview overview_;
};

OverviewBuilder::OverviewBuilder(const CReport& report)
{
    report.visit([this](const CReportItem& item) {
        const CReportSection section = item.toSection();
        if (section.isNull() || section.text().size() > longestSection) {
            return true;
        }
        if (windowsSections_.size() < mostUnknownSections && section.half() == QLatin1String("windows")) {
            windowsSections_.append(section);
        }
        const QString name = section.name();
        const bool isWanted = section.isKnown() || sections_.size() < mostUnknownSections;
        if (isWanted && !sections_.contains(name)) {
            sections_.insert(name, section);
        }
        return true;
    });
}

QString OverviewBuilder::value(const char* section, const char* label) const
{
    return valueOf(sections_.value(QLatin1String(section)).entry(QLatin1String(label)));
}

QString OverviewBuilder::path(const char* section) const
{
    return sections_.value(QLatin1String(section)).path();
}

QString OverviewBuilder::path(const char* section, const char* label) const
{
    return sections_.value(QLatin1String(section)).entry(QLatin1String(label)).path();
}

QVector<CReportBlock> OverviewBuilder::blocks(const char* section) const
{
    return sections_.value(QLatin1String(section)).blocks();
}

void OverviewBuilder::addFact(const QString& label, const QString& value, const QString& path)
{
    if (!value.isEmpty()) {
        overview_.facts.append(Fact{label, value, path});
    }
}

/// One row each; what reads the same is still another device.
void OverviewBuilder::addDevices(const QString& label, const QStringList& values, const QStringList& paths)
{
    const int shown = std::min(values.size(), mostDevices);
    for (int i = 0; i < shown; ++i) {
        addFact(i == 0 ? label : QString(), values.at(i), paths.at(i));
    }
    const int others = values.size() - shown;
    if (others > 0) {
        addFact(QString(), Overview::tr("and %1 more").arg(others), paths.at(shown));
    }
}

/// The first value in the Windows half whose label has this in it: the labels of the Windows counterpart are its own.
QString OverviewBuilder::windowsEntry(const char* partOfLabel, QString& path) const
{
    for (const CReportSection& section : windowsSections_) {
        const QVector<CReportItem> content = section.content();
        for (const CReportItem& item : content) {
            const CReportEntry entry = item.toEntry();
            if (entry.label().contains(QLatin1String(partOfLabel), Qt::CaseInsensitive)) {
                path = entry.path();
                return valueOf(entry);
            }
        }
    }
    return QString();
}

QString OverviewBuilder::system() const
{
    if (!windowsSections_.isEmpty()) {
        QString unused;
        const QString version = windowsEntry("version", unused);
        return version.startsWith(QLatin1String("Windows")) ? version : QStringLiteral("Windows ") + version;
    }
    // On Linux the build says nothing that a reader wants.
    const bool isLinux = value("kernelInfo", "Version").startsWith(QLatin1String("Linux"));
    const QString version = value("osVersion", "MacOS version");
    if (version.isEmpty()) {
        return QString();
    }
    const QString build = value("kernelInfo", "Build");
    return joined({(isLinux ? QStringLiteral("Linux ") : QStringLiteral("macOS ")) + version,
                   isLinux || build.isEmpty() ? QString() : Overview::tr("build %1").arg(build),
                   value("kernelInfo", "Kernel Arch.")});
}

void OverviewBuilder::addMachine()
{
    const QString model = value("macModel", "Model");
    const QString systemText = system();
    overview_.title = model.isEmpty() ? systemText : model;

    QString versionPath = path("osVersion", "MacOS version");
    if (!windowsSections_.isEmpty()) {
        windowsEntry("version", versionPath);
    }
    overview_.titlePath = model.isEmpty() ? versionPath : path("macModel", "Model");
    addFact(Overview::tr("System"), model.isEmpty() ? QString() : systemText, versionPath);
    addFact(Overview::tr("Name"), value("qtHostInfo", "Local host name"),
            path("qtHostInfo", "Local host name"));
    addFact(Overview::tr("Report made"), value("qtDateTime", "Local Date and Time"),
            path("qtDateTime", "Local Date and Time"));
    addFact(Overview::tr("Started"), value("kernelInfo", "Boottime"), path("kernelInfo", "Boottime"));
}

void OverviewBuilder::addProcessor()
{
    const QString brand = value("cpuInfo", "CPU brand name");
    const QString speed =
        brand.contains(QLatin1String("Hz")) ? QString() : value("cpuInfo", "Processor clock speed");
    const QString cores = value("cpuInfo", "Number of physical cores");
    const QString threads = value("cpuInfo", "Number of virtual cores");
    QString name = brand.isEmpty() ? value("architecture", "Mac System Architecture") : brand;
    QString namePath =
        brand.isEmpty() ? path("architecture", "Mac System Architecture") : path("cpuInfo", "CPU brand name");
    if (name.isEmpty()) {
        name = value("Processor information", "Processor architecture");
        namePath = path("Processor information", "Processor architecture");
    }
    addFact(Overview::tr("Processor"), joined({name, speed}),
            namePath.isEmpty() ? path("cpuInfo") : namePath);

    QString corePath =
        path("cpuInfo", cores.isEmpty() ? "Number of virtual cores" : "Number of physical cores");
    QStringList counts;
    if (!cores.isEmpty()) {
        counts += counted(cores, Overview::tr("1 core"), Overview::tr("%1 cores"));
    }
    if (!threads.isEmpty() && threads != cores) {
        counts += counted(threads, Overview::tr("1 thread"), Overview::tr("%1 threads"));
    }
    if (counts.isEmpty()) {
        const QString number = value("Processor information", "Number of processors");
        corePath = path("Processor information", "Number of processors");
        if (!number.isEmpty()) {
            counts += counted(number, Overview::tr("1 processor"), Overview::tr("%1 processors"));
        }
    }
    addFact(Overview::tr("Cores"), joined(counts), corePath);
}

void OverviewBuilder::addMemory()
{
    addFact(Overview::tr("Memory"), unlessZero(value("memoryInfo", "Physical RAM size")),
            path("memoryInfo", "Physical RAM size"));

    const struct
    {
        const char* label;
        QString name;
    } caches[] = {
        {"L1 Data Cache size", Overview::tr("L1 data")},
        {"L1 Instruction Cache size", Overview::tr("L1 instructions")},
        {"L2 Cache size", Overview::tr("L2")},
        {"L3 Cache size", Overview::tr("L3")},
    };
    QStringList sizes;
    QString firstPath;
    for (const auto& cache : caches) {
        const QString size = unlessZero(value("cpuInfo", cache.label));
        if (!size.isEmpty()) {
            sizes += cache.name + QLatin1Char(' ') + size;
            firstPath = firstPath.isEmpty() ? path("cpuInfo", cache.label) : firstPath;
        }
    }
    addFact(Overview::tr("Caches"), joined(sizes), firstPath);
}

void OverviewBuilder::addGraphics()
{
    QStringList cards;
    QStringList paths;
    const QVector<CReportBlock> found = blocks("ioKitGraphicsCards");
    for (const CReportBlock& card : found) {
        const QString model = valueIn(card, "Model");
        const bool isNamed = !model.isEmpty() && model != QLatin1String("???");
        cards +=
            joined({isNamed ? model : Overview::tr("unknown card"), unlessZero(valueIn(card, "VRAM total"))});
        paths += card.path();
    }
    addDevices(Overview::tr("Graphics"), cards, paths);
}

void OverviewBuilder::addDisks()
{
    QStringList disks;
    QStringList paths;
    for (const char* section : {"ioKitSataDiskDevices", "ioKitNVMExpressDevices"}) {
        const QVector<CReportBlock> found = blocks(section);
        for (const CReportBlock& disk : found) {
            const QString model = valueIn(disk, "Model");
            disks += joined({model.isEmpty() ? Overview::tr("unnamed disk") : model, valueIn(disk, "Size"),
                             valueIn(disk, "Medium Type")});
            paths += disk.path();
        }
    }
    addDevices(Overview::tr("Disks"), disks, paths);
}

Overview::Volume OverviewBuilder::volume(const CReportBlock& block) const
{
    const quint64 unknownBlocks = std::numeric_limits<quint64>::max();
    const double blockSize = count(valueIn(block, "Block size"), std::numeric_limits<quint32>::max());
    // Blocks are exact, but the lines about them may be missing.
    const auto bytes = [&](const char* blocksLabel, const char* sizeLabel) {
        const double blocks = count(valueIn(block, blocksLabel), unknownBlocks);
        if (blocks >= 0 && blockSize > 0) {
            return blocks * blockSize;
        }
        const QVector<qint64> numbers = block.entry(QLatin1String(sizeLabel)).numbers();
        return numbers.isEmpty() ? -1.0 : static_cast<double>(numbers.first());
    };
    const double total = bytes("Blocks total", "Size");
    const double free = bytes("Blocks free", "Free");
    const double available = bytes("Blocks avail", "Avail");

    Overview::Volume volume;
    volume.name = oneLine(block.name(), longestText);
    volume.path = block.path();
    volume.details =
        joined({valueIn(block, "Type"), valueIn(block, "Mount from"), valueIn(block, "Mount to")});
    const QString size = valueIn(block, "Size");
    const QString avail = valueIn(block, "Avail");
    const QString free_ = avail.isEmpty() ? valueIn(block, "Free") : avail;
    volume.space = !size.isEmpty() && !free_.isEmpty() ? Overview::tr("%1 of %2 free").arg(free_, size)
                   : !size.isEmpty()                   ? size
                   : !free_.isEmpty()                  ? Overview::tr("%1 free").arg(free_)
                                                       : Overview::tr("size unknown");
    const double notUsed = free >= 0 ? free : available;
    if (total > 0 && notUsed >= 0 && notUsed <= total) {
        volume.isSizeKnown = true;
        volume.used = (total - notUsed) / total;
        volume.reserved = available >= 0 && available < notUsed ? (notUsed - available) / total : 0;
    }
    return volume;
}

/// As many things as are shown.
template <typename Thing>
bool takeAnother(Overview::Things<Thing>& things)
{
    if (things.shown.size() < mostThings) {
        return true;
    }
    ++things.others;
    return false;
}

void OverviewBuilder::addVolumes()
{
    const char* const section = "listFileSystemVolumesInfo";
    overview_.volumes.isDescribed = sections_.contains(QLatin1String(section));
    overview_.volumes.path = path(section);
    const QVector<CReportBlock> found = blocks(section);
    for (const CReportBlock& block : found) {
        if (takeAnother(overview_.volumes)) {
            overview_.volumes.shown.append(volume(block));
        }
    }
}

Overview::Screen OverviewBuilder::screen(const CReportBlock& block) const
{
    static const QRegularExpression pattern(QStringLiteral("^(\\d{1,6}) x (\\d{1,6})$"));
    Overview::Screen screen;
    screen.name = oneLine(block.name(), longestText);
    screen.path = block.path();
    const QString size = valueIn(block, "Size (width x height)");
    const QRegularExpressionMatch match = pattern.match(size);
    if (match.hasMatch()) {
        screen.size = screenSize(match.captured(1), match.captured(2));
    }
    QStringList details(screen.size.isValid() ? sizeText(screen.size) : size);
    bool isNumber = false;
    const double ratio = valueIn(block, "devicePixelRatio").toDouble(&isNumber);
    if (isNumber && ratio > 0 && ratio <= 16 && !qFuzzyCompare(ratio, 1)) {
        details.first() = Overview::tr("%1 at %2×").arg(details.first(), QLocale().toString(ratio, 'g', 3));
    }
    // "416.203mm 16.3859inch", 0 for a screen of unknown size
    const double inches =
        valueIn(block, "diagonal").section(QLatin1Char(' '), 1).remove(QLatin1String("inch")).toDouble();
    if (inches > 0 && inches < mostInches) {
        details += Overview::tr("%1 inches").arg(QLocale().toString(inches, 'f', 1));
    }
    screen.details = joined(details);
    return screen;
}

/// What the desktop says of the screens, in a report that does not list them.
void OverviewBuilder::addDesktopScreens()
{
    static const QRegularExpression pattern(
        QStringLiteral("screen Geometry width: *(-?\\d{1,9}), height: *(-?\\d{1,9})"));
    const QVector<CReportItem> content = sections_.value(QStringLiteral("qtDesktop")).content();
    for (const CReportItem& item : content) {
        const CReportEntry entry = item.toEntry();
        if (!entry.label().startsWith(QLatin1String("Screen #"))) {
            continue;
        }
        const QRegularExpressionMatch match = pattern.match(entry.value().left(4 * longestText));
        if (match.hasMatch() && takeAnother(overview_.screens)) {
            Overview::Screen screen;
            screen.name = oneLine(entry.label(), longestText);
            screen.path = entry.path();
            screen.size = screenSize(match.captured(1), match.captured(2));
            screen.details = QStringLiteral("%1 × %2").arg(match.captured(1), match.captured(2));
            overview_.screens.shown.append(screen);
        }
    }
}

void OverviewBuilder::addScreens()
{
    overview_.screens.isDescribed =
        sections_.contains(QStringLiteral("qtScreens")) || sections_.contains(QStringLiteral("qtDesktop"));
    overview_.screens.path = path("qtScreens");
    const QVector<CReportBlock> found = blocks("qtScreens");
    for (const CReportBlock& block : found) {
        if (takeAnother(overview_.screens)) {
            overview_.screens.shown.append(screen(block));
        }
    }
    if (found.isEmpty()) {
        overview_.screens.path = path("qtDesktop");
        addDesktopScreens();
    }
    bool isNumber = false;
    const int primary = value("qtDesktop", "Primary screen").remove(QLatin1Char('#')).toInt(&isNumber);
    if (isNumber && primary >= 0 && primary < overview_.screens.shown.size()) {
        overview_.screens.shown[primary].isPrimary = true;
    }
}

QString OverviewBuilder::hardware(const CReportBlock& ethernet) const
{
    if (valueIn(ethernet, "802.11 wireless") == QLatin1String("Yes")) {
        const QString network = valueIn(ethernet, "802.11 SSID");
        return network.isEmpty() ? Overview::tr("wireless")
                                 : Overview::tr("wireless, network %1").arg(network);
    }
    return valueIn(ethernet, "Model");
}

Overview::Interface OverviewBuilder::interface(const CReportBlock& block) const
{
    Overview::Interface interface;
    interface.name = oneLine(block.name(), longestText);
    interface.path = block.path();
    const QString status = valueIn(block, "Status");
    interface.state = status == QLatin1String("Up")     ? Overview::Interface::Up
                      : status == QLatin1String("Down") ? Overview::Interface::Down
                                                        : Overview::Interface::Unknown;
    const QVector<CReportItem> content = block.content();
    for (const CReportItem& item : content) {
        if (item.type() == CReportItem::Lines && item.text().contains(QLatin1String("Loopback interface"))) {
            interface.kind = Overview::tr("loopback");
        } else if (item.type() == CReportItem::Entry && item.toEntry().isList()) {
            const QStringList values = item.toEntry().values().mid(0, mostDevices);
            QStringList addresses;
            for (const QString& line : values) {
                addresses += oneLine(line.left(longestText).section(QStringLiteral(" ,"), 0, 0), longestText);
            }
            interface.addresses = joined(addresses);
        }
    }
    if (interface.kind.isEmpty() && ethernet_.contains(block.name())) {
        interface.kind = hardware(ethernet_.value(block.name()));
    }
    return interface;
}

/// What the I/O registry says of the interfaces, in a report without Qt's.
void OverviewBuilder::addEthernetInterfaces()
{
    const QVector<CReportBlock> found = blocks("ioKitEthernetDevices");
    overview_.interfaces.path = path("ioKitEthernetDevices");
    for (const CReportBlock& block : found) {
        if (takeAnother(overview_.interfaces)) {
            Overview::Interface interface;
            const QString name = valueIn(block, "BSD Name");
            interface.name = name.isEmpty() ? oneLine(block.name(), longestText) : name;
            interface.path = block.path();
            interface.kind = hardware(block);
            interface.addresses = valueIn(block, "MAC address");
            overview_.interfaces.shown.append(interface);
        }
    }
}

void OverviewBuilder::addInterfaces()
{
    const QVector<CReportBlock> ethernet = blocks("ioKitEthernetDevices");
    for (const CReportBlock& block : ethernet) {
        ethernet_.insert(block.entry(QStringLiteral("BSD Name")).value(), block);
    }
    overview_.interfaces.isDescribed = sections_.contains(QStringLiteral("network")) ||
                                       sections_.contains(QStringLiteral("ioKitEthernetDevices"));
    overview_.interfaces.path = path("network");
    if (!sections_.contains(QStringLiteral("network"))) {
        addEthernetInterfaces();
        return;
    }
    const QVector<CReportBlock> found = blocks("network");
    for (const CReportBlock& block : found) {
        if (takeAnother(overview_.interfaces)) {
            overview_.interfaces.shown.append(interface(block));
        }
    }
}

Overview OverviewBuilder::build()
{
    addMachine();
    addProcessor();
    addMemory();
    addGraphics();
    addDisks();
    addVolumes();
    addScreens();
    addInterfaces();
    return overview_;
}

Overview Overview::of(const CReport& report)
{
    return OverviewBuilder(report).build();
}

bool Overview::isEmpty() const
{
    return facts.isEmpty() && !volumes.isDescribed && !screens.isDescribed && !interfaces.isDescribed;
}

} // namespace Viewer
} // namespace norvex
