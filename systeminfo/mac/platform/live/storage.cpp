#include "systeminfo/mac/platform/live/entries.h"
#include "systeminfo/mac/platform/live/kernelFiles.h"

#include <QRegularExpression>

#include <map>
#include <utility>

namespace norvex {

namespace {

/// The kernel's attribute "size" counts sectors of this size, whatever the size of the medium's own sectors is.
constexpr quint64 sectorSize = 512;

struct Medium
{
    QByteArray name;
    DeviceNumber bytes;
    std::optional<bool> isRemovable;
};

Medium mediumOf(const Device& block)
{
    const auto sectors = block.number("size");
    const auto removable = block.number("removable");
    return {block.name(), sectors ? DeviceNumber(qint64(quint64(*sectors) * sectorSize)) : std::nullopt,
            removable ? std::optional<bool>(*removable != 0) : std::nullopt};
}

void appendMedium(const Medium& medium, Registry& registry)
{
    EntryWriter entry(registry, "IOMedia", medium.name);
    entry.properties.text("BSD Name", medium.name)
        .int64("Size", medium.bytes)
        .boolean("Removable", medium.isRemovable);
    // Whether a drive can eject its removable medium is unknown.
    if (medium.isRemovable == false) {
        entry.properties.boolean("Ejectable", false);
    }
}

/// The folders in which libata describes a drive: the drive /sys/devices/…/ata3/host2/target2:0:0/2:0:0:0 has also
/// …/ata3/ata_port/ata3, …/ata3/link3/ata_link/link3 and …/ata3/link3/dev3.0/ata_device/dev3.0.
struct AtaPaths
{
    QByteArray controller;
    QByteArray port;
    QByteArray link;
    QByteArray drive;
};

std::optional<AtaPaths> ataPathsOf(const QByteArray& path)
{
    static const QRegularExpression pattern(
        QStringLiteral("^((.*)/ata(\\d+))/host\\d+/target[^/]+/\\d+:(\\d+):(\\d+):\\d+/"));
    const auto match = pattern.match(QString::fromUtf8(path));
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const auto part = [&](int group) { return match.captured(group).toUtf8(); };
    const QByteArray number = part(3);
    AtaPaths paths{part(2), part(1) + "/ata_port/ata" + number, {}, {}};
    // Behind a port multiplier the channel counts the links. Otherwise there is one link, and the id counts the drives.
    const bool isMultiplied = KernelFiles().number(paths.port + "/nr_pmp_links").value_or(0) > 0;
    const QByteArray link = isMultiplied ? number + '.' + part(4) : number;
    const QByteArray drive = link + '.' + (isMultiplied ? QByteArray("0") : part(5));
    const QByteArray folder = part(1) + "/link" + link;
    paths.link = folder + "/ata_link/link" + link;
    paths.drive = folder + "/dev" + drive + "/ata_device/dev" + drive;
    return paths;
}

/// Whether the controller works in AHCI mode. A controller with neither driver nor PCI class counts as one that does.
bool isAhci(const Device& block, const QByteArray& controllerPath)
{
    Device controller = block.parent();
    while (controller && controller.path() != controllerPath) {
        controller = controller.parent();
    }
    const auto driver = controller.driver();
    const auto pciClass = controller.number("class", 16);
    return driver ? driver->contains("ahci") : pciClass.value_or(0x010601) == 0x010601;
}

/// The data with which an ATA drive identifies itself.
class Identification
{
public:
    explicit Identification(const AtaPaths& paths)
    {
        const auto text = KernelFiles().contents(paths.drive + "/id", 4096);
        const QByteArray digits = text ? text->simplified().replace(' ', "") : QByteArray();
        bytes_ = QByteArray::fromHex(digits);
    }

    /// The text in a range of 16-bit words, with its padding.
    DeviceText text(int firstWord, int lastWord) const
    {
        const QByteArray text = bytes_.mid(firstWord * 2, (lastWord - firstWord + 1) * 2);
        return text.trimmed().replace('\0', "").isEmpty() ? std::nullopt : DeviceText(text);
    }

private:
    QByteArray bytes_;
};

/// Decodes udev's escapes: it writes blanks and other special characters in the form "\x20".
DeviceText decoded(const DeviceText& text)
{
    if (!text) {
        return std::nullopt;
    }
    QByteArray result;
    for (int i = 0; i < text->size(); ++i) {
        const bool isEscape = text->mid(i, 2) == "\\x" && i + 4 <= text->size();
        result += isEscape ? QByteArray::fromHex(text->mid(i + 2, 2)) : text->mid(i, 1);
        i += isEscape ? 3 : 0;
    }
    return result;
}

/// Sets the drive's model, revision and serial number. They come from the drive itself, else from udev, which has read
/// them from the drive: the kernel's SCSI attributes hold no more than 16 characters of a model and four of a revision.
void setIdentity(Properties& properties, const Device& block, const AtaPaths& paths)
{
    const Device scsi = block.parent("scsi");
    const Identification drive(paths);
    const auto first = [](const DeviceText& a, const DeviceText& b, const DeviceText& c) {
        return a ? a : b ? b : c;
    };
    properties
        .text("Model",
              first(drive.text(27, 46), decoded(block.property("ID_MODEL_ENC")), scsi.attribute("model")))
        .text("Revision", first(drive.text(23, 26), block.property("ID_REVISION"), scsi.attribute("rev")))
        .text("Serial Number", first(drive.text(10, 19), block.property("ID_SERIAL_SHORT"), std::nullopt));
}

enum class AtaKind { Disk, Packet };

bool isOfKind(AtaKind kind, const Device& block, const AtaPaths& paths)
{
    constexpr qint64 opticalDrive = 5; // SCSI device types
    constexpr qint64 opticalMemory = 7;
    const auto ataClass = KernelFiles().line(paths.drive + "/class");
    const qint64 scsiType = block.parent("scsi").number("type").value_or(0);
    const bool isPacket =
        ataClass ? *ataClass == "atapi" : scsiType == opticalDrive || scsiType == opticalMemory;
    return isPacket == (kind == AtaKind::Packet);
}

/// Visits the drives of a kind at AHCI controllers.
template <typename Visit>
void forEachDrive(AtaKind kind, const Devices& devices, Visit visit)
{
    devices.forEach("block", "s[dr]*", [&](const Device& block) {
        const auto paths = ataPathsOf(block.path());
        if (paths && block.type() != "partition" && isOfKind(kind, block, *paths) &&
            isAhci(block, paths->controller)) {
            visit(block, *paths);
        }
    });
}

/// The speed of a link as a Mac writes it: "6 Gigabit" for the kernel's "6.0 Gbps".
DeviceText portSpeed(const AtaPaths& paths)
{
    QByteArray speed = KernelFiles().line(paths.link + "/sata_spd").value_or(QByteArray());
    if (!speed.endsWith(" Gbps")) {
        return std::nullopt;
    }
    speed.chop(5);
    if (speed.endsWith(".0")) {
        speed.chop(2);
    }
    return speed + " Gigabit";
}

/// The port's number, counted from 0; libata counts a controller's ports from 1.
DeviceNumber portNumber(const AtaPaths& paths)
{
    const auto number = KernelFiles().number(paths.port + "/port_no");
    return number && *number > 0 ? DeviceNumber(*number - 1) : std::nullopt;
}

DeviceText mediumType(const Device& block)
{
    const auto isRotating = block.number("queue/rotational");
    return isRotating ? DeviceText(*isRotating != 0 ? "Rotational" : "Solid State") : std::nullopt;
}

void appendAhciDisk(const Device& block, const AtaPaths& paths, Registry& registry)
{
    Properties protocol;
    protocol.int32("AHCI Port Number", portNumber(paths))
        .text("Physical Interconnect", "SATA")
        .text("Port Speed", portSpeed(paths));
    EntryWriter port(registry, "IOAHCIDevice", "IOAHCIDevice");
    port.properties.dictionary("Protocol Characteristics", std::move(protocol));

    EntryWriter disk(registry, "AppleAHCIDiskDriver", "AppleAHCIDiskDriver");
    setIdentity(disk.properties, block, paths);
    // Without native command queuing the kernel sends one command at a time.
    if (const auto depth = block.parent("scsi").number("queue_depth")) {
        disk.properties.boolean("NCQ", *depth > 1).int32("Queue Depth", depth);
    }

    Properties characteristics;
    characteristics.text("Medium Type", mediumType(block));
    EntryWriter storage(registry, "IOAHCIBlockStorageDevice", "IOAHCIBlockStorageDevice");
    storage.properties.dictionary("Device Characteristics", std::move(characteristics));
    appendMedium(mediumOf(block), registry);
}

using Namespaces = std::multimap<QByteArray, Medium>;

/// The namespaces of NVMe controllers, by the controller's path.
Namespaces nvmeNamespaces(const Devices& devices)
{
    Namespaces found;
    devices.forEach("block", "nvme*", [&](const Device& block) {
        const Device controller = block.parent();
        if (block.type() == "partition" || controller.subsystem() != "nvme") {
            return;
        }
        Medium medium = mediumOf(block);
        // A path to a namespace that has several, such as "nvme0c1n1", has the name of the common disk, "nvme0n1".
        const int path = medium.name.indexOf('c');
        if (path > 0) {
            medium.name.remove(path, medium.name.indexOf('n', path) - path);
        }
        found.emplace(controller.path(), std::move(medium));
    });
    return found;
}

} // namespace

void appendAhciDisks(const Devices& devices, Registry& registry)
{
    forEachDrive(AtaKind::Disk, devices,
                 [&](const Device& block, const AtaPaths& paths) { appendAhciDisk(block, paths, registry); });
}

void appendAtapiDrives(const Devices& devices, Registry& registry)
{
    forEachDrive(AtaKind::Packet, devices, [&](const Device& block, const AtaPaths& paths) {
        EntryWriter drive(registry, "IOAHCISerialATAPI", "IOAHCISerialATAPI");
        setIdentity(drive.properties, block, paths);
        drive.properties.text("Physical Interconnect", "SATA");
    });
}

void appendNvmeControllers(const Devices& devices, Registry& registry)
{
    const Namespaces namespaces = nvmeNamespaces(devices);
    devices.forEach("nvme", "*", [&](const Device& device) {
        // On a Mac the texts of an NVMe drive have no padding, unlike those of an ATA drive.
        const auto text = [&](const char* name) {
            const auto filled = device.attribute(name);
            return filled ? DeviceText(filled->trimmed()) : std::nullopt;
        };
        EntryWriter controller(registry, "IONVMeController", "IONVMeController");
        controller.properties.text("Model Number", text("model"))
            .text("Firmware Revision", text("firmware_rev"))
            .text("Serial Number", text("serial"));
        if (device.attribute("transport") == QByteArray("pcie")) {
            controller.properties.text("Physical Interconnect", "PCI-Express");
        }
        const auto [first, last] = namespaces.equal_range(device.path());
        for (auto it = first; it != last; ++it) {
            const EntryWriter storage(registry, "IONVMeBlockStorageDevice", "IONVMeBlockStorageDevice");
            appendMedium(it->second, registry);
        }
    });
}

} // namespace norvex
