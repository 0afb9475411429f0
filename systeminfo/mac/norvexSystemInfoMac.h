#pragma once

/// @file
/// The Macintosh section of the system-information report: what sysctl, Gestalt, IOKit, the file system and
/// the system's services say about the machine.
///
/// Every function asks the system at the moment of the call, keeps nothing and returns its text by value.
/// None fails and none throws on a missing value: a line whose query fails is left out, a section's heading
/// always stands. Warnings go to Qt's log (`qWarning`). Lines end with sNewLine.
///
/// Threads: all functions may be called from any thread and from several at once. The only exception is that
/// the records and iterators handed out belong to their caller.
///
/// On a host without the macOS interfaces the same functions answer from this host, or from the recording of
/// a Mac (see norvexPlatform.h).

#include "../norvexExport.h"

#include <QString>

// CoreFoundation's own types: a CFStringRef is a pointer to a constant __CFString, and so on.
struct __CFString;
struct __CFBoolean;
struct __CFNumber;
struct __CFData;

#if defined(__APPLE__)
struct statfs;
#else
namespace norvex {
struct MacStatfs;
}
#endif

namespace norvex {
namespace SystemInfo {
namespace MacSysInfo {

#if defined(__APPLE__)
/// The C library's record of a file system, `struct statfs` of <sys/mount.h>.
using FileSystemRecord = struct ::statfs;
#else
/// A record with the fields that macOS's `struct statfs` has, see norvexPlatform.h.
using FileSystemRecord = ::norvex::MacStatfs;
#endif

/// The line terminator of the Macintosh section, a line feed. Set when the library is loaded.
extern NORVEX_SYSTEMINFO_EXPORT QString sNewLine;

/// @name Assembly
/// @{

/// The whole Macintosh section: its banner line, all sections of this header in their fixed order, and a
/// separator line after each group, the last one included. A failing query shows in its own section only.
/// Passes on std::bad_alloc.
NORVEX_SYSTEMINFO_EXPORT QString allInfos();

/// The line between two groups: 72 hyphens and sNewLine.
NORVEX_SYSTEMINFO_EXPORT QString separator();

/// @}
/// @name Operating system and model
/// @{

/// The operating-system version.
/// @param asReportLine true for the report's line, "MacOS version: 10.13.6 (High Sierra)" and sNewLine; false
///        for the bare name, "MacOS 10.13.6 (High Sierra)", without a line end.
/// @return the text; only the label when one of the three version numbers cannot be read
///
/// From `Gestalt` (selectors 'sys1', 'sys2', 'sys3'). Where macOS's interfaces are absent the numbers are
/// those of the running kernel's release.
NORVEX_SYSTEMINFO_EXPORT QString osVersion(bool asReportLine);

/// The operating system's name and version in one line without a line end: osVersion(false).
NORVEX_SYSTEMINFO_EXPORT QString platformName();

/// The release name of a version of the system.
/// @param majorVersion only 10 has named releases here
/// @param minorVersion 0 ("Cheetah") to 14 ("Mojave")
/// @param bugFixVersion accepted, without influence
/// @return the name, empty for every other version
///
/// Pure; asks nothing.
NORVEX_SYSTEMINFO_EXPORT QString osVersionName(int majorVersion, int minorVersion, int bugFixVersion);

/// The kernel group: a heading, then build, version, boot time (local time zone) and kernel architecture,
/// each line only when its query succeeds. From `sysctlbyname` ("kern.osversion", "kern.version",
/// "kern.boottime", "hw.machine"). A text of 512 bytes or more, its zero byte included in the count, fails
/// its query.
NORVEX_SYSTEMINFO_EXPORT QString kernelInfo();

/// The line with the hardware model identifier, such as "Model: MacPro6,1"; empty when `sysctlbyname`
/// ("hw.model") fails.
NORVEX_SYSTEMINFO_EXPORT QString macModel();

/// Two lines: the machine's architecture (`Gestalt` 'sysa'; left out when that fails) and the architecture
/// that this library was compiled for. "Intel (64bit mode)" is the text of x86-64 builds; a build for another
/// processor names that one in the same form, as "ARM (64bit mode)".
NORVEX_SYSTEMINFO_EXPORT QString architecture();

/// @}
/// @name Processor and memory
/// @{

/// The processor block: core counts, the Mach type, sub-type and family with their names, vendor, brand,
/// family, model, stepping, signature, microcode, features, clock speeds, cache sizes and byte order. Each
/// line stands only when its `sysctlbyname` query succeeds. The lines "Number of physical cores:", "CPU
/// signature:" and "CPU sub type" are read back by norvex::SystemInfo::extractAccessKeyValues.
NORVEX_SYSTEMINFO_EXPORT QString cpuInfo();

/// The memory block: logical and physical RAM, low memory, page size, parity and MMU type, from `Gestalt`
/// ('lram', 'ram ' with 'ramm', 'lmem', 'pgsz', 'prty', 'mmu '). Sizes are signed 32-bit values of the
/// system; RAM of 2 GiB and more is taken in megabytes from 'ramm', for the physical size only.
NORVEX_SYSTEMINFO_EXPORT QString memoryInfo();

/// @}
/// @name Devices in the I/O registry
/// @{

/// The drives on AHCI controllers (class AppleAHCIDiskDriver): a heading, then a block for every drive,
/// numbered from 1. A value that is absent or of an unexpected kind leaves out its line; a drive whose
/// properties cannot be read is left out. The heading alone, with a warning, when the drives cannot be
/// listed.
NORVEX_SYSTEMINFO_EXPORT QString ioKitSataDiskDevices();

/// The optical drives on AHCI controllers (class IOAHCISerialATAPI), in the manner of ioKitSataDiskDevices().
NORVEX_SYSTEMINFO_EXPORT QString ioKitSerialAtapiDevices();

/// The NVM Express controllers (class IONVMeController), in the manner of ioKitSataDiskDevices().
NORVEX_SYSTEMINFO_EXPORT QString ioKitNVMExpressDevices();

/// The Ethernet interfaces, wired and wireless (class IOEthernetInterface), each with its controller's model
/// and hardware address (lower-case hexadecimal pairs). The heading alone, with a warning, when they cannot
/// be listed.
NORVEX_SYSTEMINFO_EXPORT QString ioKitEthernetDevices();

/// The machine's serial number and hardware UUID (class IOPlatformExpertDevice), each line only when the
/// property is a string. The heading alone when there is no such entry.
NORVEX_SYSTEMINFO_EXPORT QString ioKitPlatformInfos();

/// The operating-system and IOKit builds that the root of the I/O registry publishes. A line of the section
/// says so when the registry's main port cannot be had.
NORVEX_SYSTEMINFO_EXPORT QString ioKitRootInfos();

/// The display controllers (class IOPCIDevice with the IOName "display", in any letter case), each with model
/// and video memory. The model is "???" and the memory 0 where the registry does not tell them.
NORVEX_SYSTEMINFO_EXPORT QString ioKitGraphicsCards();

/// The number behind a video-memory property.
/// @param number a CFNumber, not null; neither retained nor released
/// @return its value when it is stored as a non-negative signed 32- or 64-bit integer; otherwise 0, with a
///        warning
NORVEX_SYSTEMINFO_EXPORT unsigned long long ConvertVRAM_CFNumberToUInt64(const __CFNumber* number);

/// The number behind a video-memory property that is data.
/// @param data a CFData, not null; neither retained nor released
/// @return its 1 to 8 bytes as a little-endian unsigned integer; 0 for any other length
NORVEX_SYSTEMINFO_EXPORT unsigned long long ConvertVRAM_CFDataToUInt64(const __CFData* data);

/// What the I/O registry says about one USB device. A field whose property is missing or unusable is 0 or
/// empty.
struct usbDeviceInfoStruct_t
{
    unsigned int vendorId;   ///< "idVendor"
    unsigned int productId;  ///< "idProduct"
    unsigned int locationId; ///< "locationID", the path of ports to the device
    unsigned int address;    ///< "USB Address", the device's address on its bus
    unsigned int speed;      ///< "Device Speed": 0 low, 1 full, 2 high, 3 super speed
    char name[128];          ///< the entry's registry name, zero-terminated UTF-8 (IOKit's io_name_t)
    QString productName;     ///< "USB Product Name"
    QString vendorName;      ///< "USB Vendor Name"
};

/// The attached USB devices (class IOUSBDevice): a heading and a block for every device. A device whose name
/// cannot be read is left out, with a warning.
NORVEX_SYSTEMINFO_EXPORT QString ioKitUsbDevices();

/// Opens an iterator over all USB devices.
/// @param iterator receives the handle on success; the caller releases it with IOObjectRelease, or with
///        norvex::releaseObject() where that is not macOS's
/// @return a kern_return_t: 0 on success, else the code of the call that failed (5 when no matching
///        dictionary could be made), after a warning
NORVEX_SYSTEMINFO_EXPORT int ioKitGetUsbDevIterator(unsigned int* iterator);

/// Reads one USB device.
/// @param device an entry of the iterator; it stays the caller's
/// @param info reset, then filled. Numbers are taken from values stored as signed 32-bit integers; another
///        stored type, or a read that fails, leaves 0 and logs a warning; a value that is no number at all
///        leaves 0 silently, as a value that is absent does. Strings are taken where their direct C string
///        exists.
/// @return a kern_return_t: the result of reading the entry's name, 0 on success
NORVEX_SYSTEMINFO_EXPORT int ioKitGetUsbDevInfo(unsigned int device, usbDeviceInfoStruct_t* info);

/// The maker behind a USB vendor ID, from a built-in table of 64.
/// @param vendorId compared as a whole; nothing above 0xffff is known
/// @return the name, or a null string
///
/// Pure; asks nothing.
NORVEX_SYSTEMINFO_EXPORT QString convertUsbVendorIdToName(unsigned int vendorId);

/// The serial ports (class IOSerialBSDClient) with the drivers above them and, for USB adapters, their IDs.
/// @param rs232Only true for the ports of type "IORS232SerialStream" and those whose type is unknown; false
///        for every port
/// @return the section, at least its heading. Two warnings about a port (no callout device, or none as a
///        file) are logged and printed in its block. A type or callout device that is no string counts as not
///        found.
NORVEX_SYSTEMINFO_EXPORT QString ioKitGetRs232SerialDevices(bool rs232Only);

/// Opens an iterator over all serial ports, in the manner of ioKitGetUsbDevIterator().
/// @param iterator receives the handle on success; the caller releases it with IOObjectRelease, or with
///        norvex::releaseObject() where that is not macOS's
/// @return a kern_return_t, as there
NORVEX_SYSTEMINFO_EXPORT int ioKitGetSerialBsdDevicesIterator(unsigned int* iterator);

/// @}
/// @name Volumes
/// @{

/// The volumes: the entries of /Volumes by name, ignoring case, each with mount point and source, type,
/// letter case, block and file-node counts, and sizes. The path alone where `statfs` fails; "-" or no size
/// line for a count of all ones. On Linux: the mounted file systems that hold user data, each under its mount
/// point.
NORVEX_SYSTEMINFO_EXPORT QString listFileSystemVolumesInfo();

/// Asks `statfs` about the file system that holds a path.
/// @param path in any form that the file system takes; passed in UTF-8
/// @param info filled on success, undefined otherwise
/// @return whether `statfs` succeeded
NORVEX_SYSTEMINFO_EXPORT bool getFileSystemInfo(const QString& path, FileSystemRecord* info);

/// How the file system that holds a path treats letter case.
/// @param path in any form that the file system takes
/// @return 1 case sensitive (also where the file system does not answer the question), 2 case preserving but
///        not sensitive, 0 neither, -1 when the query failed
///
/// From `pathconf` (_PC_CASE_SENSITIVE, _PC_CASE_PRESERVING) on the UTF-8 form of the path.
NORVEX_SYSTEMINFO_EXPORT int getFileSystemCaseSensitivity(const QString& path);

/// @}
/// @name Drivers and services
/// @{

/// Whether the FTDI USB-serial driver is installed, with version and name from its property list. Two or
/// three lines; whatever goes wrong has its own line.
NORVEX_SYSTEMINFO_EXPORT QString checkFtdiDriver();

/// One line with the version of the DNS service discovery daemon, or with the error of the query. On Linux
/// the daemon is Avahi, when it already runs; its version 0.8 counts as 800.
NORVEX_SYSTEMINFO_EXPORT QString bonjourVersion();

/// Asks the DNS service discovery daemon for its version (`DNSServiceGetProperty`, "DaemonVersion").
/// @param errorCode receives 0 or the query's error
/// @param versionText on success the version, as "878.30.4", is appended; untouched otherwise
NORVEX_SYSTEMINFO_EXPORT void checkBonjour(int& errorCode, QString& versionText);

/// One line with the path of the application that opens "mailto:" links, `<failed>` when there is none
/// (`LSGetApplicationForURL`; its failure logs a warning). On Linux: the handler's desktop file.
NORVEX_SYSTEMINFO_EXPORT QString defaultEmailApp();

/// @}
/// @name Value formatting
/// Reentrant, without state; the numbers are exact for every input.
/// @{

/// A frequency in Hz, kHz, MHz or GHz: decimal units, rounded half up, four significant digits below 1000
/// units.
/// @param hz in hertz
/// @return for example "2.400 GHz"
NORVEX_SYSTEMINFO_EXPORT QString clockSpeedConvertUserFriendly(unsigned long long hz);

/// A memory size in Byte, KByte, MByte or GByte: binary units, one digit after the point, truncated.
/// @param bytes in bytes
/// @return for example "16.0 GByte"
NORVEX_SYSTEMINFO_EXPORT QString memorySizeConvertUserFriendly(unsigned long long bytes);

/// A disk size in Byte, KB, MB or GB: decimal units for MB and GB, 1024 bytes for a KB, one digit after the
/// point, truncated.
/// @param bytes in bytes
/// @return for example "500.1 GB"
NORVEX_SYSTEMINFO_EXPORT QString diskSizeConvertUserFriendly(unsigned long long bytes);

/// The text of a CoreFoundation string up to its first zero character.
/// @param string may be null; neither retained nor released
/// @return the text; a null QString for null, and after a warning where the conversion to UTF-8 fails
NORVEX_SYSTEMINFO_EXPORT QString CFStringToQString(const __CFString* string);

/// The word for a CoreFoundation boolean.
/// @param value not null; neither retained nor released
/// @return "Yes" or "No"
NORVEX_SYSTEMINFO_EXPORT QString CFBooleanToQStringYesNo(const __CFBoolean* value);

/// @}

} // namespace MacSysInfo
} // namespace SystemInfo
} // namespace norvex
