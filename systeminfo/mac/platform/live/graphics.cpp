#include "systeminfo/mac/platform/live/entries.h"

namespace norvex {

namespace {

/// The highest byte of the PCI class of display controllers.
constexpr qint64 displayClass = 0x03;

/// The size of the card's own memory in bytes; absent for a card that uses the machine's memory.
DeviceNumber videoMemory(const Device& card)
{
    if (const auto bytes = card.number("mem_info_vram_total")) { // amdgpu
        return bytes;
    }
    DeviceNumber sum; // xe has one size for each tile of the chip
    for (int tile = 0;; ++tile) {
        const QByteArray name = "tile" + QByteArray::number(tile) + "/physical_vram_size_bytes";
        const auto bytes = card.number(name, 0);
        if (!bytes) {
            return sum;
        }
        sum = sum.value_or(0) + *bytes;
    }
}

} // namespace

/// The report shows no other PCI devices than display controllers.
void appendDisplays(const Devices& devices, Registry& registry)
{
    devices.forEach("pci", "*", [&](const Device& card) {
        if (card.number("class", 16).value_or(0) >> 16 != displayClass) {
            return;
        }
        EntryWriter entry(registry, "IOPCIDevice", card.name());
        entry.properties.text("IOName", "display").int64("VRAM,totalsize", videoMemory(card));
        if (const auto model = devices.databaseNames(card).model) {
            entry.properties.data("model", *model + '\0');
        }
    });
}

} // namespace norvex
