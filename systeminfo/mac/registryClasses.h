#pragma once

#include <cstddef>

namespace norvex::SystemInfo::MacSysInfo {

/// A class of the I/O registry that a section asks for.
enum class RegistryClass {
    PlatformExpert,
    AhciDisk,
    SerialAtapi,
    NvmeController,
    UsbEthernet,
    WirelessInterface,
    EthernetInterface,
    PciDevice,
    UsbDevice,
    SerialClient
};

/// How sections ask for a class.
enum class AskedBy {
    Matching,   ///< by listing the entries of the class (IOServiceGetMatchingServices)
    Conformance ///< by asking an entry whether it conforms to the class (IOObjectConformsTo)
};

struct AskedClass
{
    const char* name;
    AskedBy askedBy;
};

/// The classes in the order of RegistryClass, a subclass before its superclass. The recorder asks for the same ones.
constexpr AskedClass registryClasses[] = {
    {"IOPlatformExpertDevice", AskedBy::Matching},
    {"AppleAHCIDiskDriver", AskedBy::Matching},
    {"IOAHCISerialATAPI", AskedBy::Matching},
    {"IONVMeController", AskedBy::Matching},
    {"AppleUSBEthernet", AskedBy::Conformance},
    {"IO80211Interface", AskedBy::Conformance},
    {"IOEthernetInterface", AskedBy::Matching},
    {"IOPCIDevice", AskedBy::Matching},
    {"IOUSBDevice", AskedBy::Matching},
    {"IOSerialBSDClient", AskedBy::Matching},
};

constexpr const char* nameOf(RegistryClass registryClass)
{
    return registryClasses[static_cast<std::size_t>(registryClass)].name;
}

} // namespace norvex::SystemInfo::MacSysInfo
