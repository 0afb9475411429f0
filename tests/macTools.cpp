#include "tests/macTools.h"

#include "tests/cases.h"
#include "tests/referenceFormatting.h"

#include <QHash>
#include <QVariant>
#include <QXmlStreamReader>

#include <algorithm>
#include <iterator>
#include <limits>

namespace macTools {

namespace {

const char* const separator = "------------------------------------------------------------------------";

/// A line that the report should have, according to a tool's output.
struct Expected
{
    QString tool;
    QString label;
    QString text;           ///< label and value
    bool isOpenEnd = false; ///< a blank and more may follow, which the tool does not print
};

/// The lines that a block of the report, such as a device, should have. An expected line without a text must be
/// missing: the tool has no value for that label.
using Block = QVector<Expected>;

QVariant readValue(QXmlStreamReader& reader)
{
    const auto type = reader.name();
    if (type == QLatin1String("dict")) {
        QVariantMap dictionary;
        while (reader.readNextStartElement()) {
            const QString key = reader.readElementText();
            dictionary[key] = reader.readNextStartElement() ? readValue(reader) : QVariant();
        }
        return dictionary;
    }
    if (type == QLatin1String("array")) {
        QVariantList list;
        while (reader.readNextStartElement()) {
            list += readValue(reader);
        }
        return list;
    }
    if (type == QLatin1String("true") || type == QLatin1String("false")) {
        const bool isTrue = type == QLatin1String("true");
        reader.skipCurrentElement();
        return isTrue;
    }
    const bool isInteger = type == QLatin1String("integer");
    const bool isData = type == QLatin1String("data");
    const QString text = reader.readElementText();
    if (isInteger) {
        return text.startsWith('-') ? QVariant(text.toLongLong()) : QVariant(text.toULongLong());
    }
    return isData ? QVariant(QByteArray::fromBase64(text.toLatin1())) : QVariant(text);
}

/// The root of a property list; invalid when there is none.
QVariant readPropertyList(const QByteArray& document)
{
    QXmlStreamReader reader(document);
    const bool hasValue = reader.readNextStartElement() && reader.readNextStartElement();
    const QVariant root = hasValue ? readValue(reader) : QVariant();
    return reader.hasError() ? QVariant() : root;
}

QString fromText(const std::string& text)
{
    return QString::fromStdString(text);
}

// The I/O registry

/// All entries with their parents, by identifier.
class Registry
{
public:
    explicit Registry(const QVariantMap& root) { add(root, QVariantMap()); }

    QVariantMap parent(const QVariantMap& entry) const { return parents_.value(identifier(entry)); }
    QVariantMap entry(const QVariantMap& other) const { return entries_.value(identifier(other)); }

    /// The first value of a key on the entry or below it.
    static QVariant search(const QVariantMap& entry, const QString& key)
    {
        QVariant value = entry.value(key);
        const QVariantList children = entry.value("IORegistryEntryChildren").toList();
        for (auto child = children.begin(); child != children.end() && !value.isValid(); ++child) {
            value = search(child->toMap(), key);
        }
        return value;
    }

private:
    static quint64 identifier(const QVariantMap& entry)
    {
        return entry.value("IORegistryEntryID").toULongLong();
    }

    void add(const QVariantMap& entry, const QVariantMap& parent)
    {
        entries_[identifier(entry)] = entry;
        parents_[identifier(entry)] = parent;
        for (const QVariant& child : entry.value("IORegistryEntryChildren").toList()) {
            add(child.toMap(), entry);
        }
    }

    QHash<quint64, QVariantMap> entries_;
    QHash<quint64, QVariantMap> parents_;
};

enum Where { Own, Below, Characteristics, ParentProtocol, Parent, Grandparent };
enum Kind { Text, Quoted, YesNo, Number, Size, Bytes, Memory, FirstText, Hex2, Hex4, Hex8, Code };

struct Row
{
    QString label;
    QString key;
    Where where;
    Kind kind;
};

struct Devices
{
    QString heading;
    QString className;
    QVector<Row> rows;
};

/// The lines of a data file's case, each split at its bars.
QVector<QStringList> linesOf(const Case& each)
{
    QVector<QStringList> lines;
    for (const QString& line : each.texts.value(0).split('\n')) {
        lines += line.split('|');
    }
    return lines;
}

const QVector<Case>& lineCases()
{
    static const QVector<Case> cases = casesIn("macTools/lines.txt");
    return cases;
}

QVector<Devices> readDeviceGroups()
{
    const QStringList places = {"Own",    "Below",      "DeviceCharacteristics", "ParentProtocol",
                                "Parent", "Grandparent"};
    const QStringList kinds = {"Text",   "Quoted",    "YesNo", "Number", "Size", "Bytes",
                               "Memory", "FirstText", "Hex2",  "Hex4",   "Hex8", "Code"};
    QVector<Devices> groups;
    for (const Case& each : lineCases()) {
        const QVector<QStringList> lines = linesOf(each);
        Devices group = {each.name, lines.value(0).value(0), {}};
        for (const QStringList& line : lines.mid(1)) {
            if (line.size() == 4) {
                group.rows +=
                    {line[0], line[1], Where(places.indexOf(line[2])), Kind(kinds.indexOf(line[3]))};
            }
        }
        if (!group.rows.isEmpty()) {
            groups += group;
        }
    }
    return groups;
}

const QVector<Devices>& deviceGroups()
{
    static const QVector<Devices> groups = readDeviceGroups();
    return groups;
}

QString listCommand(const QString& className)
{
    return "ioreg -a -l -r -d 1 -c " + className;
}

QString hexPairs(const QByteArray& bytes)
{
    QString pairs;
    for (const char byte : bytes) {
        pairs += QStringLiteral(":%1").arg(uint(uchar(byte)), 2, 16, QLatin1Char('0'));
    }
    return pairs.mid(1);
}

/// A size in megabytes, or in bytes: a number, or data with the lowest byte first.
QString memoryText(const QVariantMap& entry)
{
    const QVariant megabytes = Registry::search(entry, "VRAM,totalMB");
    const QVariant value = megabytes.isValid() ? megabytes : Registry::search(entry, "VRAM,totalsize");
    quint64 size = value.toULongLong();
    if (value.type() == QVariant::ByteArray) {
        size = 0;
        const QByteArray bytes = value.toByteArray();
        for (int index = 0; index < bytes.size() && bytes.size() <= 8; ++index) {
            size |= quint64(uchar(bytes[index])) << 8 * index;
        }
    }
    return fromText(reference::memorySize(megabytes.isValid() ? size << 20 : size));
}

/// A value as the report shows it; null when it is not of this kind.
QString valueText(const QVariant& value, Kind kind)
{
    const bool isText = value.type() == QVariant::String;
    const bool isNumber = value.type() == QVariant::ULongLong || value.type() == QVariant::LongLong;
    const auto hex = [&](int width) {
        return QStringLiteral("%1").arg(uint(value.toULongLong()), width, 16, QLatin1Char('0'));
    };
    switch (kind) {
    case Text: return isText ? value.toString() : QString();
    case Quoted: return isText ? "'" + value.toString() + "'" : QString();
    case YesNo: return value.type() == QVariant::Bool ? value.toBool() ? "Yes" : "No" : QString();
    case Number: return isNumber ? QString::number(int(value.toULongLong())) : QString();
    case Size: return isNumber ? fromText(reference::diskSize(value.toULongLong())) : QString();
    case Bytes: return value.type() == QVariant::ByteArray ? hexPairs(value.toByteArray()) : QString();
    case Memory: return memoryText(value.toMap());
    case FirstText: return value.isValid() ? QString::fromUtf8(value.toByteArray().constData()) : "???";
    case Hex2: return hex(2);
    case Hex4: return hex(4);
    case Hex8: return hex(8);
    case Code: return QString::number(uint(value.toULongLong()));
    }
    return QString();
}

class Tools
{
public:
    explicit Tools(const Outputs& outputs)
        : outputs_(outputs), root_(readPropertyList(outputs.value("ioreg -a -l")).toMap()), registry_(root_)
    {}

    const QVariantMap& root() const { return root_; }

    QVector<Block> devices(const Devices& group) const
    {
        QVector<Block> blocks;
        for (const QVariant& listed :
             readPropertyList(outputs_.value(listCommand(group.className))).toList()) {
            const QVariantMap device = registry_.entry(listed.toMap());
            if (isReported(group, device)) {
                blocks += deviceBlock(group, device);
            }
        }
        return blocks;
    }

    QString line(const QString& command) const
    {
        return QString::fromUtf8(outputs_.value(command)).section('\n', 0, 0);
    }

    QString sysctl(const QString& name) const
    {
        for (const QString& line :
             QString::fromUtf8(outputs_.value("sysctl hw machdep.cpu kern")).split('\n')) {
            for (const char* const sign : {": ", " = "}) {
                if (line.startsWith(name + sign)) {
                    return line.mid(name.size() + int(qstrlen(sign)));
                }
            }
        }
        return QString();
    }

    QVariantMap disk(const QString& mountPoint) const
    {
        return readPropertyList(outputs_.value("diskutil info -plist " + mountPoint)).toMap();
    }

    /// The hardware address of an interface as networksetup shows it; empty when it does not.
    QString hardwareAddress(const QString& interface) const
    {
        const QString ports = QString::fromUtf8(outputs_.value("networksetup -listallhardwareports"));
        const QString port = ports.section("Device: " + interface + "\n", 1, 1).section('\n', 0, 0);
        const QString label = "Ethernet Address: ";
        return port.startsWith(label) ? port.mid(label.size()) : QString();
    }

private:
    bool isListed(const QVariantMap& device, const QString& className) const
    {
        const QVariantList list = readPropertyList(outputs_.value(listCommand(className))).toList();
        return std::any_of(list.begin(), list.end(), [&](const QVariant& entry) {
            return entry.toMap().value("IORegistryEntryID") == device.value("IORegistryEntryID");
        });
    }

    static bool isReported(const Devices& group, const QVariantMap& device)
    {
        if (group.className == "IOPCIDevice") {
            return device.value("IOName").toString().compare("display", Qt::CaseInsensitive) == 0;
        }
        const QVariant type = Registry::search(device, "IOSerialBSDClientType");
        return !type.isValid() || type.toString() == "IORS232SerialStream";
    }

    Block deviceBlock(const Devices& group, const QVariantMap& device) const
    {
        Block block;
        for (const Row& row : group.rows) {
            const QString text = valueText(deviceValue(device, row), row.kind);
            const bool isOpenEnd = row.kind == Hex4 || row.kind == Hex2 || row.kind == Code;
            block.push_back({"ioreg", row.label, text.isNull() ? QString() : row.label + text, isOpenEnd});
        }
        return block;
    }

    QVariant deviceValue(const QVariantMap& device, const Row& row) const
    {
        const QVariantMap parent = registry_.parent(device);
        if (row.kind == YesNo && (row.where == Parent || row.key == "IO80211Interface")) {
            // Here the key is the name of a class: the value is whether the entry has it.
            return isListed(row.where == Parent ? parent : device, row.key);
        }
        switch (row.where) {
        case Own: return device.value(row.key);
        case Below: return row.kind == Memory ? QVariant(device) : Registry::search(device, row.key);
        case Characteristics:
            return Registry::search(device, "Device Characteristics").toMap().value(row.key);
        case ParentProtocol: return parent.value("Protocol Characteristics").toMap().value(row.key);
        case Parent: return parent.value(row.key);
        case Grandparent: return registry_.parent(parent).value(row.key);
        }
        return QVariant();
    }

    const Outputs& outputs_;
    QVariantMap root_;
    Registry registry_;
};

// What is one of a kind

void expect(Block& block, const char* tool, const QString& label, const QString& value,
            bool isOpenEnd = false)
{
    block.push_back({tool, label, value.isEmpty() ? QString() : label + value, isOpenEnd});
}

Block systemFacts(const Tools& tools)
{
    Block block;
    QString version = tools.line("sw_vers -productVersion");
    version += version.count('.') == 1 ? ".0" : "";
    expect(block, "sw_vers", "MacOS version: ", version, true);
    expect(block, "sw_vers", "Build: ", tools.line("sw_vers -buildVersion"));
    expect(block, "uname", "Version: ", tools.line("uname -v"));
    expect(block, "sysctl", "Boottime: ", tools.sysctl("kern.boottime").section("} ", 1));
    expect(block, "uname", "Kernel Arch.: ", tools.line("uname -m"));
    return block;
}

Block processorFacts(const Tools& tools)
{
    Block block;
    for (const QStringList& line : linesOf(lineCases().last())) {
        expect(block, "sysctl", line.value(0), tools.sysctl(line.value(1)), line.size() > 2);
    }
    const QString family = tools.sysctl("hw.cpufamily");
    const uint number = family.startsWith('-') ? uint(family.toInt()) : family.toUInt();
    expect(block, "sysctl", "CPU family: ",
           family.isEmpty() ? QString() : QStringLiteral("%1 = 0x%2").arg(number).arg(number, 0, 16), true);
    const auto size = [&](const char* label, const char* name, std::string (*text)(unsigned long long)) {
        const QString value = tools.sysctl(name);
        expect(block, "sysctl", label, value.isEmpty() ? value : fromText(text(value.toULongLong())));
    };
    size("Processor clock speed: ", "hw.cpufrequency_max", reference::clockSpeed);
    size("Bus clock speed: ", "hw.busfrequency_max", reference::clockSpeed);
    size("L1 Data Cache size: ", "hw.l1dcachesize", reference::memorySize);
    size("L1 Instruction Cache size: ", "hw.l1icachesize", reference::memorySize);
    size("L2 Cache size: ", "hw.l2cachesize", reference::memorySize);
    size("L3 Cache size: ", "hw.l3cachesize", reference::memorySize);
    return block;
}

Block memoryFacts(const Tools& tools)
{
    Block block;
    const quint64 size = tools.sysctl("hw.memsize").toULongLong();
    const quint64 mostLogical = quint64(std::numeric_limits<qint32>::max());
    expect(block, "sysctl", "Physical RAM size: ", fromText(reference::memorySize(size)));
    expect(block, "sysctl",
           "Logical RAM size: ", fromText(reference::memorySize(std::min(size, mostLogical))));
    const quint64 pageSize = tools.sysctl("hw.pagesize").toULongLong();
    expect(block, "sysctl", "Logical Page Size: ", fromText(reference::memorySize(pageSize)));
    return block;
}

Block rootFacts(const Tools& tools)
{
    Block block;
    expect(block, "sw_vers", "OS Build Version: ", "'" + tools.line("sw_vers -buildVersion") + "'");
    expect(block, "ioreg",
           "IOKit Build Version: ", "'" + tools.root().value("IOKitBuildVersion").toString() + "'");
    return block;
}

QString valueOf(const QStringList& lines, const QString& label)
{
    for (const QString& line : lines) {
        if (line.startsWith(label)) {
            return line.mid(label.size());
        }
    }
    return QString();
}

/// What diskutil knows of the volume that these lines of the report describe. Of network volumes it knows nothing.
Block volumeFacts(const Tools& tools, const QStringList& lines)
{
    Block block;
    const QVariantMap disk = tools.disk(valueOf(lines, "  Mount to:         "));
    if (disk.isEmpty() && !valueOf(lines, "  Mount from:       ").startsWith("/dev/")) {
        return block;
    }
    const QString type = disk.value("FilesystemType").toString();
    expect(block, "diskutil", "  Mount to:         ", disk.value("MountPoint").toString());
    expect(block, "diskutil", "  Mount from:       ", disk.value("DeviceNode").toString());
    expect(block, "diskutil", "  Type:             ", type);
    if (type == "apfs" || type == "hfs") {
        const bool isSensitive = disk.value("FilesystemName").toString().startsWith("Case-sensitive");
        expect(block, "diskutil", "  Case sensitivity: ", isSensitive ? "case sensitive" : "case preserving");
    }
    // A volume's own bookkeeping takes up to a hundredth of its partition.
    const double size = disk.value("TotalSize").toDouble();
    const double blocks = valueOf(lines, "  Blocks total:     ").toDouble();
    const double bytes = blocks * valueOf(lines, "  Block size:       ").toDouble();
    const QString label = "  Blocks total:     ";
    const bool isNear = bytes <= size * 1.001 && bytes >= size * 0.99;
    block.push_back({"diskutil", label,
                     isNear ? label + valueOf(lines, label) : QString::number(size) + " bytes", false});
    return block;
}

// The comparison

bool matches(const QString& line, const Expected& expected)
{
    return line == expected.text || (expected.isOpenEnd && line.startsWith(expected.text + ' '));
}

Comparison compareBlock(const QStringList& lines, Block expected)
{
    Comparison result;
    for (const QString& line : lines) {
        const auto found = std::find_if(expected.begin(), expected.end(), [&](const Expected& other) {
            return !other.text.isNull() && matches(line, other);
        });
        if (found != expected.end()) {
            result.compared += line;
            expected.erase(found);
            continue;
        }
        const bool isKnown = std::any_of(expected.begin(), expected.end(),
                                         [&](const Expected& other) { return line.startsWith(other.label); });
        (isKnown ? result.differences : result.notCompared) += isKnown ? "report: " + line : line;
    }
    for (const Expected& other : expected) {
        if (!other.text.isNull()) {
            result.differences += other.tool + ": " + other.text;
        }
    }
    return result;
}

void append(Comparison& whole, const Comparison& part)
{
    whole.compared += part.compared;
    whole.differences += part.differences;
    whole.notCompared += part.notCompared;
}

/// The blocks of a group behind its heading, each begun by one of these texts, or closed by a line of underscores.
QVector<QStringList> blocksOf(const QStringList& lines)
{
    QVector<QStringList> blocks(1);
    for (const QString& line : lines) {
        const bool opens = line.startsWith('#') || line.startsWith("Card #") || line.startsWith('/');
        if (opens && !blocks.last().isEmpty()) {
            blocks += QStringList();
        }
        if (line.startsWith("____")) {
            blocks += QStringList();
        } else if (!opens || line.startsWith('/')) {
            blocks.last() += line;
        }
    }
    blocks.erase(std::remove(blocks.begin(), blocks.end(), QStringList()), blocks.end());
    return blocks;
}

/// The tools may list devices in another order: each is compared with the block that is most like it.
void compareDevices(Comparison& result, QVector<QStringList> reported, const QVector<Block>& devices)
{
    for (const Block& device : devices) {
        int best = -1;
        Comparison nearest = compareBlock(QStringList(), device);
        for (int index = 0; index < reported.size(); ++index) {
            const Comparison candidate = compareBlock(reported[index], device);
            if (best < 0 || candidate.differences.size() < nearest.differences.size()) {
                best = index;
                nearest = candidate;
            }
        }
        append(result, nearest);
        if (best >= 0) {
            reported.remove(best);
        }
    }
    for (const QStringList& block : reported) {
        result.differences += "report, a device that ioreg does not list: " + block.join(" | ");
    }
}

void compareAddresses(Comparison& result, const QVector<QStringList>& interfaces, const Tools& tools)
{
    for (const QStringList& lines : interfaces) {
        const QString name = valueOf(lines, "  BSD Name:         ");
        const QString address = tools.hardwareAddress(name);
        const QString reported = valueOf(lines, "  MAC address:      ");
        if (!address.isEmpty() && address != reported) {
            result.differences += "networksetup: " + name + " has " + address + ", report: " + reported;
        }
    }
}

QVector<QStringList> groupsOf(const QString& report)
{
    QVector<QStringList> groups(1);
    for (const QString& line : report.section("###### System informations", 0, 0).split('\n')) {
        if (line == QLatin1String(separator)) {
            groups += QStringList();
        } else if (!line.isEmpty() && !line.startsWith("############")) {
            groups.last() += line;
        }
    }
    return groups;
}

/// Compares a group of the report that has a heading.
void compareGroup(Comparison& result, const QStringList& lines, const Tools& tools)
{
    const QString heading = lines.value(0);
    const QStringList values = lines.mid(1);
    const auto group = std::find_if(deviceGroups().begin(), deviceGroups().end(),
                                    [&](const Devices& other) { return heading == other.heading; });
    if (group != deviceGroups().end()) {
        compareDevices(result, blocksOf(values), tools.devices(*group));
        if (heading.startsWith("Ethernet")) {
            compareAddresses(result, blocksOf(values), tools);
        }
    } else if (heading == "Volumes") {
        for (const QStringList& volume : blocksOf(values)) {
            append(result, compareBlock(volume, volumeFacts(tools, volume)));
        }
    } else if (heading == "Root info (from IOKit)") {
        append(result, compareBlock(values, rootFacts(tools)));
    } else {
        result.notCompared += lines;
    }
}

} // namespace

QStringList commands(const QString& report)
{
    QStringList list = {"sw_vers -productVersion",
                        "sw_vers -buildVersion",
                        "uname -v",
                        "uname -m",
                        "sysctl hw machdep.cpu kern",
                        "ioreg -a -l",
                        listCommand("IO80211Interface"),
                        listCommand("AppleUSBEthernet"),
                        "networksetup -listallhardwareports"};
    for (const Devices& group : deviceGroups()) {
        list += listCommand(group.className);
    }
    const QString label = "  Mount to:         ";
    for (const QString& line : report.split('\n')) {
        if (line.startsWith(label)) {
            list += "diskutil info -plist " + line.mid(label.size());
        }
    }
    return list;
}

Outputs readTranscript(const QByteArray& transcript)
{
    Outputs outputs;
    QByteArray* output = nullptr;
    QByteArray text = transcript;
    text.chop(transcript.endsWith('\n') ? 1 : 0);
    for (const QByteArray& line : text.split('\n')) {
        if (line.startsWith("$ ")) {
            output = &outputs[QString::fromUtf8(line.mid(2))];
        } else if (output) {
            *output += line + '\n';
        }
    }
    return outputs;
}

QByteArray writeTranscript(const Outputs& outputs)
{
    QByteArray transcript;
    for (auto output = outputs.begin(); output != outputs.end(); ++output) {
        transcript += "$ " + output.key().toUtf8() + '\n' + output.value();
        transcript += output.value().isEmpty() || output.value().endsWith('\n') ? "" : "\n";
    }
    return transcript;
}

Comparison compare(const QString& report, const Outputs& outputs)
{
    Comparison result;
    const Tools tools(outputs);
    const QVector<QStringList> groups = groupsOf(report);
    append(result, compareBlock(groups.value(0), systemFacts(tools)));
    append(result, compareBlock(groups.value(1), processorFacts(tools)));
    append(result, compareBlock(groups.value(2), memoryFacts(tools)));
    for (const QStringList& group : groups.mid(3)) {
        compareGroup(result, group, tools);
    }
    return result;
}

} // namespace macTools
