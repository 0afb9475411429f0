#include "systeminfo/mac/usbVendors.h"

#include "systeminfo/mac/norvexSystemInfoMac.h"

#include <algorithm>
#include <iterator>

namespace norvex::SystemInfo::MacSysInfo {

namespace {

struct Vendor
{
    unsigned int id;
    const char* name;
};

/// In ascending order of the IDs. Reports have always shown the names as they are written here.
const Vendor vendors[] = {
    {0x03f0, "Hewlett-Packard"},
    {0x0403, "FTDI (Future Technology Devices International Limited)"},
    {0x0409, "NEC Corp."},
    {0x043d, "Lexmark International, Inc."},
    {0x045e, "Microsoft Corp."},
    {0x046a, "Cherry GmbH"},
    {0x046b, "American Megatrends, Inc."},
    {0x046d, "Logitech, Inc."},
    {0x0471, "Philips"},
    {0x047d, "Kensington"},
    {0x0499, "Yamaha Corp."},
    {0x04a9, "Canon, Inc."},
    {0x04b3, "IBM Corp."},
    {0x04b8, "Seiko Epson Corp."},
    {0x04bb, "I-O Data Device, Inc."},
    {0x04c1, "U.S. Robotics (3Com)"},
    {0x04da, "Panasonic (Matsushita)"},
    {0x04dd, "Sharp Corp."},
    {0x04e8, "Samsung Electronics Co., Ltd"},
    {0x04f9, "Brother Industries, Ltd"},
    {0x050d, "Belkin Components"},
    {0x0525, "Netchip Technology, Inc."},
    {0x054c, "Sony Corp."},
    {0x0557, "ATEN International Co., Ltd"},
    {0x055f, "Mustek Systems, Inc."},
    {0x0565, "Peracom Networks, Inc."},
    {0x056c, "eTEK Labs"},
    {0x057c, "AVM GmbH"},
    {0x0582, "Roland Corp."},
    {0x0586, "ZyXEL Communications Corp."},
    {0x058f, "Alcor Micro Corp."},
    {0x059b, "Iomega Corp."},
    {0x059f, "LaCie, Ltd"},
    {0x05a7, "Bose Corp."},
    {0x05ac, "Apple Inc."},
    {0x05da, "Microtek International, Inc.k"},
    {0x05dc, "Lexar Media, Inc."},
    {0x05e3, "Genesys Logic, Inc."},
    {0x0665, "Cypress Semiconductor"},
    {0x067b, "Prolific Technology, Inc."},
    {0x06cd, "Keyspan"},
    {0x0711, "Magic Control Technology Corp."},
    {0x0729, "Amitm"},
    {0x0763, "Midiman"},
    {0x0781, "SanDisk Corp."},
    {0x07b3, "Plustek, Inc."},
    {0x07b8, "D-Link Corp."},
    {0x07cd, "Elektor"},
    {0x0846, "NetGear, Inc."},
    {0x085a, "Xircom"},
    {0x0921, "GoHubs, Inc."},
    {0x0944, "KORG, Inc."},
    {0x09e1, "Intellon Corp."},
    {0x0a5c, "Broadcom Corp."},
    {0x0b39, "Omnidirectional Control Technology, Inc."},
    {0x0baf, "U.S. Robotics (3Com)"},
    {0x0bed, "Silicon Labs"},
    {0x0d49, "Maxtor"},
    {0x0dc4, "Macpower Peripherals, Ltd"},
    {0x1342, "Mobility"},
    {0x1645, "Entrega"},
    {0x2478, "Tripp-Lite"},
    {0x6189, "Sitecom"},
    {0x9710, "MosChip Semiconductor"},
};

} // namespace

QString convertUsbVendorIdToName(unsigned int vendorId)
{
    const auto found = std::lower_bound(std::begin(vendors), std::end(vendors), vendorId,
                                        [](const Vendor& vendor, unsigned int id) { return vendor.id < id; });
    return found != std::end(vendors) && found->id == vendorId ? QString::fromLatin1(found->name) : QString();
}

QString usbVendorSuffix(unsigned int vendorId)
{
    const QString name = convertUsbVendorIdToName(vendorId);
    return name.isEmpty() ? name : QLatin1String(" = ") + name;
}

} // namespace norvex::SystemInfo::MacSysInfo
