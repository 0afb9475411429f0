#include "systeminfo/mac/platform/live/deviceRegistry.h"

#include "systeminfo/mac/platform/live/entries.h"
#include "systeminfo/mac/platform/live/kernel.h"

#include <algorithm>

namespace norvex {

namespace {

struct LiveClass
{
    const char* name;
    const char* superclass;
};

constexpr LiveClass liveClasses[] = {
    {"IOService", "IORegistryEntry"},
    {"IOPlatformExpertDevice", "IOService"},
    {"IOPCIDevice", "IOService"},
    {"IOAHCIDevice", "IOService"},
    {"AppleAHCIDiskDriver", "IOService"},
    {"IOAHCISerialATAPI", "IOService"},
    {"IONVMeController", "IOService"},
    {"IOBlockStorageDevice", "IOService"},
    {"IOAHCIBlockStorageDevice", "IOBlockStorageDevice"},
    {"IONVMeBlockStorageDevice", "IOBlockStorageDevice"},
    {"IOStorage", "IOService"},
    {"IOMedia", "IOStorage"},
    {"IONetworkController", "IOService"},
    {"IOEthernetController", "IONetworkController"},
    {"IO80211Controller", "IOEthernetController"},
    {"AppleUSBEthernet", "IOEthernetController"},
    {"IONetworkInterface", "IOService"},
    {"IOEthernetInterface", "IONetworkInterface"},
    {"IO80211Interface", "IOEthernetInterface"},
    {"IOUSBNub", "IOService"},
    {"IOUSBDevice", "IOUSBNub"},
    {"IOUSBHubDevice", "IOUSBDevice"},
    {"IOUSBRootHubDevice", "IOUSBDevice"},
    {"IOSerialStreamSync", "IOService"},
    {"IOModemSerialStreamSync", "IOSerialStreamSync"},
    {"IOSerialBSDClient", "IOService"},
};

/// Each part numbers its entries from a multiple of this. So an entry has the same identifier in every registry,
/// whichever other parts that has.
constexpr std::uint64_t partIds = std::uint64_t(1) << 32;

/// A part of the registry: the function that appends it, and the most derived classes of its entries.
struct Part
{
    void (*append)(const Devices& devices, Registry& registry);
    std::vector<const char*> classes;
};

const std::vector<Part>& parts()
{
    static const std::vector<Part> all = {
        {appendPlatform, {"IOPlatformExpertDevice"}},
        {appendDisplays, {"IOPCIDevice"}},
        {appendAhciDisks, {"IOAHCIDevice", "AppleAHCIDiskDriver", "IOAHCIBlockStorageDevice", "IOMedia"}},
        {appendAtapiDrives, {"IOAHCISerialATAPI"}},
        {appendNvmeControllers, {"IONVMeController", "IONVMeBlockStorageDevice", "IOMedia"}},
        {appendNetworkInterfaces,
         {"AppleUSBEthernet", "IO80211Controller", "IOEthernetInterface", "IO80211Interface"}},
        {appendUsbDevices, {"IOUSBHubDevice", "IOUSBRootHubDevice"}},
        {appendSerialPorts, {"IOModemSerialStreamSync", "IOSerialBSDClient"}},
    };
    return all;
}

bool isKindOf(QByteArray className, const QByteArray& superclass)
{
    while (!className.isEmpty() && className != superclass) {
        className = hostSuperclassOf(className);
    }
    return !className.isEmpty();
}

bool hasEntriesOf(const Part& part, const QByteArray& className)
{
    return className.isEmpty() ||
           std::any_of(part.classes.begin(), part.classes.end(),
                       [&](const char* candidate) { return isKindOf(candidate, className); });
}

} // namespace

QByteArray hostSuperclassOf(const QByteArray& className)
{
    for (const LiveClass& candidate : liveClasses) {
        if (className == candidate.name) {
            return candidate.superclass;
        }
    }
    return {};
}

Registry::ClassChain hostClassChain(const QByteArray& className)
{
    Registry::ClassChain chain;
    for (QByteArray name = className; !name.isEmpty(); name = hostSuperclassOf(name)) {
        chain.push_back(name.toStdString());
    }
    if (chain.size() == 1 && className != "IORegistryEntry") {
        chain.insert(chain.end(), {"IOService", "IORegistryEntry"});
    }
    return chain;
}

namespace {

template <typename AppendChildren>
RegistryPtr registryWith(AppendChildren appendChildren)
{
    auto registry = std::make_shared<Registry>();
    {
        EntryWriter root(*registry, "IORegistryEntry", "Root");
        root.properties.text("OS Build Version", kernelBuild());
        appendChildren(*registry);
    }
    return registry;
}

} // namespace

RegistryPtr hostRegistry(const QByteArray& className)
{
    return registryWith([&](Registry& registry) {
        if (!className.isEmpty()) {
            registry.markAsPart();
        }
        const Devices devices;
        std::uint64_t firstId = partIds;
        for (const Part& part : parts()) {
            if (hasEntriesOf(part, className)) {
                registry.numberFrom(firstId);
                part.append(devices, registry);
            }
            firstId += partIds;
        }
    });
}

RegistryPtr hostRoot()
{
    return registryWith([](Registry& registry) { registry.markAsPart(); });
}

} // namespace norvex
