#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/mac/propertyLines.h"

namespace norvex::SystemInfo::MacSysInfo {

namespace {

enum class Where {
    Own,                   ///< in the device's own properties
    Below,                 ///< in those of the device or of an entry below it
    DeviceCharacteristics, ///< in the dictionary "Device Characteristics" of the device or of an entry below it
    ParentProtocol         ///< in the dictionary "Protocol Characteristics" of the parent
};

using Kind = PropertyKind;

struct DeviceLine
{
    const char* label;
    const char* key;
    Where where;
    Kind kind;
};

const DeviceLine sataLines[] = {
    {"  Model:         ", "Model", Where::Own, Kind::String},
    {"  BSD Name:      ", "BSD Name", Where::Below, Kind::String},
    {"  Size:          ", "Size", Where::Below, Kind::Size},
    {"  Revision:      ", "Revision", Where::Own, Kind::String},
    {"  Serial Number: ", "Serial Number", Where::Own, Kind::String},
    {"  NCQ:           ", "NCQ", Where::Own, Kind::YesNo},
    {"  Queue Depth:   ", "Queue Depth", Where::Own, Kind::Int32},
    {"  Medium Type:   ", "Medium Type", Where::DeviceCharacteristics, Kind::String},
    {"  AHCI Port Number:          ", "AHCI Port Number", Where::ParentProtocol, Kind::Int32},
    {"  Physical interconnect:     ", "Physical Interconnect", Where::ParentProtocol, Kind::String},
    {"  Physical interconnect Loc: ", "Physical Interconnect Location", Where::ParentProtocol, Kind::String},
    {"  Port Speed:                ", "Port Speed", Where::ParentProtocol, Kind::String},
};

const DeviceLine atapiLines[] = {
    {"  Model:                     ", "Model", Where::Own, Kind::String},
    {"  Revision:                  ", "Revision", Where::Own, Kind::String},
    {"  Serial Number:             ", "Serial Number", Where::Own, Kind::String},
    {"  Physical Interconnect:     ", "Physical Interconnect", Where::Own, Kind::String},
    {"  Physical Interconnect Loc: ", "Physical Interconnect Location", Where::Own, Kind::String},
};

const DeviceLine nvmeLines[] = {
    {"  Model:                     ", "Model Number", Where::Own, Kind::String},
    {"  Firmware Revision:         ", "Firmware Revision", Where::Own, Kind::String},
    {"  Serial Number:             ", "Serial Number", Where::Own, Kind::String},
    {"  Physical Interconnect:     ", "Physical Interconnect", Where::Own, Kind::String},
    {"  Physical Interconnect Loc: ", "Physical Interconnect Location", Where::Own, Kind::String},
    {"  BSD Name:                  ", "BSD Name", Where::Below, Kind::String},
    {"  Size:                      ", "Size", Where::Below, Kind::Size},
    {"  Removable:                 ", "Removable", Where::Below, Kind::YesNo},
    {"  Ejectable:                 ", "Ejectable", Where::Below, Kind::YesNo},
};

/// A device, and the places where its values are. The parent's dictionary is fetched once, for the first line that
/// needs it.
class StorageDevice
{
public:
    StorageDevice(IoEntry entry, CFHolder<CFDictionaryRef> properties)
        : entry_(std::move(entry)), properties_(std::move(properties))
    {}

    PropertyValue value(Where where, const char* key)
    {
        switch (where) {
        case Where::Own: return valueIn(properties_.get(), key);
        case Where::Below: return entry_.search(key);
        case Where::DeviceCharacteristics:
            return valueIn(entry_.search("Device Characteristics").dictionary(), key);
        case Where::ParentProtocol: return valueIn(parentProtocol().dictionary(), key);
        }
        return PropertyValue();
    }

private:
    const PropertyValue& parentProtocol()
    {
        if (!hasAskedParent_) {
            hasAskedParent_ = true;
            if (const IoEntry parent = entry_.parent()) {
                parentProtocol_ = valueIn(parent.properties().get(), "Protocol Characteristics");
            }
        }
        return parentProtocol_;
    }

    IoEntry entry_;
    CFHolder<CFDictionaryRef> properties_;
    PropertyValue parentProtocol_;
    bool hasAskedParent_ = false;
};

template <typename Table>
QString storageSection(const char* heading, RegistryClass registryClass, const Table& lines)
{
    Internal::SectionText section(sNewLine);
    section.line(heading);
    IoIterator devices = servicesOfClass(registryClass);
    int number = 1;
    while (IoEntry entry = devices.next()) {
        CFHolder<CFDictionaryRef> properties = entry.properties();
        if (!properties) {
            continue;
        }
        section.line("#", QString::number(number++));
        StorageDevice device(std::move(entry), std::move(properties));
        for (const DeviceLine& line : lines) {
            section.line(line.label, propertyText(device.value(line.where, line.key), line.kind));
        }
    }
    return section.text();
}

} // namespace

QString ioKitSataDiskDevices()
{
    return storageSection("AHCI disk (from IOKit)", RegistryClass::AhciDisk, sataLines);
}

QString ioKitSerialAtapiDevices()
{
    return storageSection("AHCI Serial ATAPI (from IOKit)", RegistryClass::SerialAtapi, atapiLines);
}

QString ioKitNVMExpressDevices()
{
    return storageSection("NVMEXpress devices (from IOKit)", RegistryClass::NvmeController, nvmeLines);
}

} // namespace norvex::SystemInfo::MacSysInfo
